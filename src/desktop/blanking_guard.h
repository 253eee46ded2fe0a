// Keeps the screen from going blank while a video plays, and only then.
//
// The desktop's portal is asked first, the screen saver's own service where there is none; where
// neither answers nothing is done until the next play, when a service may have appeared. Nothing
// waits: answers come later, also after they are wanted no more. Owned by the shell's desktop room;
// interface thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace kv {

// The two services. Every answer comes once, from the event loop; nothing is a refusal.
class BlankingServices {
 public:
  virtual ~BlankingServices() = default;
  using PortalAnswer = std::function<void(std::optional<std::string> request)>;
  using SaverAnswer = std::function<void(std::optional<std::uint32_t> cookie)>;
  virtual void InhibitByPortal(PortalAnswer answer) = 0;
  virtual void ReleasePortal(const std::string& request) = 0;
  virtual void InhibitBySaver(SaverAnswer answer) = 0;
  virtual void ReleaseSaver(std::uint32_t cookie) = 0;
};

class BlankingGuard {
 public:
  // Must outlive this object, and give no answer afterwards.
  explicit BlankingGuard(BlankingServices& services) : services_(services) {}

  // Whether a video plays now. Called as often as anybody likes.
  void SetPlaying(bool playing);

 private:
  void Asked(std::optional<std::string> request);
  void AskedSaver(std::optional<std::uint32_t> cookie);
  void Settle();

  BlankingServices& services_;
  bool wanted_ = false;
  bool asking_ = false;
  bool refused_ = false;  // since it has been wanted
  std::optional<std::string> request_;
  std::optional<std::uint32_t> cookie_;
};

}  // namespace kv
