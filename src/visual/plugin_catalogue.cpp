#include "visual/plugin_catalogue.h"

#include "system/shown_text.h"

#include <string_view>
#include <utility>

namespace kv {
namespace {

constexpr std::size_t kLongestLine = 200;  // characters

// What stands in menus, captions and lists is one line, whatever the plug-in says.
std::string ReadLine(PluginObject& object, std::string_view member) {
  return ShownText(object.ReadText(member).value_or(""), kLongestLine);
}

}  // namespace

PluginCatalogue::PluginCatalogue(PluginObjects& objects, const Settings& settings,
                                 const VisualState& state, MessagePump& pump)
    : objects_(objects), settings_(settings), state_(state), pump_(pump) {}

void PluginCatalogue::ScanPlugins(const std::vector<PluginLibrary>& libraries) {
  plugins_.clear();
  for (const PluginLibrary& library : libraries) {
    const std::shared_ptr<PluginObject> object = objects_.CreateObject(library.ProgId);
    if (!object) continue;
    PluginEntry entry;
    entry.ProgId = library.ProgId;
    entry.Author = ReadLine(*object, "p_author");
    entry.AuthorUrl = ReadLine(*object, "p_authorurl");
    entry.Description = object->ReadText("p_description").value_or("");
    entry.HasConfig = object->ReadFlag("p_hasconfig").value_or(false);
    entry.Name = ReadLine(*object, "p_pluginname");
    entry.Picture = object->ReadPicture("PictureScreenShoot");
    entry.Type = object->ReadNumber("p_type").value_or(0);
    entry.Version = ReadLine(*object, "p_version");
    entry.File = library.File;
    plugins_.push_back(std::move(entry));
  }
}

const PluginEntry* PluginCatalogue::Find(std::int32_t index) const {
  return index >= 0 && index < PluginCount() ? &plugins_[static_cast<std::size_t>(index)] : nullptr;
}

bool PluginCatalogue::CreatePlugin(const std::string& ProgId) {
  // The text may be a field of the settings, which the pump can change.
  const std::string name = ProgId;  // NOLINT(performance-unnecessary-copy-initialization)
  if (current_) DestroyPlugin();
  bool failed = false;
  if (state_.VumeterOpen || IsOn(settings_.ShowVuMeter)) {
    current_ = objects_.CreateObject(name);
    failed = current_ == nullptr;
  }
  ApplyPluginRedraw();
  pump_.PumpOnce();
  return failed;
}

void PluginCatalogue::ApplyPluginRedraw() {
  const std::shared_ptr<PluginObject> plugin = current_;
  if (!plugin) return;
  const bool by_itself = plugin->ReadFlag("NoAutoRedraw").value_or(false);
  if (set_auto_redraw) set_auto_redraw(!by_itself);
}

void PluginCatalogue::DestroyPlugin() {
  current_.reset();
  pump_.PumpOnce();
}

bool PluginCatalogue::CurrentHasConfig() const {
  const std::shared_ptr<PluginObject> plugin = current_;
  return plugin && plugin->ReadFlag("p_hasconfig").value_or(false);
}

}  // namespace kv
