#include "visual/plugin_manager.h"

#include "system/translation.h"

#include <utility>

namespace kv {
namespace {

constexpr const char* kDefaultRow = TrLater("Default Kestrelview plugin (VuMeter)");
constexpr const char* kDefaultDescription = TrLater(
    "Default vumeter. The build in vumeter can be configured in the Options dialog, and you can "
    "change mode by clicking on it with the left mouse!");
constexpr const char* kMakersAddress = "https://kestrelview.org/";
constexpr const char* kCaptionTail = " - Kestrelview";

}  // namespace

PluginManager::PluginManager(PluginCatalogue& catalogue, Settings& settings, VisualState& state,
                             const TextPlatform& text)
    : catalogue_(catalogue), settings_(settings), state_(state), text_(text) {}

PluginManager::~PluginManager() {
  *alive_ = false;
}

void PluginManager::Form_Load() {
  state_.PluginManagerOpen = true;
  active_ = 0;
  if (!IsOn(settings_.UseExternalPlugin)) return;
  const std::string key = text_.Lower(settings_.PluginKey);
  const std::vector<PluginEntry>& plugins = catalogue_.Plugins();
  for (std::size_t index = 0; index < plugins.size(); ++index) {
    if (text_.Lower(plugins[index].File) == key) active_ = index + 1;
  }
}

void PluginManager::Form_QueryUnload() {
  state_.PluginManagerOpen = false;
  const std::shared_ptr<PluginObject> object = ConfigObject_;
  if (object) object->Call("closedialog");
}

std::vector<std::string> PluginManager::Rows() const {
  std::vector<std::string> rows = {Tr(kDefaultRow)};
  for (const PluginEntry& entry : catalogue_.Plugins()) rows.push_back(entry.Name);
  return rows;
}

const PluginEntry* PluginManager::EntryOf(std::size_t row) const {
  return row == 0 ? nullptr : catalogue_.Find(static_cast<std::int32_t>(row - 1));
}

PluginFacts PluginManager::FactsOf(std::size_t row) const {
  const PluginEntry* const entry = EntryOf(row);
  PluginFacts facts;
  if (entry == nullptr) {
    facts.values = {
        Tr("Audio visualization"), TrIn("answer", "No"), Tr("N/A"), "Ostrand", kMakersAddress,
        Tr("Default VuMeter")};
    facts.description = Tr(kDefaultDescription);
    facts.built_in = true;
    return facts;
  }
  facts.values = {entry->Type == 0 ? Tr("Audio visualization") : Tr("Undefined"),
                  entry->HasConfig ? TrIn("answer", "Yes") : TrIn("answer", "No"),
                  entry->Version,
                  entry->Author,
                  entry->AuthorUrl,
                  entry->Name};
  facts.description = entry->Description;
  facts.picture = entry->Picture;
  facts.can_configure = entry->HasConfig;
  return facts;
}

void PluginManager::UsePlugin(std::size_t row) {
  const std::size_t before = std::exchange(active_, row);
  const PluginEntry* const entry = EntryOf(row);
  if (entry == nullptr) {
    active_ = 0;
    settings_.UseExternalPlugin = FromBool(false);
    catalogue_.DestroyPlugin();
    return;
  }
  if (entry->ProgId == settings_.PluginProgId && before != 0) return;
  settings_.PluginKey = entry->File;
  settings_.PluginProgId = entry->ProgId;
  settings_.UseExternalPlugin = FromBool(true);
  catalogue_.CreatePlugin(settings_.PluginProgId);
}

std::string PluginManager::MeterCaption() const {
  return (active_ == 0 ? std::string(Tr("VuMeter")) : settings_.PluginName) + kCaptionTail;
}

void PluginManager::ConfigPlugin(std::size_t row) {
  const PluginEntry* const entry = EntryOf(row);
  if (entry == nullptr) return;
  const std::shared_ptr<bool> alive = alive_;
  std::shared_ptr<PluginObject> object = catalogue_.CurrentPlugin();
  if (!object || text_.Lower(settings_.PluginProgId) != text_.Lower(entry->ProgId)) {
    object = catalogue_.CreateObject(entry->ProgId);
    ConfigObject_ = object;
  }
  if (!object) return;
  ConfigOpen_ = true;
  object->Call("OpenConfigDialog");
  if (!*alive) return;
  ConfigOpen_ = false;
  ConfigObject_.reset();
}

}  // namespace kv
