// Questions to a disk that may not answer: asked on a thread of their own, so that the interface
// goes on meanwhile and the user can give up.
//
// A network folder that is gone holds whoever asks it for minutes and cannot be interrupted; a
// thread that hangs in it is left behind. Called on the interface thread; pumps.
#pragma once

#include "system/message_pump.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <type_traits>
#include <utility>

namespace kv {

// The answer of `ask`; none when `given_up` came true first. While the answer takes longer than a
// moment messages are pumped. `ask` runs on the other thread, perhaps long after this has returned,
// so it must own what it refers to; one that throws gives an empty answer.
template <class Ask, class Answer = std::invoke_result_t<Ask>>
std::optional<Answer> AskAside(Ask ask, MessagePump& pump, const std::function<bool()>& given_up) {
  // Short enough that a button answers at once, long enough that a healthy disk costs no pump.
  constexpr std::chrono::milliseconds kMoment{10};
  struct Shared {
    std::mutex mutex;
    std::condition_variable changed;
    std::optional<Answer> answer;
  };
  const auto shared = std::make_shared<Shared>();
  try {
    std::thread([shared, ask] {
      Answer answer{};
      try {
        answer = ask();
      } catch (...) {
        answer = Answer{};
      }
      const std::lock_guard lock(shared->mutex);
      shared->answer = std::move(answer);
      shared->changed.notify_all();
    }).detach();
  } catch (const std::system_error&) {
    return ask();  // no thread to be had
  }
  std::unique_lock lock(shared->mutex);
  while (!shared->changed.wait_for(lock, kMoment, [&] { return shared->answer.has_value(); })) {
    lock.unlock();
    pump.PumpOnce();
    if (given_up()) return std::nullopt;
    lock.lock();
  }
  return std::move(shared->answer);
}

}  // namespace kv
