// A plug-in's object as the rules see it: members reached by name, every one of which may be
// missing, fail or lie.
//
// plugin_object_qt.h makes real ones, the tests fakes. No call throws. An object may open windows
// and pump messages in any call, except while a frame is painted. Interface thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

// A picture that a plug-in gives: pixels 0xAARRGGBB, not multiplied by alpha, the upper left first.
struct PluginPicture {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;
};

// A mouse event: `Button` 1 left, 2 right, 4 middle; `Shift` the sum of 1 Shift, 2 Ctrl, 4 Alt;
// pixels of the surface. The plug-in may write to all four.
struct PluginMouse {
  std::int16_t Button = 0;
  std::int16_t Shift = 0;
  float X = 0.0F;
  float Y = 0.0F;
};

// The nine arguments of `GetVuMeter`, in their order.
struct PluginFrame {
  std::vector<std::uint8_t>& Samples;
  std::int32_t& Count;
  std::int32_t Surface1;  // see meter_surface.h
  std::int32_t Surface2;
  float Width;  // of the surface, pixels
  float Height;
  std::int32_t& Foreground;  // 0x00BBGGRR, the live colours of the scheme
  std::int32_t& Background;
  std::int32_t& Peak;
};

class PluginObject {
 public:
  virtual ~PluginObject() = default;

  // Nothing where the member is missing, fails or gives something else.
  virtual std::optional<std::string> ReadText(std::string_view member) = 0;
  virtual std::optional<bool> ReadFlag(std::string_view member) = 0;
  virtual std::optional<std::int16_t> ReadNumber(std::string_view member) = 0;
  virtual std::shared_ptr<const PluginPicture> ReadPicture(std::string_view member) = 0;

  // Nothing happens where the member is missing or fails.
  virtual void Call(std::string_view member) = 0;
  virtual void CallMouse(std::string_view member, PluginMouse& mouse) = 0;
  virtual void GetVuMeter(const PluginFrame& frame) = 0;
};

class PluginObjects {
 public:
  virtual ~PluginObjects() = default;

  // A fresh object of that name; null when there is none. Letting go of it is its whole shutdown.
  virtual std::shared_ptr<PluginObject> CreateObject(const std::string& ProgId) = 0;
};

}  // namespace kv
