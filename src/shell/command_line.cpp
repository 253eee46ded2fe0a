#include "shell/command_line.h"

#include "system/ascii_text.h"

#include <algorithm>
#include <array>
#include <optional>
#include <sys/stat.h>

namespace kv {
namespace {

constexpr std::array<std::string_view, 3> kSwitches = {"/debug", "-debug", "/dde"};
constexpr std::array<std::string_view, 4> kRemovals = {" -debug", "-debug", " /debug", "/debug"};

bool Exists(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0;
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char lower = LowerAscii(c);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// The path of a "file:" URL of this machine (RFC 8089): "file:///path" or "file://localhost/path".
std::optional<std::string> PathOfFileUrl(std::string_view url) {
  constexpr std::string_view kScheme = "file://";
  if (!StartsWithIgnoringCase(url, kScheme)) return std::nullopt;
  url.remove_prefix(kScheme.size());
  const std::size_t slash = url.find('/');
  if (slash == std::string_view::npos) return std::nullopt;
  const std::string host = LowerAscii(url.substr(0, slash));
  if (!host.empty() && host != "localhost") return std::nullopt;
  std::string path;
  for (std::size_t i = slash; i < url.size(); ++i) {
    const int high = url[i] == '%' && i + 2 < url.size() ? HexDigit(url[i + 1]) : -1;
    const int low = high >= 0 ? HexDigit(url[i + 2]) : -1;
    if (low >= 0) {
      path += static_cast<char>(high * 16 + low);
      i += 2;
    } else {
      path += url[i];
    }
  }
  // A NUL cannot be part of a path and would hide what follows it.
  if (path.find('\0') != std::string::npos) return std::nullopt;
  return path;
}

bool IsSwitch(const std::string& argument) {
  const std::string lower = LowerAscii(argument);
  return std::find(kSwitches.begin(), kSwitches.end(), lower) != kSwitches.end();
}

std::string WithSlash(const std::string& folder) {
  return folder.ends_with('/') ? folder : folder + "/";
}

void Append(std::string& text, const std::string& word) {
  if (!text.empty()) text += ' ';
  text += word;
}

void RemoveAll(std::string& text, std::string_view what) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at)) {
    text.erase(at, what.size());
  }
}

}  // namespace

RawCommandLine JoinArguments(const std::vector<std::string>& arguments, const std::string& folder) {
  std::vector<std::string> words = arguments;
  for (std::string& word : words) {
    if (auto path = PathOfFileUrl(word)) word = *path;
  }
  // A path with blanks that nobody has quoted comes as several words.
  const auto begin = std::find_if_not(words.begin(), words.end(), IsSwitch);
  const auto end = std::find_if(begin, words.end(), IsSwitch);
  std::string name;
  for (auto word = begin; word != end; ++word) Append(name, *word);
  const bool relative = !name.starts_with('/') && !folder.empty();
  const std::string absolute = relative ? WithSlash(folder) + name : name;
  const bool found = !name.empty() && Exists(absolute);

  RawCommandLine raw;
  for (auto word = words.begin(); word != begin; ++word) Append(raw.text, *word);
  if (!name.empty()) Append(raw.text, found ? absolute : name);
  raw.name_end = found ? raw.text.size() : 0;
  raw.name_begin = found ? raw.text.size() - absolute.size() : 0;
  for (auto word = end; word != words.end(); ++word) Append(raw.text, *word);
  return raw;
}

ParsedCommandLine ParseDebugSwitch(const RawCommandLine& raw) {
  std::string before = raw.text.substr(0, raw.name_begin);
  const std::string name = raw.text.substr(raw.name_begin, raw.name_end - raw.name_begin);
  std::string after = raw.text.substr(raw.name_end);
  ParsedCommandLine parsed;
  for (const std::string& part : {before, after}) {
    if (ContainsIgnoringCase(part, "/debug") || ContainsIgnoringCase(part, "-debug")) {
      parsed.DebugMode = true;
    }
  }
  for (const std::string_view removal : kRemovals) {
    RemoveAll(before, removal);
    RemoveAll(after, removal);
  }
  // What is left of a switch in front of the name is the blank between the two.
  if (before.find_first_not_of(' ') == std::string::npos && !name.empty()) before.clear();
  parsed.CommandLine = before + name + after;
  return parsed;
}

std::string CommandFileOf(std::string_view command_line) {
  constexpr std::string_view kDde = " /dde";
  std::string file;
  for (std::size_t i = 0; i < command_line.size();) {
    if (StartsWithIgnoringCase(command_line.substr(i), kDde)) {
      i += kDde.size();
      continue;
    }
    if (command_line[i] != '"') file += command_line[i];
    ++i;
  }
  return file;
}

bool HasClearSwitch(std::string_view command_line) {
  return ContainsIgnoringCase(command_line, "-clear");
}

}  // namespace kv
