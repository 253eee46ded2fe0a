// What a rule around the engine stands on: the engine over fake media on virtual time, the settings
// and the session. A test's player or fixture takes it as its first base.
#pragma once

#include "engine/dshow_control.h"
#include "state/session.h"
#include "state/settings.h"
#include "support/fake_graph.h"
#include "support/fake_pump.h"

namespace kv {

struct MovieWorld {
  bool Playing() const { return movie.DS_IsRunning() && !movie.DS_IsPaused(); }

  VirtualTime time;
  FakePump pump{&time};
  FakeGraphFactory factory{time, pump};
  clsDShowControl movie{factory, pump};
  Settings settings;
  Session session;
};

}  // namespace kv
