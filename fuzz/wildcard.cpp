// Wildcards against a second matcher that follows the rules word by word: pattern, then text.
#include "playlist/wildcard.h"

#include "support.h"
#include "system/utf8.h"

#include <optional>
#include <string>
#include <vector>

namespace kv::fuzz {
namespace {

using Characters = std::vector<long>;

Characters CharactersOf(std::string_view text) {
  Characters characters;
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Char next = DecodeUtf8(text, at);
    // A stray byte is a character of its own that is like no other.
    characters.push_back(static_cast<long>(next.code) + (next.valid ? 0 : 0x200000));
    at += next.size;
  }
  return characters;
}

// One character of the text against the inside of brackets. Nothing: a range runs backwards.
std::optional<bool> InClass(const Characters& body, long wanted) {
  const bool negated = body.size() > 1 && body.front() == '!';
  bool listed = false;
  for (std::size_t i = negated ? 1 : 0; i < body.size(); ++i) {
    long last = body[i];
    const long first = body[i];
    if (i + 2 < body.size() && body[i + 1] == '-') {
      last = body[i + 2];
      i += 2;
    }
    if (last < first) return std::nullopt;
    listed = listed || (wanted >= first && wanted <= last);
  }
  return listed != negated;
}

class Slow {
 public:
  Slow(const Characters& pattern, const Characters& text)
      : pattern_(pattern),
        text_(text),
        known_((pattern.size() + 1) * (text.size() + 1), Answer::kUnknown) {}

  bool Matches() { return WellFormed() && From(0, 0); }

  bool WellFormed() const {
    for (std::size_t at = 0; at < pattern_.size(); ++at) {
      if (pattern_[at] != '[') continue;
      const std::size_t close = CloseOf(at);
      if (close == pattern_.size() || !InClass(Body(at, close), 0)) return false;
      at = close;
    }
    return true;
  }

 private:
  enum class Answer : unsigned char { kUnknown, kNo, kYes };

  std::size_t CloseOf(std::size_t open) const {
    while (open < pattern_.size() && pattern_[open] != ']') ++open;
    return open;
  }
  Characters Body(std::size_t open, std::size_t close) const {
    return {pattern_.begin() + static_cast<std::ptrdiff_t>(open) + 1,
            pattern_.begin() + static_cast<std::ptrdiff_t>(close)};
  }

  bool From(std::size_t token, std::size_t at) {
    Answer& answer = known_[token * (text_.size() + 1) + at];
    if (answer == Answer::kUnknown) answer = Look(token, at) ? Answer::kYes : Answer::kNo;
    return answer == Answer::kYes;
  }

  bool Look(std::size_t token, std::size_t at) {
    if (token == pattern_.size()) return at == text_.size();
    const long sign = pattern_[token];
    if (sign == '*') return From(token + 1, at) || (at < text_.size() && From(token, at + 1));
    std::size_t behind = token + 1;
    bool one = at < text_.size();
    if (sign == '[') {
      const std::size_t close = CloseOf(token);
      behind = close + 1;
      if (close == token + 1) return From(behind, at);
      one = one && InClass(Body(token, close), text_[at]).value_or(false);
    } else if (sign == '#') {
      one = one && text_[at] >= '0' && text_[at] <= '9';
    } else if (sign != '?') {
      one = one && text_[at] == sign;
    }
    return one && From(behind, at + 1);
  }

  const Characters& pattern_;
  const Characters& text_;
  std::vector<Answer> known_;
};

}  // namespace

void Try(std::string_view input) {
  Parts parts(input);
  const std::string_view pattern = parts.Next();
  const std::string_view text = parts.Rest();
  const LikePattern like(pattern);
  const bool matches = like.Matches(text);
  if (pattern.size() <= 200 && text.size() <= 200) {
    const Characters pattern_characters = CharactersOf(pattern);
    const Characters characters = CharactersOf(text);
    Slow slow(pattern_characters, characters);
    Require(slow.WellFormed() == like.WellFormed(), "both take the same patterns");
    Require(slow.Matches() == matches, "both match the same texts");
  }
  if (const std::string long_text = Stretched(text); !long_text.empty()) like.Matches(long_text);
  if (const std::string long_pattern = Stretched(pattern); !long_pattern.empty()) {
    LikePattern(long_pattern).Matches(text);
  }
}

}  // namespace kv::fuzz
