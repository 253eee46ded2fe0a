// What the room's tests stand on: the engine over fake media on virtual time, the user's answers, a
// scratch folder, and the words in which a test says what it expects.
#pragma once

#include "support/fake_shell_services.h"
#include "support/fake_text_platform.h"
#include "support/movie_world.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folder.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kv {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

}  // namespace kv
