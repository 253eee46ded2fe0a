// "filesupport.dat", and the patterns in it.
#include "state/file_support.h"

#include "state/file_types.h"
#include "support.h"
#include "system/name_tests.h"

#include <set>

namespace kv::fuzz {
namespace {

// Knows half of all extensions, some of them by the same type.
struct Mime : MimeTypes {
  std::vector<std::string> TypesOf(const std::string& extension) const override {
    const unsigned kind = extension.empty() ? 0 : static_cast<unsigned char>(extension.back());
    if (kind % 2 == 0) return {};
    return {"video/type" + std::to_string(kind % 7), "audio/type" + std::to_string(kind % 5)};
  }
  std::string Comment(const std::string& type) const override { return type; }
  void Rebuild(const std::string& /*mime_folder*/) override {}
};

}  // namespace

void Try(std::string_view input) {
  static MemoryFile file;
  const FileSupport support = ReadFileSupport(file.Holding(input));
  for (const std::string* line : {&support.SupportedExtensions, &support.OpenFilter}) {
    Require(line->find('\n') == std::string::npos && !line->ends_with('\r'), "a line is one line");
  }
  Mime mime;
  const FileTypes types(mime, {"/nowhere/", "/nowhere/", {}, "/usr/bin/kestrelview", ""});
  const FileTypeList list = types.Lines(support.SupportedExtensions);
  std::set<std::string> seen(list.unknown.begin(), list.unknown.end());
  std::size_t extensions = list.unknown.size();
  std::set<std::string> mime_types;
  for (const FileTypeLine& line : list.lines) {
    Require(!line.types.empty() && !line.extensions.empty(), "a line has types and extensions");
    seen.insert(line.extensions.begin(), line.extensions.end());
    extensions += line.extensions.size();
    for (const std::string& type : line.types) {
      Require(mime_types.insert(type).second, "a type stands in one line");
    }
  }
  Require(seen.size() == extensions, "each extension once");
  for (const std::string& extension : seen) {
    IsPlayableName("x." + extension, support.SupportedExtensions);
  }
}

}  // namespace kv::fuzz
