#include "playlist/frm_search.h"

#include "system/text_platform_qt.h"
#include "system/translation_qt.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <cstddef>

namespace kv {
namespace {

constexpr int kMargin = 14;
constexpr int kSpacing = 8;
constexpr int kRowGap = 1;

}  // namespace

frmSearch::frmSearch(ListSearch& search, QWidget* owner)
    : QDialog(owner), search_(search), Text1_(new QLineEdit(this)), List1_(new QListWidget(this)) {
  setObjectName(QStringLiteral("frmSearch"));
  setWindowTitle(QTr("Search in Playlist"));
  if (owner != nullptr) setPalette(owner->palette());
  auto* const keyword =
      new QLabel(QTr("&Keyword (* any text, ? one character, # one digit)"), this);
  auto* const fields = new QLabel(QTr("&Fields"), this);
  keyword->setBuddy(Text1_);
  fields->setBuddy(List1_);
  Text1_->setAccessibleName(QTr("Keyword"));
  List1_->setAccessibleName(QTr("Fields"));
  FillList1();

  auto* const Command1 = new QPushButton(QTr("Search (F3)"), this);
  auto* const Command2 = new QPushButton(QTr("&Cancel"), this);
  Command1->setDefault(true);
  Command2->setAutoDefault(false);
  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(kSpacing);
  buttons->addStretch();
  buttons->addWidget(Command1);
  buttons->addWidget(Command2);

  auto* const page = new QVBoxLayout(this);
  page->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  page->setSpacing(kSpacing);
  page->addWidget(keyword);
  page->addWidget(Text1_);
  page->addWidget(fields);
  page->addWidget(List1_);
  page->addLayout(buttons);
  page->setSizeConstraint(QLayout::SetFixedSize);

  connect(Command1, &QPushButton::clicked, this, &frmSearch::Command1_Click);
  connect(Command2, &QPushButton::clicked, this, &frmSearch::reject);
  Text1_->setText(ToQString(search_.Keyword()));
  Text1_->selectAll();
  Text1_->setFocus();
}

void frmSearch::FillList1() {
  List1_->setSelectionMode(QAbstractItemView::MultiSelection);
  List1_->setUniformItemSizes(true);
  const bool again = !search_.Keyword().empty();
  for (std::size_t i = 0; i < search_.Fields().size(); ++i) {
    auto* const item = new QListWidgetItem(QTr(kPlaylistColumnTable[i + 1].title), List1_);
    item->setSelected(again && search_.Fields()[i]);
  }
  List1_->setSpacing(kRowGap);
  const int rows = List1_->count() * (List1_->sizeHintForRow(0) + 2 * kRowGap) + 2 * kRowGap;
  List1_->setFixedHeight(rows + 2 * List1_->frameWidth());
}

void frmSearch::Command1_Click() {
  SearchColumns fields{};
  for (std::size_t i = 0; i < fields.size(); ++i) {
    fields[i] = List1_->item(static_cast<int>(i))->isSelected();
  }
  const QPointer<frmSearch> self(this);  // a box may tell what is missing, and anything happen then
  if (search_.Search(FromQString(Text1_->text()), fields) && self != nullptr) accept();
}

void frmSearch::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_F3) {
    Command1_Click();
  } else {
    QDialog::keyPressEvent(event);
  }
}

void frmSearch::reject() {
  search_.Cancel();
  QDialog::reject();
}

}  // namespace kv
