// "file:" addresses, and drops, which are made of them.
#include "system/file_address.h"

#include "shell/drops.h"
#include "support.h"
#include "system/paths.h"

#include <algorithm>

namespace kv::fuzz {
namespace {

bool IsPath(const std::string& path) {
  return IsNativePath(path) && path.find('\0') == std::string::npos;
}

void TryDrop(const std::string_view* uris, const std::string_view* text) {
  const DropData drop = ReadDropData(uris, text);
  Require(!drop.text || !drop.files || drop.files->empty(), "a drop is one thing");
  Require(!drop.text || !drop.text->empty(), "a text says something");
  if (!drop.files) return;
  Require(uris != nullptr, "files come in a list of addresses");
  Require(std::all_of(drop.files->begin(), drop.files->end(), IsPath), "a file has a path");
}

}  // namespace

void Try(std::string_view input) {
  const std::string path = '/' + std::string(input);
  const std::string address = FileAddress(path);
  Require(std::all_of(address.begin(), address.end(), [](char c) { return c > ' ' && c < 0x7F; }),
          "an address is printable ASCII");
  const bool is_name = path.find('\0') == std::string::npos;
  Require(PathOfFileAddress(address) == (is_name ? path : ""), "a path comes back byte for byte");
  const std::string elsewhere = "FILE://host" + address.substr(std::string_view("file://").size());
  Require(PathOfFileAddress(elsewhere) == (is_name ? path : ""), "the host counts for nothing");

  const std::string meant = PathOfFileAddress(input);
  Require(meant.empty() || (IsFileAddress(input) && IsPath(meant)), "an address names a path");
  Require(meant.size() <= input.size(), "decoding makes no text longer");
  Require(PathOfFileAddress(FileAddress(meant)) == meant, "a path has an address");
  PathOfFileAddress("file:" + Stretched(input));

  Parts parts(input);
  const std::string_view uris = parts.Next();
  const std::string_view text = parts.Rest();
  TryDrop(&uris, nullptr);
  TryDrop(nullptr, &uris);
  TryDrop(&uris, &text);
  const std::string_view whole = address;
  if (is_name) Require(ReadDropData(&whole, nullptr).files.value() == std::vector{path}, "a file");
}

}  // namespace kv::fuzz
