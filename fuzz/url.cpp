// Addresses as they are typed and dropped.
#include "playlist/dropped_media.h"
#include "support.h"
#include "support/fake_pump.h"
#include "system/text_format.h"

namespace kv::fuzz {

void Try(std::string_view input) {
  FakePump pump;
  const std::string decoded = DecodeUrlText(input, &pump);
  Require(decoded == DecodeUrlText(input), "a pump changes nothing");
  Require(decoded.size() <= input.size(), "decoding makes no text longer");
  if (input.find_first_of("%+") == std::string_view::npos) {
    Require(decoded == input, "a text without signs stays");
  }
  std::string encoded;
  for (const char c : input) {
    constexpr std::string_view kDigits = "0123456789aBcDeF";
    const auto byte = static_cast<unsigned char>(c);
    encoded.append(1, '%').append(1, kDigits[byte >> 4U]).append(1, kDigits[byte & 0xFU]);
  }
  Require(DecodeUrlText(encoded) == input, "what was encoded is decoded");
  DecodeUrlText(Stretched(input));

  const DroppedMedia media = ReadUriList(input);
  for (const std::string& file : media.files) {
    Require(file.starts_with('/') && file.find('\0') == std::string::npos, "a file has a path");
  }
  for (const std::string& address : media.addresses) {
    Require(!address.empty() && address.front() != '#', "an address is a line that says something");
    Require(ReadUriList(address).addresses == std::vector{address}, "an address is one line");
  }
  for (const std::string& line : ReadDroppedText(input).addresses) {
    Require(line.find_first_of("\n\0", 0, 2) == std::string::npos, "a line is one line");
  }
}

}  // namespace kv::fuzz
