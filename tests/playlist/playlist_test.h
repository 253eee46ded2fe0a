// What the room's tests stand on: texts and dialogs that are played, a scratch folder, and the
// words in which a test says what it expects.
#pragma once

#include "support/fake_text_platform.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folder.h"
#include "support/virtual_time.h"

#include <algorithm>
#include <functional>
#include <gmock/gmock.h>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kv {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

}  // namespace kv
