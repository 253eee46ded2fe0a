#include "view/menu_model.h"

#include "system/ascii_text.h"
#include "system/shown_text.h"
#include "system/translation.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kv {
namespace {

constexpr int kCaptionPixels = 200;

// By the number that GetIcon() gives.
constexpr std::array<std::string_view, 4> kRecentPictures = {
    "", "icons/recent_media.ico", "icons/recent_audio.ico", "icons/recent_url.ico"};

constexpr std::array<std::string_view, 8> kSoundExtensions = {".mp3", ".mp2", ".wav", ".voc",
                                                              ".au",  ".wma", ".mid", ".midi"};

std::string TwoDigits(std::size_t number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

}  // namespace

int MenuModel::GetIcon(std::string_view path) {
  constexpr int kFile = 1;
  constexpr int kSound = 2;
  constexpr int kAddress = 3;
  if (StartsWithIgnoringCase(path, "http://") || StartsWithIgnoringCase(path, "ftp://")) {
    return kAddress;
  }
  const std::string extension = LowerAscii(GetFileExtension(path, true));
  return std::find(kSoundExtensions.begin(), kSoundExtensions.end(), extension) !=
                 kSoundExtensions.end()
             ? kSound
             : kFile;
}

MenuModel::MenuModel(const Settings& settings, const MenuPlugins& plugins, const TextPlatform& text,
                     MeasureText measure)
    : settings_(settings), plugins_(plugins), text_(text), measure_(std::move(measure)) {}

void MenuModel::BuildMenu() {
  items_.clear();
  separators_ = 0;
  for (const Command& command : kCommands) {
    Add(command);
    if (command.key == "mRecent") AddRecentFiles();
    if (command.key == kBuiltInMeterKey) AddPlugins();
    AddEntries(command.key);
  }
  // One message for the whole, since nobody has seen the new entries yet.
  MenuListener* const listener = std::exchange(listener_, nullptr);
  UpdateMenuChecks();
  listener_ = listener;
  if (listener_ != nullptr) listener_->MenuRebuilt();
}

void MenuModel::Add(const Command& command) {
  MenuItem item;
  item.key = command.key;
  item.type = command.type;
  item.caption = Tr(command.caption);
  item.picture = command.picture;
  item.shift = command.shift;
  item.key_code = command.key_code;
  item.visible = command.visible;
  Add(std::move(item), command.parent);
}

void MenuModel::Add(MenuItem item, std::string_view parent) {
  item.id = IdFor(item.key.empty() ? "-" + std::to_string(++separators_) : item.key);
  item.parent = parent.empty() ? 0 : IdFor(std::string(parent));
  items_.push_back(std::move(item));
}

void MenuModel::AddRecentFiles() {
  for (std::size_t i = 0; i < settings_.RecentFiles.size(); ++i) {
    const std::string& file = settings_.RecentFiles[i];
    if (file.empty()) continue;
    MenuItem item;
    item.key = std::string(kRecentKey) + TwoDigits(i);
    // A menu is seen by whoever looks on.
    item.caption = CompactPathForWidth(WithoutUserInfo(file), measure_, kCaptionPixels);
    item.picture = kRecentPictures[static_cast<std::size_t>(GetIcon(file))];
    Add(std::move(item), "mRecent");
  }
}

void MenuModel::AddPlugins() {
  for (int i = 0; i < plugins_.Count(); ++i) {
    MenuItem item;
    item.key = std::string(kPluginKey) + std::to_string(i);
    item.type = CommandType::kCheck;
    item.caption = plugins_.Name(i);
    Add(std::move(item), "mPlugins");
  }
}

void MenuModel::AddEntries(std::string_view parent) {
  const auto entries = entries_.find(parent);
  if (entries == entries_.end()) return;
  for (const MenuItem& entry : entries->second) Add(entry, parent);
}

void MenuModel::SetEntries(std::string_view parent, std::vector<MenuItem> entries) {
  const int parent_id = IdOfKey(parent);
  std::vector<MenuItem>& made = entries_[std::string(parent)];
  std::erase_if(items_, [&](const MenuItem& item) {
    return item.parent == parent_id &&
           std::any_of(made.begin(), made.end(),
                       [&](const MenuItem& old) { return old.key == item.key; });
  });
  made = std::move(entries);
  // All else stays as it is, what is disabled included.
  const auto holder = std::find_if(items_.begin(), items_.end(),
                                   [&](const MenuItem& item) { return item.id == parent_id; });
  if (holder == items_.end()) return;
  const auto place = holder - items_.begin() + 1;
  const auto old_end = static_cast<std::ptrdiff_t>(items_.size());
  AddEntries(parent);
  std::rotate(items_.begin() + place, items_.begin() + old_end, items_.end());
  if (listener_ != nullptr) listener_->MenuRebuilt();
}

int MenuModel::IdFor(const std::string& name) {
  return ids_.try_emplace(name, static_cast<int>(ids_.size()) + 1).first->second;
}

void MenuModel::UpdateMenuChecks() {
  SetCheckedByKey("mKeepAspect", IsOn(settings_.KeepAspect));
  SetCheckedByKey("mFitToWindow", IsOn(settings_.FitToWindow));
  SetCheckedByKey("mFullScreen", IsOn(settings_.FullScreen));
  SetCheckedByKey("mPlug_-2", IsOn(settings_.ShowVuMeter));

  int chosen = -1;  // the level meter
  if (IsOn(settings_.UseExternalPlugin)) {
    const std::string key = text_.Lower(settings_.PluginKey);
    for (int i = 0; i < plugins_.Count() && chosen < 0; ++i) {
      if (text_.Lower(plugins_.Key(i)) == key) chosen = i;
    }
  }
  for (int i = -1; i < plugins_.Count(); ++i) {
    SetCheckedByKey(std::string(kPluginKey) + std::to_string(i), i == chosen);
  }
}

int MenuModel::IdOfKey(std::string_view key) const {
  if (key.empty()) return kNoItem;
  const auto item = std::find_if(items_.begin(), items_.end(),
                                 [key](const MenuItem& candidate) { return candidate.key == key; });
  return item == items_.end() ? kNoItem : item->id;
}

const MenuItem* MenuModel::Find(int id) const {
  const auto item = std::find_if(items_.begin(), items_.end(),
                                 [id](const MenuItem& candidate) { return candidate.id == id; });
  return item == items_.end() ? nullptr : &*item;
}

bool MenuModel::Checked(int id) const {
  const MenuItem* const item = Find(id);
  return item != nullptr && item->checked;
}

bool MenuModel::Enabled(int id) const {
  const MenuItem* const item = Find(id);
  return item != nullptr && item->enabled;
}

void MenuModel::SetCheckedByKey(std::string_view key, bool checked) {
  SetChecked(IdOfKey(key), checked);
}

void MenuModel::Set(int id, bool MenuItem::*field, bool value) {
  const auto item = std::find_if(items_.begin(), items_.end(),
                                 [id](const MenuItem& candidate) { return candidate.id == id; });
  if (item == items_.end() || (*item).*field == value) return;
  (*item).*field = value;
  if (listener_ != nullptr) listener_->MenuItemChanged(id);
}

void MenuModel::SetChecked(int id, bool checked) {
  Set(id, &MenuItem::checked, checked);
}
void MenuModel::SetEnabled(int id, bool enabled) {
  Set(id, &MenuItem::enabled, enabled);
}

}  // namespace kv
