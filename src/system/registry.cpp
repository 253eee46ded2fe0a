#include "system/registry.h"

#include "system/ascii_text.h"
#include "system/files.h"
#include "system/ini_file.h"
#include "system/ini_text.h"
#include "system/save_file.h"
#include "system/text_format.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <optional>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace kv {
namespace {

constexpr std::size_t kMaxData = 2048;  // bytes of the buffer that values are read into
constexpr std::string_view kDefaultName = "@";

// How a value is written, by its type. A text of type 1 carries a closing NUL, as the type asks.
constexpr std::string_view kText = "sz:";
constexpr std::string_view kOpenText = "text:";
constexpr std::string_view kInteger = "dword:";
constexpr std::string_view kBinary = "hex:";

constexpr std::array<std::pair<RegistryRoot, std::string_view>, 4> kRoots = {{
    {RegistryRoot::kClassesRoot, "HKEY_CLASSES_ROOT"},
    {RegistryRoot::kCurrentUser, "HKEY_CURRENT_USER"},
    {RegistryRoot::kLocalMachine, "HKEY_LOCAL_MACHINE"},
    {RegistryRoot::kUsers, "HKEY_USERS"},
}};

std::string HexByte(char byte) {
  std::array<char, 3> text{};
  std::snprintf(text.data(), text.size(), "%02X", static_cast<unsigned char>(byte));
  return text.data();
}

// Bytes that would break an INI line, as "%" and two hexadecimal digits. `special` are those with a
// meaning at this place; blanks count at the ends only.
std::string Escape(std::string_view text, std::string_view special) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool control = static_cast<unsigned char>(text[i]) < 0x20;
    const bool end_blank = text[i] == ' ' && (i == 0 || i + 1 == text.size());
    if (control || end_blank || text[i] == '%' || special.find(text[i]) != std::string_view::npos) {
      result += '%' + HexByte(text[i]);
    } else {
      result += text[i];
    }
  }
  return result;
}

std::string Unescape(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned value = 0;
    const std::string_view digits = text.substr(i + 1, 2);
    const char* end = digits.data() + digits.size();
    if (text[i] == '%' && digits.size() == 2 &&
        std::from_chars(digits.data(), end, value, 16).ptr == end) {
      result += static_cast<char>(value);
      i += 2;
    } else {
      result += text[i];
    }
  }
  return result;
}

// "ROOT\Key\Sub": separators at the ends and doubled ones say nothing. Empty for an unknown root.
std::string SectionOf(RegistryRoot root, std::string_view key) {
  const auto* const row = std::find_if(kRoots.begin(), kRoots.end(),
                                       [root](const auto& entry) { return entry.first == root; });
  if (row == kRoots.end()) return {};
  std::string section(row->second);
  while (!key.empty()) {
    const std::size_t size = std::min(key.find('\\'), key.size());
    if (size > 0) section.append("\\").append(Escape(key.substr(0, size), "]"));
    key.remove_prefix(std::min(size + 1, key.size()));
  }
  return section;
}

std::string EntryOf(std::string_view name) {
  return name.empty() ? std::string(kDefaultName) : Escape(name, "=[;@\"'");
}

// The store's text; nothing when it is there but cannot be read.
std::optional<std::string> Load(const std::string& file) {
  std::string text;
  if (ReadWholeFile(file, kMaxTextFileBytes, text)) return text;
  struct stat status {};
  if (stat(file.c_str(), &status) != 0 && errno == ENOENT) return std::string();
  return {};
}

std::int32_t Save(const std::string& file, const std::string& text) {
  const bool saved = text.size() <= kMaxTextFileBytes && SaveFileChecked(file, text);
  return saved ? kRegistrySuccess : kRegistryDenied;
}

bool HasSection(std::string_view text, std::string_view section) {
  const auto sections = IniSections(text);
  return std::any_of(sections.begin(), sections.end(), [section](std::string_view name) {
    return EqualsIgnoringCase(name, section);
  });
}

bool HasSectionBelow(std::string_view text, const std::string& section) {
  const auto sections = IniSections(text);
  return std::any_of(sections.begin(), sections.end(), [&](std::string_view name) {
    return StartsWithIgnoringCase(name, section + "\\");
  });
}

// An unsigned 32-bit number shown with at least three digits.
std::string IntegerText(std::string_view hex) {
  std::uint32_t value = 0;
  const char* end = hex.data() + hex.size();
  const auto [rest, error] = std::from_chars(hex.data(), end, value, 16);
  if (error != std::errc() || rest != end) return {};
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%03u", value);
  return text.data();
}

std::string BinaryText(std::string_view hex) {
  std::string digits;
  for (const char c : hex) {
    if (c != ',' && c != ' ') digits += c;
  }
  const bool whole = digits.size() % 2 == 0 && digits.size() / 2 <= kMaxData &&
                     digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
  return whole ? digits : std::string();
}

std::string TextOf(std::string data, bool closed) {
  if (closed) data += '\0';
  if (data.size() > kMaxData) return {};
  // Blanks in front of a closing NUL are inside the text, and only those at its very ends go.
  const std::size_t first = data.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  const std::size_t last = data.find_last_not_of(' ');
  return TrimAtNull(std::string_view(data).substr(first, last + 1 - first));
}

}  // namespace

Registry::Registry(std::string file) : file_(std::move(file)) {}

std::string Registry::RegReadValue(RegistryRoot root, std::string_view key,
                                   std::string_view name) const {
  const std::optional<std::string> text = Load(file_);
  if (!text) return {};
  const auto found = FindIniValue(*text, SectionOf(root, key), EntryOf(name));
  if (!found) return {};
  std::string_view value = WithoutQuotes(*found);
  const auto take = [&value](std::string_view tag) {
    if (!StartsWithIgnoringCase(value, tag)) return false;
    value.remove_prefix(tag.size());
    return true;
  };
  if (take(kInteger)) return IntegerText(value);
  if (take(kBinary)) return BinaryText(value);
  if (take(kOpenText)) return TextOf(Unescape(value), false);
  take(kText);  // a value written by hand may come without its type
  return TextOf(Unescape(value), true);
}

std::int32_t Registry::RegWriteValue(RegistryRoot root, std::string_view key, std::string_view name,
                                     int type, std::string_view data) {
  std::string value;
  if (type == kRegistryInteger) {
    std::int64_t number = 0;
    const char* end = data.data() + data.size();
    const auto [rest, error] = std::from_chars(data.data(), end, number);
    if (error != std::errc() || rest != end || number < INT32_MIN || number > UINT32_MAX) {
      return kRegistryInvalid;
    }
    std::array<char, 16> hex{};
    std::snprintf(hex.data(), hex.size(), "%08x", static_cast<std::uint32_t>(number));
    value.append(kInteger).append(hex.data());
  } else {
    value.append(type == kRegistryText ? kText : kOpenText).append(Escape(data, ""));
  }

  const std::string section = SectionOf(root, key);
  std::optional<std::string> text = Load(file_);
  if (section.empty()) return kRegistryInvalid;
  if (!text) return kRegistryDenied;
  for (std::size_t at = section.find('\\'); at != std::string::npos;
       at = section.find('\\', at + 1)) {
    AddIniSection(*text, std::string_view(section).substr(0, at));
  }
  SetIniValue(*text, section, EntryOf(name), value);
  return Save(file_, *text);
}

std::int32_t Registry::RegRemoveKey(RegistryRoot root, std::string_view key) {
  std::optional<std::string> text = Load(file_);
  const std::string section = SectionOf(root, key);
  if (!text || section.find('\\') == std::string::npos) return kRegistryDenied;
  if (HasSectionBelow(*text, section)) return kRegistryDenied;
  if (!HasSection(*text, section)) return kRegistryNotFound;
  RemoveIniSection(*text, section);
  return Save(file_, *text);
}

std::int32_t Registry::RegRemoveValue(RegistryRoot root, std::string_view key,
                                      std::string_view name) {
  std::optional<std::string> text = Load(file_);
  if (!text) return kRegistryDenied;
  if (!RemoveIniValue(*text, SectionOf(root, key), EntryOf(name))) return kRegistryNotFound;
  return Save(file_, *text);
}

}  // namespace kv
