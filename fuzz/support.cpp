#include "support.h"

#include "system/special_folders.h"
#include "system/utf8.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>

namespace kv::fuzz {
namespace {

constexpr char kSeparator = '\x1E';
constexpr std::size_t kStretched = std::size_t{64} * 1024;

}  // namespace

void Require(bool holds, std::string_view property) {
  if (holds) return;
  std::fprintf(stderr, "Does not hold: %.*s\n", static_cast<int>(property.size()), property.data());
  std::abort();
}

std::string_view Parts::Next() {
  const std::size_t end = std::min(rest_.find(kSeparator), rest_.size());
  const std::string_view part = rest_.substr(0, end);
  rest_.remove_prefix(std::min(end + 1, rest_.size()));
  return part;
}

std::string Stretched(std::string_view input) {
  constexpr unsigned kOneOf = 64;
  unsigned sum = static_cast<unsigned>(input.size());
  for (const char c : input) sum = sum * 31 + static_cast<unsigned char>(c);
  std::string text;
  if (input.empty() || sum % kOneOf != 0) return text;
  text.reserve(kStretched + input.size());
  while (text.size() < kStretched) text += input;
  return text;
}

bool IsWellFormedUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Char next = DecodeUtf8(text, at);
    if (!next.valid) return false;
    at += next.size;
  }
  return true;
}

bool HasControl(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Char next = DecodeUtf8(text, at);
    if (next.valid && (next.code < 0x20 || (next.code >= 0x7F && next.code < 0xA0))) return true;
    at += next.size;
  }
  return false;
}

std::size_t CountCharacters(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); at += DecodeUtf8(text, at).size) ++count;
  return count;
}

MemoryFile::MemoryFile() : file_(memfd_create("fuzz", MFD_CLOEXEC)) {
  Require(file_ >= 0, "there is memory for a file");
  name_ = "/proc/self/fd/" + std::to_string(file_);
}

MemoryFile::~MemoryFile() {
  close(file_);
}

const std::string& MemoryFile::Holding(std::string_view bytes) {
  const bool written = ftruncate(file_, 0) == 0 && pwrite(file_, bytes.data(), bytes.size(), 0) ==
                                                       static_cast<ssize_t>(bytes.size());
  Require(written, "a file in memory can be written");
  return name_;
}

Folder::Folder() : path_(GetTempFolder() + "kv_fuzz_XXXXXX") {
  Require(mkdtemp(path_.data()) != nullptr, "there is a temporary folder");
  path_ += '/';
}

Folder::~Folder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string Folder::Write(std::string_view name, std::string_view bytes) const {
  std::string file = path_ + std::string(name);
  std::filesystem::create_directories(std::filesystem::path(file).parent_path());
  std::ofstream(file, std::ios::binary) << bytes;
  return file;
}

std::string Folder::Read(std::string_view name) const {
  std::ifstream file(path_ + std::string(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace kv::fuzz
