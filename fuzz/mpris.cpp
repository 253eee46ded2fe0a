// What media say of themselves, on its way to media controllers, and what those ask for. The parts
// are the medium's name, a command or property, its value, and the tags, each name before its text.
#include "desktop/media_metadata.h"
#include "desktop/mpris_player.h"
#include "support.h"
#include "support/fake_mpris_host.h"
#include "support/virtual_time.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace kv::fuzz {
namespace {

// The bus ends a connection over a text that is not UTF-8 or has a NUL.
struct GoesOverTheBus {
  void operator()(const std::string& text) const {
    Require(IsWellFormedUtf8(text) && !HasControl(text), "texts can be sent and shown");
  }
  void operator()(const BusPath& path) const { Require(path.path.starts_with('/'), "a path"); }
  void operator()(const std::vector<std::string>& texts) const {
    Require(!texts.empty(), "a list says something");
    for (const std::string& text : texts) (*this)(text);
  }
  void operator()(const MediaMetadata& data) const {
    for (const auto& [name, value] : data) std::visit(*this, value);
  }
  void operator()(std::int32_t number) const { Require(number > 0, "numbers count from 1"); }
  void operator()(std::int64_t time) const { Require(time >= 0, "times are not negative"); }
  void operator()(double number) const { Require(std::isfinite(number), "numbers are numbers"); }
  void operator()(bool /*value*/) const {}
};

struct Bus : MprisBus {
  void PropertiesChanged(MprisInterface /*interface*/, const MprisProperties& changed) override {
    for (const auto& [name, value] : changed) std::visit(GoesOverTheBus(), value);
  }
  void Seeked(std::int64_t position) override { GoesOverTheBus()(position); }
};

template <class Number>
Number As(std::string_view bytes) {
  Number number{};
  if (!bytes.empty()) std::memcpy(&number, bytes.data(), std::min(bytes.size(), sizeof(number)));
  return number;
}

void Ask(MprisPlayer& player, std::string_view name, std::string_view value) {
  const auto number = As<std::int64_t>(value);
  if (name == "Seek") player.Seek(number);
  if (name == "SetPosition") player.SetPosition("/org/kestrelview/track/1", number);
  if (name == "Step") {
    player.Next();
    player.Previous();
  }
  if (name == "Play") player.PlayPause();
  if (name == "OpenUri") player.OpenUri(std::string(value));
  for (const auto interface : {MprisInterface::kRoot, MprisInterface::kPlayer}) {
    for (const MprisValue& each : {MprisValue(As<double>(value)), MprisValue(std::string(value)),
                                   MprisValue(!value.empty())}) {
      player.Set(interface, std::string(name), each);
    }
  }
}

void RequireDate(const std::string& date) {
  if (date.empty()) return;
  Require(date.size() >= 4 && date.find_first_not_of("0123456789") >= 4, "a date has a year");
  Require(ContentCreated(date) == date, "a date is one by itself");
}

}  // namespace

void Try(std::string_view input) {
  Parts parts(input);
  FakeMprisHost host;
  host.state.target = parts.Next();
  const std::string_view name = parts.Next();
  const std::string_view value = parts.Next();
  std::map<std::string, std::string> tags;
  while (!parts.Rest().empty()) {
    std::string tag(parts.Next());
    tags[std::move(tag)] = parts.Next();
  }
  host.state.tags = &tags;
  host.state.running = true;
  host.state.duration = 100;
  host.state.list_index = 2;
  host.state.list_count = static_cast<int>(tags.size());

  Bus bus;
  VirtualTime time;
  MprisPlayer player(host, bus, time, {"Name", "entry", {"file"}, {"audio/mpeg"}});
  player.Begin();
  for (const auto interface : {MprisInterface::kRoot, MprisInterface::kPlayer}) {
    GoesOverTheBus check;
    for (const auto& [key, each] : player.Properties(interface)) std::visit(check, each);
  }
  Ask(player, name, value);
  time.Advance(1000);
  const PlayerState& state = host.state;
  Require(state.volume >= 0 && state.volume <= 1, "a volume is in its bounds");
  Require(state.rate >= MprisPlayer::kSlowest && state.rate <= MprisPlayer::kFastest,
          "a rate is in its bounds");
  Require(state.position >= 0 && state.position <= state.duration, "so is a position");
  Require(state.repeat_mode >= 0 && state.repeat_mode <= 2, "so is a mode");
  RequireDate(ContentCreated(value));
}

}  // namespace kv::fuzz
