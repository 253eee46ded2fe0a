#include "playlist/frm_copy.h"

#include "controls/file_copier_bar.h"
#include "system/text_platform_qt.h"
#include "system/translation_qt.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QTextDocument>
#include <QVBoxLayout>

#include <utility>

namespace kv {
namespace {

constexpr int kLabelWidth = 400;

}  // namespace

// One line that loses its middle where the window is too narrow, so that the end of a name stays.
class ElidedLabel : public QWidget {
 public:
  explicit ElidedLabel(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  }

  void SetText(const QString& text) {
    text_ = text;
    setAccessibleName(text);
    setToolTip(fontMetrics().horizontalAdvance(text) > width() ? Qt::convertFromPlainText(text)
                                                               : QString());
    update();
  }

  QSize sizeHint() const override { return {kLabelWidth, fontMetrics().height()}; }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text_, Qt::ElideMiddle, width()));
  }

 private:
  QString text_;
};

namespace {

constexpr int kMargin = 14;
constexpr int kSpacing = 8;
constexpr int kStartMilliseconds = 50;  // the window is on the screen by then

constexpr Qt::WindowFlags kFlags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                   Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;

constexpr std::int32_t kSystemWindow = -0x7FFFFFFB;
constexpr std::int32_t kSystemHighlight = -0x7FFFFFF3;

}  // namespace

frmCopy::frmCopy(std::vector<std::string> files, TimerSource& time, const TextPlatform& text,
                 bool& open, QWidget* owner)
    : QWidget(owner, kFlags),
      open_(open),
      dialogs_(this),
      copier_({dialogs_, text, time,
               [this](std::function<void()> work) {
                 QMetaObject::invokeMethod(this, std::move(work), Qt::QueuedConnection);
               }}),
      files_(*this, copier_, dialogs_, std::move(files)),
      Label1_(new ElidedLabel(this)),
      Label2_(new QLabel(this)),
      Label3_(new ElidedLabel(this)),
      FileCopier1_(std::make_unique<FileCopierBar>(copier_, this)),
      Command1_(new QPushButton(this)),
      CopyStartTimer_(
          time.MakeTimer(TimerKind::kOrdinary, kStartMilliseconds, [this] { CopyStartTimer(); })) {
  open_ = true;
  setWindowTitle(QTr("FileCopier - Kestrelview"));
  FileCopierLook look = copier_.Look();
  look.BorderStyle = 1;
  look.BackColor = kSystemWindow;
  look.FillColor = kSystemHighlight;
  copier_.SetLook(look);
  FileCopier1_->setAccessibleName(QTr("Progress"));
  Label2_->setTextFormat(Qt::PlainText);

  auto* const bottom = new QHBoxLayout;
  bottom->addWidget(Label2_, 1);
  bottom->addWidget(Command1_);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  rows->setSpacing(kSpacing);
  rows->addWidget(Label1_);
  rows->addWidget(Label3_);
  rows->addWidget(FileCopier1_.get());
  rows->addLayout(bottom);
  rows->setSizeConstraint(QLayout::SetMinAndMaxSize);  // may get wider for long names, no higher

  Command1_->setDefault(true);
  connect(Command1_, &QPushButton::clicked, this, &frmCopy::Command1_Click);
}

frmCopy::~frmCopy() {
  open_ = false;
}

void frmCopy::Form_Load() {
  show();
  Command1_->setFocus();
  CopyStartTimer_->SetEnabled(true);
}

void frmCopy::CopyStartTimer() {
  CopyStartTimer_->SetEnabled(false);
  started_ = true;
  Command1_->setText(QTr("&Cancel"));
  files_.Start();
}

void frmCopy::Command1_Click() {
  if (started_) {
    files_.Cancel();
  } else {
    close();
  }
}

void frmCopy::closeEvent(QCloseEvent* event) {
  // Off the screen at once; the object stays until the copy has cleaned up behind itself.
  CopyStartTimer_->SetEnabled(false);
  if (started_) {
    files_.Cancel();
  } else {
    deleteLater();
  }
  event->accept();
}

void frmCopy::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Escape:
      Command1_Click();
      return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Command1_->animateClick();
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

void frmCopy::ShowLabels(const std::string& label1, const std::string& label2,
                         const std::string& label3) {
  Label1_->SetText(ToQString(label1));
  Label2_->setText(ToQString(label2));
  Label3_->SetText(ToQString(label3));
}

bool frmCopy::AskRetry(const std::string& text) {
  // The window can be destroyed while the question is open, and takes it along.
  const QPointer<QMessageBox> box(new QMessageBox(QMessageBox::Warning,
                                                  QString::fromLatin1(kAppTitle), QString(),
                                                  QMessageBox::Retry | QMessageBox::Cancel, this));
  box->setTextFormat(Qt::PlainText);
  box->setText(ToQString(text));
  box->setDefaultButton(QMessageBox::Retry);
  const bool retry = box->exec() == QMessageBox::Retry;
  delete box.data();
  return retry;
}

void frmCopy::Unload() {
  hide();
  deleteLater();
}

}  // namespace kv
