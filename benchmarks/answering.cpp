// How long an event waits for the player: pings its window from outside, as a window manager does.
//
// answering WINDOW SECONDS: the interface thread answers `_NET_WM_PING` between two pieces of its
// work, so the wait is what was left of the piece in hand, and the way through the X server. Pings
// follow one another at random distances of 2 to 6 ms. Prints the waits, ms.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <poll.h>
#include <random>
#include <string_view>
#include <thread>
#include <vector>
#include <xcb/xcb.h>

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kGiveUpMilliseconds = 5000;

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using Reply = std::unique_ptr<T, Free>;

double Milliseconds(Clock::time_point begin) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

class Pings {
 public:
  Pings(xcb_connection_t* desktop, xcb_window_t window)
      : desktop_(desktop),
        window_(window),
        root_(xcb_setup_roots_iterator(xcb_get_setup(desktop)).data->root),
        protocols_(Atom("WM_PROTOCOLS")),
        ping_(Atom("_NET_WM_PING")) {
    // Answers go to the root window, from some toolkits to those who listen for its own changes.
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY |
                                 XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(desktop_, root_, XCB_CW_EVENT_MASK, &events);
    xcb_flush(desktop_);
  }

  // Milliseconds; negative when no answer came.
  double Ping() {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window_;
    message.type = protocols_;
    message.data.data32[0] = ping_;
    message.data.data32[1] = ++number_;
    message.data.data32[2] = window_;
    const auto begin = Clock::now();
    xcb_send_event(desktop_, 0, window_, 0, reinterpret_cast<const char*>(&message));
    xcb_flush(desktop_);
    while (Milliseconds(begin) < kGiveUpMilliseconds) {
      while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(desktop_)}) {
        if (IsAnswer(*event)) return Milliseconds(begin);
      }
      if (xcb_connection_has_error(desktop_) != 0) break;
      pollfd descriptor{xcb_get_file_descriptor(desktop_), POLLIN, 0};
      poll(&descriptor, 1, 100);
    }
    return -1.0;
  }

 private:
  xcb_atom_t Atom(std::string_view name) {
    const auto asked =
        xcb_intern_atom(desktop_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(desktop_, asked, nullptr)};
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
  }
  bool IsAnswer(const xcb_generic_event_t& event) const {
    if ((event.response_type & 0x7F) != XCB_CLIENT_MESSAGE) return false;
    xcb_client_message_event_t message{};
    std::memcpy(&message, &event, sizeof message);
    return message.type == protocols_ && message.data.data32[0] == ping_ &&
           message.data.data32[1] == number_;
  }

  xcb_connection_t* desktop_;
  xcb_window_t window_;
  xcb_window_t root_;
  xcb_atom_t protocols_;
  xcb_atom_t ping_;
  std::uint32_t number_ = 0;
};

int Run(xcb_window_t window, double seconds) {
  const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> desktop(
      xcb_connect(nullptr, nullptr), &xcb_disconnect);
  if (xcb_connection_has_error(desktop.get()) != 0) return EXIT_FAILURE;
  Pings pings(desktop.get(), window);
  std::mt19937 random(1);
  std::uniform_int_distribution<int> distance(2000, 6000);
  std::vector<double> waits;
  for (const auto begin = Clock::now(); Milliseconds(begin) < seconds * 1000.0;) {
    const double wait = pings.Ping();
    if (wait < 0.0) {
      std::fprintf(stderr, "answering: the window does not answer\n");
      return EXIT_FAILURE;
    }
    waits.push_back(wait);
    std::this_thread::sleep_for(std::chrono::microseconds(distance(random)));
  }
  std::sort(waits.begin(), waits.end());
  std::printf("median %.2f p99 %.2f max %.2f pings %zu\n", waits[waits.size() / 2],
              waits[waits.size() * 99 / 100], waits.back(), waits.size());
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: answering WINDOW SECONDS\n");
    return EXIT_FAILURE;
  }
  return Run(static_cast<xcb_window_t>(std::strtoul(argv[1], nullptr, 0)), std::atof(argv[2]));
}
