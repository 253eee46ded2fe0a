// Texts in every encoding that lists are read in. The first part is a locale.
#include "system/code_page.h"

#include "support.h"

#include <algorithm>
#include <array>
#include <memory>

namespace kv::fuzz {
namespace {

constexpr std::array kSeveralBytes = {"CP932", "CP949", "CP950", "GB18030"};

struct Page {
  explicit Page(const CodePage* page)
      : decoder(page->name),
        single(std::find(kSeveralBytes.begin(), kSeveralBytes.end(), std::string(page->name)) ==
               kSeveralBytes.end()) {}
  Utf8Decoder decoder;
  bool single;  // each byte is a character
};

void TryPage(const Page& page, std::string_view text) {
  const std::optional<std::string> decoded = page.decoder.Decode(text);
  Require(page.decoder.Decode(text) == decoded, "a decoder remembers nothing");
  const bool ascii = std::all_of(text.begin(), text.end(),
                                 [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (ascii) Require(decoded == std::string(text), "ASCII is itself in all pages");
  if (!decoded) return;
  Require(IsWellFormedUtf8(*decoded), "decoded text is UTF-8");
  Require(page.decoder.Decode(std::string(text) + '\n') == *decoded + '\n', "a text has its end");
  if (!page.single) return;
  // Letters and their accents may come together as one.
  Require(CountCharacters(*decoded) <= text.size(), "a byte is one character");
  Require(decoded->empty() == text.empty(), "a byte is a character");
}

}  // namespace

void Try(std::string_view input) {
  static const std::vector<const CodePage*> all = CodePagesFor("C");
  static const std::vector<std::unique_ptr<Page>> pages = [] {
    std::vector<std::unique_ptr<Page>> made;
    made.reserve(all.size());
    for (const CodePage* page : all) made.push_back(std::make_unique<Page>(page));
    return made;
  }();
  static const std::array wide = {std::make_unique<Utf8Decoder>("UTF-16LE"),
                                  std::make_unique<Utf8Decoder>("UTF-16BE")};
  Parts parts(input);
  std::vector<const CodePage*> ordered = CodePagesFor(parts.Next());
  Require(ordered.size() == all.size(), "each page has its turn");
  Require(std::is_permutation(ordered.begin(), ordered.end(), all.begin()), "each page, once");

  const std::string_view text = parts.Rest();
  const std::string large = Stretched(text);
  for (const auto& page : pages) {
    TryPage(*page, text);
    if (!large.empty()) TryPage(*page, large);
  }
  for (const auto& decoder : wide) {
    const std::optional<std::string> decoded = decoder->Decode(text);
    if (decoded) Require(IsWellFormedUtf8(*decoded), "decoded text is UTF-8");
  }
}

}  // namespace kv::fuzz
