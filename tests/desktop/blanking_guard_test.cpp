#include "desktop/blanking_guard.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace kv {
namespace {

class FakeServices : public BlankingServices {
 public:
  std::string log;
  PortalAnswer portal;
  SaverAnswer saver;

  void InhibitByPortal(PortalAnswer answer) override {
    log += "portal? ";
    portal = std::move(answer);
  }
  void ReleasePortal(const std::string& request) override { log += "-" + request + " "; }
  void InhibitBySaver(SaverAnswer answer) override {
    log += "saver? ";
    saver = std::move(answer);
  }
  void ReleaseSaver(std::uint32_t cookie) override { log += "-" + std::to_string(cookie) + " "; }
};

TEST(BlankingGuard, NothingIsHeldThatIsNotWantedAnyMore) {
  FakeServices services;
  BlankingGuard guard(services);
  const auto log = [&services] { return std::exchange(services.log, {}); };
  guard.SetPlaying(true);
  guard.SetPlaying(false);
  services.portal("/1");
  EXPECT_EQ(log(), "portal? -/1 ");
  guard.SetPlaying(true);
  guard.SetPlaying(false);
  guard.SetPlaying(true);  // the one question under way serves this play as well
  services.portal("/2");
  guard.SetPlaying(false);
  EXPECT_EQ(log(), "portal? -/2 ");
  guard.SetPlaying(true);
  guard.SetPlaying(false);
  services.portal(std::nullopt);
  EXPECT_EQ(log(), "portal? ");
  // Nobody: asked again with the next play, and not before.
  guard.SetPlaying(true);
  services.portal(std::nullopt);
  services.saver(std::nullopt);
  guard.SetPlaying(true);
  EXPECT_EQ(log(), "portal? saver? ");
  guard.SetPlaying(false);
  guard.SetPlaying(true);
  services.portal(std::nullopt);
  guard.SetPlaying(false);
  services.saver(7);
  EXPECT_EQ(log(), "portal? saver? -7 ");
}

}  // namespace
}  // namespace kv
