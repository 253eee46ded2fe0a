// The surface of the level meter that plug-ins paint on: pixels in memory.
//
// `GetVuMeter` is given its address as two 32-bit integers, its positions 3 and 4, and its width
// and height in pixels, its positions 5 and 6. It is valid until `GetVuMeter` returns. With the
// meter's `AutoRedraw` it is filled with the background before each frame; without it
// (`NoAutoRedraw`) it still holds what the plug-in left there, until the size changes. The meter
// shows it after the frame.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kv {

// Plain data of a fixed layout, the same for every compiler.
struct MeterSurface {
  std::int32_t width;     // pixels of the screen
  std::int32_t height;    //
  std::int32_t stride;    // bytes from one row to the next below it
  float scale;            // pixels of the screen in one of the desktop's, 1.0 or more
  std::uint32_t* pixels;  // 0x00RRGGBB, the upper left first; the top byte does not count
};

// The two integers of a surface: the low and the high half of its address. 0 and 0 are none.
inline std::int32_t SurfaceHandle1Of(const MeterSurface* surface) {
  const std::uint64_t address = reinterpret_cast<std::uintptr_t>(surface);
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(address));
}
inline std::int32_t SurfaceHandle2Of(const MeterSurface* surface) {
  const std::uint64_t address = reinterpret_cast<std::uintptr_t>(surface);
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(address >> 32));
}
inline MeterSurface* SurfaceOf(std::int32_t SurfaceHandle1, std::int32_t SurfaceHandle2) {
  const std::uint64_t address =
      (static_cast<std::uint64_t>(static_cast<std::uint32_t>(SurfaceHandle2)) << 32) |
      static_cast<std::uint32_t>(SurfaceHandle1);
  return reinterpret_cast<MeterSurface*>(static_cast<std::uintptr_t>(address));
}

}  // namespace kv
