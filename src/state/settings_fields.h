// The fields of the settings record: their names, and where they stand in the file.
//
// The one list in file order that reading and writing walk; a settings dialog can walk it as well.
// A field's stored type and count are those of its member: 16-bit, 32-bit, double or text, alone or
// as an array.
#pragma once

#include "state/settings.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace kv {

template <class T>
using SettingsMember = T Settings::*;

using AnySettingsMember =
    std::variant<SettingsMember<std::int16_t>, SettingsMember<std::int32_t>, SettingsMember<double>,
                 SettingsMember<std::string>, SettingsMember<std::array<std::int16_t, 2>>,
                 SettingsMember<std::array<std::int16_t, 3>>,
                 SettingsMember<std::array<std::int16_t, 4>>,
                 SettingsMember<std::array<std::int32_t, kPlaylistColumns>>,
                 SettingsMember<std::array<std::int32_t, kColorSlots>>,
                 SettingsMember<std::array<double, kPlaylistColumns>>,
                 SettingsMember<std::array<std::string, kRecentFiles>>>;

struct SettingsField {
  std::string_view name;
  AnySettingsMember member;
};

template <class T>
inline constexpr bool kIsArray = false;
template <class T, std::size_t N>
inline constexpr bool kIsArray<std::array<T, N>> = true;

// Calls `visit` with the field's value; with each element in turn where the field is an array.
// `settings` may be const.
template <class Record, class Visit>
void VisitField(Record& settings, const SettingsField& field, Visit visit) {
  std::visit(
      [&](auto member) {
        auto& value = settings.*member;
        if constexpr (kIsArray<std::remove_cvref_t<decltype(value)>>) {
          for (auto& element : value) visit(element);
        } else {
          visit(value);
        }
      },
      field.member);
}

inline constexpr std::array<SettingsField, 85> kSettingsFields{{
    {"AutoPlayResume", &Settings::AutoPlayResume},
    {"QuickSearchText", &Settings::QuickSearchText},
    {"CpuGraphGridMove", &Settings::CpuGraphGridMove},
    {"CpuGraphInterval", &Settings::CpuGraphInterval},
    {"CpuGraph", &Settings::CpuGraph},
    {"CpuGraphGrid", &Settings::CpuGraphGrid},
    {"HideControlsInFullscreen", &Settings::HideControlsInFullscreen},
    {"FullScreen", &Settings::FullScreen},
    {"KeepAspect", &Settings::KeepAspect},
    {"FitToWindow", &Settings::FitToWindow},
    {"HideInFullscreen", &Settings::HideInFullscreen},
    {"HideInNormal", &Settings::HideInNormal},
    {"IncludePathInFileTitle", &Settings::IncludePathInFileTitle},
    {"AutoLoadLast", &Settings::AutoLoadLast},
    {"SavePlaylist", &Settings::SavePlaylist},
    {"reserved16", &Settings::reserved16},
    {"FirstRun", &Settings::FirstRun},
    {"ShowFramesWhileScrolling", &Settings::ShowFramesWhileScrolling},
    {"PlaylistShowDetails", &Settings::PlaylistShowDetails},
    {"reserved20", &Settings::reserved20},
    {"reserved21", &Settings::reserved21},
    {"MinimizeToTray", &Settings::MinimizeToTray},
    {"RememberWindowPos", &Settings::RememberWindowPos},
    {"RememberSize", &Settings::RememberSize},
    {"WindowWidth", &Settings::WindowWidth},
    {"WindowHeight", &Settings::WindowHeight},
    {"WindowLeft", &Settings::WindowLeft},
    {"WindowTop", &Settings::WindowTop},
    {"Volume", &Settings::Volume},
    {"LastOpenFolder", &Settings::LastOpenFolder},
    {"RepeatMode", &Settings::RepeatMode},
    {"PlayRate", &Settings::PlayRate},
    {"Balance", &Settings::Balance},
    {"PlaylistIndex", &Settings::PlaylistIndex},
    {"PlaylistFile", &Settings::PlaylistFile},
    {"CurrentFile", &Settings::CurrentFile},
    {"StorePos", &Settings::StorePos},
    {"LastPosition", &Settings::LastPosition},
    {"AutoStart", &Settings::AutoStart},
    {"DragDropAddsToPlaylist", &Settings::DragDropAddsToPlaylist},
    {"reserved41", &Settings::reserved41},
    {"PlaylistTop", &Settings::PlaylistTop},
    {"PlaylistLeft", &Settings::PlaylistLeft},
    {"PlaylistHeight", &Settings::PlaylistHeight},
    {"PlaylistWidth", &Settings::PlaylistWidth},
    {"PlaylistVisible", &Settings::PlaylistVisible},
    {"Colors", &Settings::Colors},
    {"ColorScheme", &Settings::ColorScheme},
    {"PlayingFromPlaylist", &Settings::PlayingFromPlaylist},
    {"reserved50", &Settings::reserved50},
    {"PreviousItemPosition", &Settings::PreviousItemPosition},
    {"ShowVuMeter", &Settings::ShowVuMeter},
    {"VuMeterStyle", &Settings::VuMeterStyle},
    {"VuRefreshRate", &Settings::VuRefreshRate},
    {"AudioBufferSize", &Settings::AudioBufferSize},
    {"AudioBufferCount", &Settings::AudioBufferCount},
    {"AudioSampleRate", &Settings::AudioSampleRate},
    {"LastSaveFolder", &Settings::LastSaveFolder},
    {"PluginStyle", &Settings::PluginStyle},
    {"UseExternalPlugin", &Settings::UseExternalPlugin},
    {"PluginProgId", &Settings::PluginProgId},
    {"PluginName", &Settings::PluginName},
    {"PluginKey", &Settings::PluginKey},
    {"VumeterTop", &Settings::VumeterTop},
    {"VumeterLeft", &Settings::VumeterLeft},
    {"VumeterHeight", &Settings::VumeterHeight},
    {"VumeterWidth", &Settings::VumeterWidth},
    {"VumeterVisible", &Settings::VumeterVisible},
    {"AutoNext", &Settings::AutoNext},
    {"PlaylistColumnWidth", &Settings::PlaylistColumnWidth},
    {"PlaylistColumnPosition", &Settings::PlaylistColumnPosition},
    {"reserved72", &Settings::reserved72},
    {"SaveAbsolutePaths", &Settings::SaveAbsolutePaths},
    {"FindPlaying", &Settings::FindPlaying},
    {"AutoZoom", &Settings::AutoZoom},
    {"AutoPlayPlaylist", &Settings::AutoPlayPlaylist},
    {"reserved77", &Settings::reserved77},
    {"reserved78", &Settings::reserved78},
    {"AutoFullscreen", &Settings::AutoFullscreen},
    {"AutoRestart", &Settings::AutoRestart},
    {"RestartPlaying", &Settings::RestartPlaying},
    {"LastWindowState", &Settings::LastWindowState},
    {"RecentFiles", &Settings::RecentFiles},
    {"InitLastFrame", &Settings::InitLastFrame},
    {"SilentSizing", &Settings::SilentSizing},
}};

}  // namespace kv
