#include "state/desktop_entry.h"

#include "state/desktop_texts.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::string_view kMark = "X-Kestrelview-OwnEntry=true";

// What a value of type string may not hold as it is (Desktop Entry Specification, "Possible value
// types").
std::string Escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '\\') {
      result += "\\\\";
    } else if (c == '\n') {
      result += "\\n";
    } else if (c == '\t') {
      result += "\\t";
    } else if (c == '\r') {
      result += "\\r";
    } else {
      result += c;
    }
  }
  return result;
}

}  // namespace

std::string QuotedForExec(std::string_view path) {
  constexpr std::string_view kSpecial = "\"`$\\";
  std::string quoted = "\"";
  for (const char c : path) {
    if (kSpecial.find(c) != kSpecial.npos) quoted += '\\';
    quoted += c;
    if (c == '%') quoted += c;  // alone it begins a field code
  }
  return Escaped(quoted + '"');
}

std::string DesktopEntryFor(const std::string& program, const std::string& icon) {
  std::string result;
  for (std::size_t at = 0; at < kDesktopEntryText.size();) {
    const std::size_t end = std::min(kDesktopEntryText.find('\n', at), kDesktopEntryText.size());
    const std::string_view line = kDesktopEntryText.substr(at, end - at);
    at = end + 1;
    if (line.starts_with("Exec=")) {
      // What stands behind the program's name: a file, or the option of an action.
      result += "Exec=" + QuotedForExec(program);
      if (const std::size_t rest = line.find(' '); rest != line.npos) result += line.substr(rest);
    } else if (line.starts_with("TryExec=")) {
      result += "TryExec=" + Escaped(program);
    } else if (line.starts_with("Icon=") && !icon.empty()) {
      result += "Icon=" + Escaped(icon);
    } else {
      result += line;
    }
    result += '\n';
    if (line == "[Desktop Entry]") result.append(kMark) += '\n';
  }
  return result;
}

bool IsOwnDesktopEntry(std::string_view text) {
  return text.find(kMark) != text.npos;
}

std::string_view MimePackage() {
  return kMimePackageText;
}

}  // namespace kv
