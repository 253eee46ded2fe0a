// Texts that may hold anything, made fit to be shown.
#include "support.h"
#include "support/fake_text_platform.h"
#include "system/shown_text.h"
#include "system/text_case.h"
#include "system/translation.h"
#include "system/utf8.h"

#include <algorithm>

namespace kv::fuzz {
namespace {

void TryShown(std::string_view text) {
  for (const std::size_t most : {std::size_t{0}, std::size_t{2}, std::size_t{7}, text.size()}) {
    const std::string shown = ShownText(text, most);
    Require(IsWellFormedUtf8(shown), "shown text is UTF-8");
    Require(!HasControl(shown), "shown text has no control characters");
    Require(CountCharacters(shown) <= most, "shown text has at most so many characters");
    Require(ShownText(shown, most) == shown, "shown text is fit to be shown");
  }
}

}  // namespace

void Try(std::string_view input) {
  static const FakeTextPlatform platform;
  TryShown(input);
  const std::string proper = ProperCase(input, platform);
  Require(ProperCase(proper, platform) == proper, "proper case is proper");
  Require(CountCharacters(proper) == CountCharacters(input), "each character stays one");

  for (std::size_t most = 0; most < 9; ++most) {
    const std::string_view front = Utf8Prefix(input, most);
    Require(front.size() <= most && input.starts_with(front), "a beginning");
    const std::string_view back = LastCharacters(input, most);
    Require(input.ends_with(back) && CountCharacters(back) <= most, "an end");
    if (IsWellFormedUtf8(input)) {
      Require(IsWellFormedUtf8(front) && IsWellFormedUtf8(back), "no character is cut");
      Require(CountCharacters(back) == std::min(most, CountCharacters(input)), "all that count");
    }
  }

  // A translator's text may have any places for values.
  Require(FillIn(input, {}) == input, "without values a pattern stays");
  Require(FillIn(input, {"%1"}) == input, "a value is put in as it is");

  const std::string open = WithoutUserInfo(input);
  Require(open.size() <= input.size(), "a name and password are taken out");
  const std::string stretched = Stretched(input);
  ShownText(stretched, 1000);
  ProperCase(stretched, platform);
  WithoutUserInfo(stretched);
  LastCharacters(stretched, 100);
}

}  // namespace kv::fuzz
