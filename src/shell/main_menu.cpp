#include "shell/main_menu.h"

#include "controls/color_qt.h"

#include <QFile>
#include <QFontMetrics>
#include <QIcon>

#include <utility>

namespace kv {
namespace {

// Slots of the colour table.
constexpr std::size_t kMenuBackground = 13;
constexpr std::size_t kMenuText = 14;
constexpr std::size_t kMenuSeparator = 15;
constexpr std::size_t kMenuHighlight = 17;
constexpr std::size_t kMenuHighlightBorder = 19;
constexpr std::size_t kMenuHighlightText = 21;

QString ToQString(const std::string& text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

MeasureText Measure(const QWidget& form) {
  return [&form](std::string_view text) {
    return form.fontMetrics().horizontalAdvance(
        QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
  };
}

std::function<QIcon(const std::string&)> Icons(const ProgramFolder& folder) {
  return [&folder](const std::string& file) {
    const QString path = QFile::decodeName(folder.DataFile(file).c_str());
    return QFile::exists(path) ? QIcon(path) : QIcon();
  };
}

SmartMenuItem::Type TypeOf(CommandType type) {
  if (type == CommandType::kSeparator) return SmartMenuItem::Type::kSeparator;
  return type == CommandType::kCheck ? SmartMenuItem::Type::kCheck : SmartMenuItem::Type::kPlain;
}

}  // namespace

MainMenu::MainMenu(const Settings& settings, const MenuPlugins& plugins, const TextPlatform& text,
                   const ProgramFolder& folder, QWidget& form)
    : model_(settings, plugins, text, Measure(form)), widget_(*this, Icons(folder), &form) {
  model_.SetListener(this);
}

MainMenu::~MainMenu() {
  model_.SetListener(nullptr);
}

void MainMenu::SetOnClick(std::function<void(int id)> on_click) {
  widget_.on_click = std::move(on_click);
}

void MainMenu::ApplyColors(const std::array<std::int32_t, kColorSlots>& colors) {
  const auto color = [&](std::size_t slot) { return ToQColor(colors[slot], QPalette()); };
  SmartMenuColors menu;
  menu.background = color(kMenuBackground);
  menu.text = color(kMenuText);
  menu.separator = color(kMenuSeparator);
  menu.highlight = color(kMenuHighlight);
  menu.highlight_border = color(kMenuHighlightBorder);
  menu.highlight_text = color(kMenuHighlightText);
  menu.disabled_text = menu.text;
  widget_.SetColors(menu);
}

void MainMenu::PopUp(QPoint position) {
  widget_.PopUp(model_.IdOfKey(kRootMenu), position);
}

std::vector<SmartMenuItem> MainMenu::MenuItems() const {
  std::vector<SmartMenuItem> items;
  items.reserve(model_.Items().size());
  for (const MenuItem& item : model_.Items()) {
    SmartMenuItem shown;
    shown.id = item.id;
    shown.parent = item.parent;
    shown.type = TypeOf(item.type);
    shown.caption = ToQString(item.caption);
    shown.accelerator = ToQString(AcceleratorText(item.shift, item.key_code));
    shown.icon = item.picture;
    shown.checked = item.checked;
    shown.enabled = item.enabled;
    shown.visible = item.visible;
    items.push_back(std::move(shown));
  }
  return items;
}

}  // namespace kv
