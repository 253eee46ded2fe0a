// The wildcards of both searches in the list, as the Like operator of Basic has them.
//
//   *       any run of characters, also none      [abc]   one of these characters
//   ?       one character                         [a-f]   one of this range, ends included
//   #       one digit, 0 to 9                     [!a-f]  one character that is none of these
//
// In brackets "*", "?", "#" and "[" stand for themselves, and so do "-" at either end, "!" anywhere
// but at the start, and "[!]". "[]" is nothing at all. "]" outside brackets is a character. The
// whole text must match. A bracket that is not closed, or a range that runs backwards, makes the
// pattern malformed. A character is a code point; a byte that is not UTF-8 is one character too.
// Letter case counts: the caller folds it. Any thread.
#pragma once

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace kv {

// A pattern that is matched against many texts.
class LikePattern {
 public:
  explicit LikePattern(std::string_view pattern);

  // False for every text when the pattern is malformed. Takes at most time in proportion to the
  // lengths of text and pattern multiplied.
  bool Matches(std::string_view text) const;

  bool WellFormed() const { return well_formed_; }

 private:
  enum class Kind { kCharacter, kAnyCharacter, kDigit, kClass, kAnyRun };
  struct Token {
    Kind kind = Kind::kCharacter;
    char32_t character = 0;
    bool negated = false;         // kClass
    std::size_t first_range = 0;  // kClass: its part of `ranges_`
    std::size_t last_range = 0;   // one behind
  };

  // Reads the class behind the "[" at `at` and moves behind its "]"; false when it is malformed.
  bool ReadClass(std::string_view pattern, std::size_t& at);
  bool MatchesOne(const Token& token, char32_t character) const;

  std::vector<Token> tokens_;
  std::vector<std::pair<char32_t, char32_t>> ranges_;
  bool well_formed_ = true;
};

}  // namespace kv
