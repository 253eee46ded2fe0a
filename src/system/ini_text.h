// The text of an INI file as a value: finding, setting and removing without any file.
//
// The rules are those of ini_file.h. Every edit leaves all bytes alone that it need not change.
// Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

// The trimmed value, still in its quotes, as a part of `text`; nothing when the key is not there.
std::optional<std::string_view> FindIniValue(std::string_view text, std::string_view section,
                                             std::string_view key);

// `value` without one pair of enclosing single or double quotes.
std::string_view WithoutQuotes(std::string_view value);

// The line "Key=Value" without its end; the value in quotes where it would not read back otherwise.
std::string IniLine(std::string_view key, std::string_view value);

// True when a line made of these can be read back: no line break or NUL in any of them, a section
// without "]", a key that is not empty, holds no "=" and begins with neither "[" nor ";".
bool CanStandInIni(std::string_view section, std::string_view key, std::string_view value);

// Sets `key` in `section` to `value`, creating both as needed.
void SetIniValue(std::string& text, std::string_view section, std::string_view key,
                 std::string_view value);

// Adds the section at the end of `text` unless it is there.
void AddIniSection(std::string& text, std::string_view section);

// Removes the line of `key`. False when it is not there.
bool RemoveIniValue(std::string& text, std::string_view section, std::string_view key);

// Removes the section with all its lines. False when it is not there.
bool RemoveIniSection(std::string& text, std::string_view section);

// The names of all sections, in file order, as they are written.
std::vector<std::string_view> IniSections(std::string_view text);

}  // namespace kv
