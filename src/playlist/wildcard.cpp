#include "playlist/wildcard.h"

#include "system/utf8.h"

#include <algorithm>

namespace kv {
namespace {

// Bytes that are no character of UTF-8 lie behind all code points, so that none equals one.
constexpr char32_t kBareByte = 0x110000;

// The character at `at`, which moves behind it.
char32_t NextCharacter(std::string_view text, std::size_t& at) {
  const auto byte = static_cast<unsigned char>(text[at]);
  if (byte < 0x80) {
    ++at;
    return byte;
  }
  const Utf8Char next = DecodeUtf8(text, at);
  at += next.size;
  return next.valid ? next.code : kBareByte + byte;
}

}  // namespace

LikePattern::LikePattern(std::string_view pattern) {
  for (std::size_t at = 0; at < pattern.size() && well_formed_;) {
    const char32_t character = NextCharacter(pattern, at);
    switch (character) {
      case U'*':
        // Stars in a row are one.
        if (tokens_.empty() || tokens_.back().kind != Kind::kAnyRun) {
          tokens_.push_back({.kind = Kind::kAnyRun});
        }
        break;
      case U'?':
        tokens_.push_back({.kind = Kind::kAnyCharacter});
        break;
      case U'#':
        tokens_.push_back({.kind = Kind::kDigit});
        break;
      case U'[':
        well_formed_ = ReadClass(pattern, at);
        break;
      default:
        tokens_.push_back({.kind = Kind::kCharacter, .character = character});
    }
  }
}

bool LikePattern::ReadClass(std::string_view pattern, std::size_t& at) {
  const std::size_t close = pattern.find(']', at);
  if (close == std::string_view::npos) return false;
  const std::string_view body = pattern.substr(at, close - at);
  at = close + 1;
  if (body.empty()) return true;

  Token token{.kind = Kind::kClass, .first_range = ranges_.size()};
  std::size_t inside = 0;
  if (body.size() > 1 && body.front() == '!') {
    token.negated = true;
    inside = 1;
  }
  while (inside < body.size()) {
    const char32_t first = NextCharacter(body, inside);
    char32_t last = first;
    // A hyphen between two characters makes a range of them.
    if (inside + 1 < body.size() && body[inside] == '-') {
      ++inside;
      last = NextCharacter(body, inside);
    }
    if (last < first) return false;
    ranges_.emplace_back(first, last);
  }
  token.last_range = ranges_.size();
  tokens_.push_back(token);
  return true;
}

bool LikePattern::MatchesOne(const Token& token, char32_t character) const {
  switch (token.kind) {
    case Kind::kCharacter:
      return character == token.character;
    case Kind::kDigit:
      return character >= U'0' && character <= U'9';
    case Kind::kClass: {
      const auto begin = ranges_.begin() + static_cast<std::ptrdiff_t>(token.first_range);
      const auto end = ranges_.begin() + static_cast<std::ptrdiff_t>(token.last_range);
      const bool listed = std::any_of(begin, end, [character](const auto& range) {
        return character >= range.first && character <= range.second;
      });
      return listed != token.negated;
    }
    case Kind::kAnyCharacter:
    case Kind::kAnyRun:
      break;
  }
  return true;
}

// Where a text stops matching, the last star takes one character more; an earlier star never needs
// another try, since the last one can take whatever that would.
bool LikePattern::Matches(std::string_view text) const {
  if (!well_formed_) return false;
  constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  std::size_t at = 0;
  std::size_t token = 0;
  std::size_t star = kNone;  // the token behind the last star
  std::size_t retry = 0;     // where the text goes on behind that star
  while (true) {
    if (token < tokens_.size() && tokens_[token].kind == Kind::kAnyRun) {
      star = ++token;
      if (star == tokens_.size()) return true;
      retry = at;
      continue;
    }
    // At the end a longer run would leave even less for the tokens that remain.
    if (at == text.size()) return token == tokens_.size();
    std::size_t behind = at;
    if (token < tokens_.size() && MatchesOne(tokens_[token], NextCharacter(text, behind))) {
      at = behind;
      ++token;
      continue;
    }
    if (star == kNone) return false;
    NextCharacter(text, retry);
    if (const Token& wanted = tokens_[star];
        wanted.kind == Kind::kCharacter && wanted.character < 0x80) {
      retry = text.find(static_cast<char>(wanted.character), retry);
      if (retry == std::string_view::npos) return false;
    }
    at = retry;
    token = star;
  }
}

}  // namespace kv
