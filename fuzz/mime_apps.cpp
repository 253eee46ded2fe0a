// The user's "mimeapps.list": as a text, and types taken and given back in the file.
#include "state/file_types.h"
#include "state/mime_apps_text.h"
#include "support.h"

#include <array>

namespace kv::fuzz {
namespace {

constexpr std::array kTypes = {"video/x-matroska", "audio/mpeg"};

struct Mime : MimeTypes {
  std::vector<std::string> TypesOf(const std::string& extension) const override {
    return {extension == "mp3" ? kTypes[1] : kTypes[0]};
  }
  std::string Comment(const std::string& /*type*/) const override { return {}; }
  void Rebuild(const std::string& /*mime_folder*/) override {}
};

std::string First(std::string_view text, std::string_view type) {
  return std::string(FirstProgram(DefaultPrograms(text, type).value_or("")));
}

void TryText(std::string_view input, bool to_the_end) {
  std::string text(input);
  const std::string other = First(text, kTypes[1]);
  const std::string former = First(text, kTypes[0]);
  PutProgramFirst(text, kTypes[0], kDesktopId);
  Require(First(text, kTypes[0]) == kDesktopId, "who was put first is first");
  Require(First(text, kTypes[1]) == other, "other types keep their programs");
  Require(text.size() > input.size(), "a put takes nothing away");
  Require(RemoveFirstProgram(text, kTypes[0], kDesktopId), "who is first can be taken away");
  Require(First(text, kTypes[0]) == former, "the former program comes back");
  Require(First(text, kTypes[1]) == other, "other types keep their programs");
  for (int turns = 0; to_the_end && RemoveFirstProgram(text, kTypes[0], First(text, kTypes[0]));
       ++turns) {
    Require(turns < static_cast<int>(input.size()), "a list ends");
  }
}

void TryFile(std::string_view input) {
  static const Folder folder;
  static const std::string installed =
      folder.Write("share/applications/kestrelview.desktop", "[Desktop Entry]\n");
  folder.Write("config/mimeapps.list", input);
  Mime mime;
  FileTypes types(mime, {folder.Path() + "config/",
                         folder.Path() + "data/",
                         {folder.Path() + "share/"},
                         "/usr/bin/kestrelview",
                         ""});
  const std::vector<FileTypeLine> before = types.Lines("*.mkv;*.mp3").lines;
  std::vector<FileTypeLine> all = before;
  for (FileTypeLine& line : all) line.selected = true;
  types.UpdateFileTypes(before, all);
  for (const FileTypeLine& line : types.Lines("*.mkv;*.mp3").lines) {
    Require(line.selected, "a type that was taken is ours");
  }
  types.UpdateFileTypes(all, before);
  const std::string after = folder.Read("config/mimeapps.list");
  for (const FileTypeLine& line : before) {
    const std::string& type = line.types.front();
    Require(First(after, type) == First(input, type), "given back, a type is as before");
  }
}

}  // namespace

void Try(std::string_view input) {
  TryText(input, true);
  if (const std::string text = Stretched(input); !text.empty()) TryText(text, false);
  TryFile(input);
}

}  // namespace kv::fuzz
