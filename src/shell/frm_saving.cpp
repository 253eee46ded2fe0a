#include "shell/frm_saving.h"

#include "system/paths.h"
#include "system/shown_text.h"
#include "system/text_format.h"
#include "system/text_platform_qt.h"
#include "system/translation_qt.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace kv {
namespace {

constexpr int kLabelWidth = 400;
constexpr int kWhole = 1000;
constexpr std::int32_t kBlock = 1024 * 1024;

constexpr Qt::WindowFlags kFlags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                   Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;

// `sentence` has the name at "%1".
QLabel* NameLabel(const char* sentence, const std::string& name, QWidget* parent) {
  auto* const label = new QLabel(parent);
  label->setTextFormat(Qt::PlainText);
  label->setFixedWidth(kLabelWidth);
  const QString text = ToQString(Fill(Tr(sentence), name));
  label->setText(label->fontMetrics().elidedText(text, Qt::ElideMiddle, kLabelWidth));
  label->setAccessibleName(text);
  return label;
}

}  // namespace

frmSaving::frmSaving(const std::string& source, const std::string& target, TimerSource& time,
                     const TextPlatform& text, QWidget* owner)
    : QWidget(owner, kFlags),
      text_(text),
      dialogs_(this),
      copier_({dialogs_, text, time,
               [this](std::function<void()> work) {
                 QMetaObject::invokeMethod(this, std::move(work), Qt::QueuedConnection);
               }}),
      Label1_(NameLabel(TrLater("Saving \"%1\""), FileNameOfPath(WithoutUserInfo(source)), this)),
      Label2_(new QLabel(this)),
      bar_(new QProgressBar(this)),
      Command1_(new QPushButton(QTr("&Cancel"), this)) {
  setObjectName(QStringLiteral("frmSaving"));
  setWindowTitle(QTr("Save file - Kestrelview"));
  if (owner != nullptr) setWindowIcon(owner->windowIcon());
  bar_->setRange(0, 0);  // moves on its own until a length is known
  bar_->setAccessibleName(QTr("Progress"));

  auto* const rows = new QVBoxLayout(this);
  rows->addWidget(Label1_);
  rows->addWidget(NameLabel(TrLater("To: \"%1\""), target, this));
  rows->addWidget(bar_);
  auto* const bottom = new QHBoxLayout;
  bottom->addWidget(Label2_, 1);
  bottom->addWidget(Command1_);
  rows->addLayout(bottom);
  rows->setSizeConstraint(QLayout::SetFixedSize);
  connect(Command1_, &QPushButton::clicked, this, &frmSaving::close);
  Command1_->setFocus();
}

void frmSaving::Copy(const std::string& source, const std::string& target, TimerSource& time,
                     const TextPlatform& text, QWidget* owner) {
  auto* const window = new frmSaving(source, target, time, text, owner);
  window->copier_.Info = [window](const CopyInfo& info) {
    window->ShowProgress(static_cast<std::int64_t>(info.CopiedBytes),
                         static_cast<std::int64_t>(info.TotalBytes));
  };
  window->show();
  window->copier_.xCopyFile(source, target, kBlock, true,
                            [window](CopyResult result) { window->OnCopied(result); });
}

void frmSaving::Fetch(const std::string& url, const std::string& target, DownloadQt& download,
                      TimerSource& time, const TextPlatform& text, std::function<void(bool)> done,
                      QWidget* owner) {
  auto* const window = new frmSaving(url, target, time, text, owner);
  window->done_ = std::move(done);
  window->show();
  window->fetch_ = download.Download_To(
      url, target,
      {.progress = [window](std::int64_t received,
                            std::int64_t total) { window->ShowProgress(received, total); },
       .done = [window](bool complete) { window->OnFetched(complete); }});
}

void frmSaving::UnloadAll(QWidget& owner) {
  qDeleteAll(owner.findChildren<frmSaving*>(QString(), Qt::FindDirectChildrenOnly));
}

void frmSaving::ShowProgress(std::int64_t done, std::int64_t total) {
  const std::string separator = text_.DecimalSeparator();
  std::string figures = FormatByteSize(static_cast<double>(done), separator);
  if (total > 0) {
    figures = Fill(Tr("%1 of %2"), figures, FormatByteSize(static_cast<double>(total), separator));
    bar_->setRange(0, kWhole);
    bar_->setValue(static_cast<int>(kWhole * std::min(done, total) / total));
  }
  Label2_->setText(ToQString(figures));
}

void frmSaving::OnCopied(CopyResult result) {
  // A disk error was told by the copier, and nothing else is a failure but the lack of room.
  if (result != CopyResult::kNoFreeSpace || !isVisible()) {
    Unload();
    return;
  }
  bar_->setRange(0, kWhole);
  bar_->reset();
  Label2_->setText(QTr("There is not enough free space."));
  Command1_->setText(QTr("&Close"));
}

void frmSaving::OnFetched(bool complete) {
  // The window is off the screen before anything is said.
  const auto done = std::move(done_);
  Unload();
  if (done) done(complete);
}

void frmSaving::closeEvent(QCloseEvent* event) {
  // A copy cleans up behind itself on its thread, and unloads this window when it has.
  event->accept();
  fetch_.reset();
  if (copier_.Busy()) {
    copier_.CancelCopy();
  } else {
    Unload();
  }
}

void frmSaving::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Escape:
      close();
      return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Command1_->animateClick();
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

void frmSaving::Unload() {
  hide();
  deleteLater();
}

}  // namespace kv
