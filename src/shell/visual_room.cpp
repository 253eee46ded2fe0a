#include "shell/visual_room.h"

#include "system/translation_qt.h"
#include "visual/audio_capture_pulse.h"
#include "visual/plugin_folders.h"

#include <memory>

namespace kv {

VisualRoom::VisualRoom(VisualRoomHost& host, const Parts& parts)
    : host_(host),
      parts_(parts),
      objects_(ListPluginLibraries(PluginFolders(parts.folder.AppFolder())),
               parts.folder.AppFolder()),
      catalogue_(objects_, parts.settings, state_, parts.pump),
      VuMeter1_(new VuMeterWidget(parts.time, std::make_unique<PulseCapture>(), VuMeterProperties{},
                                  &parts.form)),
      main_meter_(*VuMeter1_),
      hosting_(*this, {catalogue_, main_meter_, parts.settings, state_, parts.pump, parts.time}),
      colors_(parts.form.palette()) {
  VuMeter1_->setObjectName(QStringLiteral("VuMeter1"));
  VuMeter1_->setAccessibleName(QTr("Level meter"));
  VuMeter1_->hide();
  VuMeter1_->Meter().Frame = [this](std::vector<std::uint8_t>& Samples, std::int32_t& Count,
                                    std::int32_t /*Level*/, bool& Cancel) {
    hosting_.Frame(main_meter_, parts_.form.isVisible() && !parts_.form.isMinimized(), Samples,
                   Count, Cancel);
  };
}

VisualRoom::~VisualRoom() {
  UnloadAll();
}

int VisualRoom::ScanPlugins() {
  catalogue_.ScanPlugins(objects_.Libraries());
  return catalogue_.PluginCount();
}

std::string VisualRoom::Name(int index) const {
  const PluginEntry* entry = catalogue_.Find(index);
  return entry != nullptr ? entry->Name : std::string();
}

std::string VisualRoom::Key(int index) const {
  const PluginEntry* entry = catalogue_.Find(index);
  return entry != nullptr ? entry->File : std::string();
}

void VisualRoom::ShowMeterWindow() {
  if (state_.VumeterOpen) {
    if (window_ != nullptr) window_->activateWindow();
    return;
  }
  window_ = new frmVumeter(
      {*this, hosting_, main_meter_, parts_.settings, state_, parts_.time, parts_.windows},
      std::make_unique<PulseCapture>(), &parts_.form);
  parts_.adopt(*window_);
  window_->Form_Load();
}

void VisualRoom::ShowPlugins() {
  if (manager_ != nullptr) {
    manager_->activateWindow();
    return;
  }
  // Anything can happen while it is open, its owner's end included.
  manager_ = new frmPlugins({catalogue_, parts_.settings, state_, parts_.text,
                             [this](const std::string& caption) {
                               if (window_ != nullptr) window_->SetCaption(caption);
                             }},
                            colors_, &parts_.form);
  manager_->exec();
  delete manager_.data();
  if (!parts_.session.Unloading) host_.UpdateMenuChecks();
}

void VisualRoom::SetColors(const QPalette& colors) {
  colors_ = colors;
  main_meter_.SetRefreshRate(parts_.settings.VuRefreshRate);
  main_meter_.SetColors(parts_.settings);
  if (window_ != nullptr) window_->UpdateColors();
  if (manager_ != nullptr) manager_->SetColors(colors);
}

void VisualRoom::UnloadAll() {
  if (manager_ != nullptr) manager_->reject();
  if (window_ != nullptr) {
    window_->Form_Unload();
    delete window_.data();
  }
}

void VisualRoom::EndSession() {
  if (window_ != nullptr) window_->Form_Unload(true);
}

bool VisualRoom::HasPicture() const {
  // The session still holds the last medium's while this one is being opened.
  int width = 0;
  int height = 0;
  parts_.Movie.DS_GetMovieSize(width, height);
  return width != 0 || height != 0;
}

}  // namespace kv
