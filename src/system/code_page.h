// Texts in other encodings than UTF-8: which code page to expect, and the way into UTF-8.
//
// The conversion is the C library's iconv, whose names the encodings go by. Any thread; a decoder
// belongs to one thread at a time.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

struct CodePage {
  const char* name;       // as iconv knows it and people read it
  const char* script;     // English key of what is written in it, for Tr()
  const char* languages;  // those whose desktops have used it, one blank between and around
};

// All code pages that a text may be in, the most likely first: that of the language of `locale`
// ("pl_PL.UTF-8"), then the Western ones, then those of other languages and older systems.
std::vector<const CodePage*> CodePagesFor(std::string_view locale);

// The locale of the user's texts, as the environment names it; "C" when it names none.
std::string UserLocale();

class Utf8Decoder {
 public:
  // `encoding` that iconv does not know decodes nothing.
  explicit Utf8Decoder(const std::string& encoding);
  Utf8Decoder(const Utf8Decoder&) = delete;
  Utf8Decoder& operator=(const Utf8Decoder&) = delete;
  ~Utf8Decoder();

  // `bytes` in UTF-8; nothing when they hold what the encoding does not have.
  std::optional<std::string> Decode(std::string_view bytes) const;

 private:
  void* iconv_;
};

}  // namespace kv
