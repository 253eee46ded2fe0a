// The popup menu as the user meets it: what it shows, how keys and mouse pick, and its colours.
#include "controls/smart_menu.h"

#include "controls/picture_qt.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QImage>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kv {
namespace {

using namespace Qt::StringLiterals;
using Type = SmartMenuItem::Type;

constexpr int kRoot = 1;
constexpr int kSub = 5;

class SmartMenuTest : public testing::Test, protected SmartMenuSource {
 protected:
  SmartMenuTest() {
    form.show();
    menu->on_click = [this](int id) { clicked.push_back(id); };
  }

  std::vector<SmartMenuItem> MenuItems() const override { return items; }
  void SetMenuItemChecked(int id, bool checked) override {
    Item(id).checked = checked;
    menu->ItemChanged(id);
  }

  SmartMenuItem& Item(int id) {
    return *std::find_if(items.begin(), items.end(),
                         [id](const SmartMenuItem& item) { return item.id == id; });
  }

  // Opens the menu, types and closes what is still open; answers what was clicked.
  std::vector<int> Picked(const std::vector<Qt::Key>& keys) {
    QTimer::singleShot(0, &form, [&] {
      for (const Qt::Key key : keys) {
        if (QWidget* const popup = QApplication::activePopupWidget()) QTest::keyClick(popup, key);
      }
      while (QWidget* const popup = QApplication::activePopupWidget()) popup->close();
    });
    menu->PopUp(kRoot, QPoint(10, 10));
    return std::exchange(clicked, {});
  }

  QStringList Texts(int root) const {
    QStringList texts;
    for (const QAction* action : menu->Widget(root)->actions()) {
      if (action->isVisible())
        texts << (action->isSeparator() ? QStringLiteral("-") : action->text());
    }
    return texts;
  }

  QImage Picture(double scale) {
    QMenu& widget = *menu->Widget(kRoot);
    widget.resize(widget.sizeHint());
    return PictureOf(widget, scale);
  }

  static int Count(const QImage& image, const QRect& part, QRgb color) {
    int count = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
      for (int x = part.left(); x <= part.right(); ++x) count += image.pixel(x, y) == color ? 1 : 0;
    }
    return count;
  }

  std::vector<SmartMenuItem> items = {
      {.id = kRoot, .caption = u"MENU"_s},
      {.id = 2,
       .parent = kRoot,
       .caption = u"Open..."_s,
       .accelerator = u"Ctrl+O"_s,
       .icon = "open"},
      {.id = 3, .parent = kRoot, .type = Type::kSeparator},
      {.id = 4, .parent = kRoot, .type = Type::kCheck, .caption = u"Fit & fill"_s},
      {.id = kSub, .parent = kRoot, .caption = u"Recent"_s},
      {.id = 6, .parent = kSub, .caption = u"one\ttwo\nthree"_s},
      {.id = 7, .parent = kSub, .caption = u"last"_s},
      {.id = 8, .parent = kRoot, .caption = u"Off"_s, .icon = "missing", .enabled = false},
      {.id = 9, .parent = kRoot, .caption = u"Hidden"_s, .visible = false},
  };
  std::vector<int> clicked;
  std::vector<std::string> icons;
  QWidget form;
  std::unique_ptr<SmartMenu> menu = std::make_unique<SmartMenu>(
      static_cast<SmartMenuSource&>(*this),
      [this](const std::string& file) {
        icons.push_back(file);
        if (file == "missing") return QIcon();
        QIcon icon;
        for (const int size : {16, 32}) {
          QPixmap pixmap(size, size);
          pixmap.fill(size == 16 ? Qt::red : Qt::green);
          icon.addPixmap(pixmap);
        }
        return icon;
      },
      &form);
};

TEST_F(SmartMenuTest, ShowsItsEntries) {
  EXPECT_EQ(Texts(kRoot),
            (QStringList{u"Open...\tCtrl+O"_s, u"-"_s, u"Fit && fill"_s, u"Recent"_s, u"Off"_s}));
  EXPECT_EQ(Texts(kSub), (QStringList{u"one two three"_s, u"last"_s}));
  EXPECT_EQ(icons, (std::vector<std::string>{"open", "missing"}));
}

TEST_F(SmartMenuTest, SpeaksToAssistiveTools) {
  Item(4).checked = true;
  QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(menu->Widget(kRoot));
  const auto text = [&](int child, QAccessible::Text what) {
    return face->child(child)->text(what).toStdString();
  };
  EXPECT_EQ(text(0, QAccessible::Name), "Open...");
  EXPECT_EQ(text(0, QAccessible::Accelerator), "Ctrl+O");
  EXPECT_EQ(text(2, QAccessible::Name), "Fit & fill");
  EXPECT_TRUE(face->child(2)->state().checked);
  EXPECT_EQ(face->child(3)->child(0)->child(1)->text(QAccessible::Name), u"last"_s);
  EXPECT_TRUE(face->child(4)->state().disabled);
  for (const int child : {0, 2, 4}) {
    face->child(child)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  }
  QCoreApplication::processEvents();
  EXPECT_EQ(clicked, (std::vector<int>{2, 4}));
  EXPECT_FALSE(Item(4).checked);
}

TEST_F(SmartMenuTest, PicksByKeyboard) {
  using Ids = std::vector<int>;
  constexpr Qt::Key kDown = Qt::Key_Down;
  constexpr Qt::Key kReturn = Qt::Key_Return;
  EXPECT_EQ(Picked({kDown, kReturn}), Ids{2});
  EXPECT_EQ(Picked({kDown, kDown, kDown, Qt::Key_Right, kDown, kReturn}), Ids{7});
  EXPECT_EQ(Picked({Qt::Key_Up, kReturn}), Ids{}) << "disabled";
  EXPECT_EQ(Picked({kDown, Qt::Key_Escape}), Ids{});
  EXPECT_EQ(Picked({Qt::Key_F, kReturn}), Ids{4}) << "by its first letter";
}

TEST_F(SmartMenuTest, FollowsItsOwnerWhileOpenAndAfter) {
  bool was_checked = false;
  QStringList open_texts;
  QTimer::singleShot(0, &form, [&] {
    SetMenuItemChecked(4, true);
    was_checked = menu->Widget(kRoot)->actions()[2]->isChecked();
    items.resize(3);
    menu->Rebuild();
    menu->PopUp(kRoot, QPoint());  // open already
    open_texts = Texts(kRoot);
    menu->Close();
  });
  menu->PopUp(kRoot, QPoint());
  EXPECT_TRUE(was_checked);
  EXPECT_EQ(open_texts.size(), 5);
  EXPECT_EQ(Texts(kRoot), (QStringList{u"Open...\tCtrl+O"_s, u"-"_s}));
}

TEST_F(SmartMenuTest, MayEndWhileItIsOpen) {
  QTimer::singleShot(0, &form, [&] { menu.reset(); });
  menu->PopUp(kRoot, QPoint());
  EXPECT_EQ(menu, nullptr);
}

TEST_F(SmartMenuTest, DrawsInTheColoursOfTheScheme) {
  const QColor dark(0x20, 0x22, 0x26);
  const QColor light(0xF4, 0xF4, 0xF4);
  for (const bool is_dark : {true, false}) {
    const QColor ground = is_dark ? dark : light;
    const QColor ink = is_dark ? light : dark;
    menu->SetColors({ground, ink, Qt::blue, Qt::yellow, Qt::cyan, Qt::black, ink});
    QMenu& widget = *menu->Widget(kRoot);
    widget.setActiveAction(widget.actions()[0]);
    const QImage image = Picture(1.0);
    const auto row = [&](int index) { return widget.actionGeometry(widget.actions()[index]); };
    EXPECT_GT(Count(image, row(0), qRgb(255, 255, 0)), row(0).width() * row(0).height() / 2);
    EXPECT_GT(Count(image, row(0), qRgb(0, 255, 255)), row(0).width());
    EXPECT_GT(Count(image, row(1), qRgb(0, 0, 255)), row(1).width() / 2);
    EXPECT_EQ(image.pixel(0, 0), ground.rgb());
    EXPECT_EQ(Count(image, image.rect(), qRgb(255, 0, 255)), 0);
    // A disabled entry is fainter than its colour.
    EXPECT_EQ(Count(image, row(4), ink.rgb()), 0);
  }
}

TEST_F(SmartMenuTest, StaysReadableInASchemeOfOneColour) {
  menu->SetColors({Qt::black, Qt::black, Qt::black, Qt::black, Qt::black, Qt::black, Qt::black});
  QMenu& widget = *menu->Widget(kRoot);
  widget.setActiveAction(widget.actions()[0]);
  const QImage image = Picture(1.0);
  for (const int index : {0, 2, 3, 4}) {
    const QRect row = widget.actionGeometry(widget.actions()[index]);
    const QRect caption = row.adjusted(30, 4, -24, -4);
    EXPECT_LT(Count(image, caption, qRgb(0, 0, 0)), caption.width() * caption.height()) << index;
  }
}

TEST_F(SmartMenuTest, TakesTheIconThatFitsTheScale) {
  for (const double scale : {1.0, 1.25, 2.0}) {
    const QImage image = Picture(scale);
    const QRgb expected = scale > 1.0 ? qRgb(0, 255, 0) : qRgb(255, 0, 0);
    const int side = qRound(16 * scale);
    EXPECT_NEAR(Count(image, image.rect(), expected), side * side, 2 * side) << scale;
  }
}

}  // namespace
}  // namespace kv
