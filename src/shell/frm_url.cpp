#include "shell/frm_url.h"

#include "system/text_platform_qt.h"
#include "system/translation_qt.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStringList>
#include <QVBoxLayout>

namespace kv {
namespace {

constexpr int kTextWidth = 420;

}  // namespace

frmURL::frmURL(Registry& registry, const Session& session, Dialogs& dialogs, const QPalette& colors,
               QWidget* parent)
    : QDialog(parent), entry_(registry, session, dialogs), Text1_(new QLineEdit(this)) {
  setObjectName(QStringLiteral("frmURL"));
  setWindowTitle(QTr("Open URL - Kestrelview"));
  if (parent != nullptr) setWindowIcon(parent->windowIcon());
  setModal(true);
  setPalette(colors);

  auto* const label = new QLabel(QTr("&Address of the file or stream:"), this);
  label->setBuddy(Text1_);
  Text1_->setObjectName(QStringLiteral("Text1"));
  Text1_->setMinimumWidth(kTextWidth);
  QStringList earlier;
  for (const std::string& address : entry_.Earlier()) earlier += ToQString(address);
  auto* const completer = new QCompleter(earlier, this);
  completer->setCaseSensitivity(Qt::CaseInsensitive);
  completer->setFilterMode(Qt::MatchContains);
  completer->popup()->setPalette(colors);
  Text1_->setCompleter(completer);
  Text1_->setText(ToQString(entry_.LastUrl()));

  auto* const buttons = new QDialogButtonBox(this);
  QPushButton* const Command1 = buttons->addButton(QDialogButtonBox::Ok);
  QPushButton* const Command2 = buttons->addButton(QDialogButtonBox::Cancel);
  Command1->setDefault(true);  // Enter in the text is OK
  connect(Command1, &QPushButton::clicked, this, &frmURL::Command1_Click);
  connect(Command2, &QPushButton::clicked, this, &frmURL::Command2_Click);

  auto* const rows = new QVBoxLayout(this);
  rows->addWidget(label);
  rows->addWidget(Text1_);
  rows->addWidget(buttons);
  setMaximumHeight(sizeHint().height());  // may get wider for long addresses, no higher
  Text1_->setFocus();
  // A dialog that comes up selects the text of its first box.
  QMetaObject::invokeMethod(
      this, [this] { Text1_->end(false); }, Qt::QueuedConnection);
}

void frmURL::Command1_Click() {
  // The box about a wrong address can outlive this window.
  const QPointer<frmURL> alive(this);
  std::string result = entry_.Accept(FromQString(Text1_->text()));
  if (alive == nullptr || result.empty()) return;
  UrlResult_ = std::move(result);
  accept();
}

void frmURL::Command2_Click() {
  UrlResult_.clear();
  reject();
}

}  // namespace kv
