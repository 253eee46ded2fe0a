// INI files in the manner of the profile routines: one value read or written by a call.
//
// Names of sections and keys ignore the case of ASCII letters; the first section of a name and the
// first key in it count. Blanks around key, "=" and value are dropped, and one pair of enclosing
// quotes around the value. Lines that begin with ";" are comments. LF and CR LF files are taken, a
// byte order mark is skipped. Files above kMaxTextFileBytes read as empty and are never written.
// Any thread; calls that write one file must not overlap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace kv {

// The buffer that values are read into, in bytes, its closing NUL included.
inline constexpr std::size_t kIniValueBuffer = 2048;

// How a line ends in a file that has none yet, and on a `channel`.
inline constexpr std::string_view kIniLineEnd = "\r\n";

// The value, at most kIniValueBuffer - 1 bytes; `default_value` when the key is not there. A key
// with nothing behind "=" gives the empty text.
std::string ReadIniString(const std::string& file, std::string_view section, std::string_view key,
                          std::string_view default_value);

// With a `channel`, prints the one line "Key=Value" on it; `file` and `section` do not count then.
// Otherwise sets the value in `file`: an old value is replaced where it stands, a new key goes to
// the end of its section, a missing section to the end of the file, a missing file is created; all
// other bytes stay. A value that would not read back as it is (blanks or a pair of quotes at its
// ends) is put in quotes. Answers 1, or 0 when nothing was written: a line break or NUL in any of
// the texts, a key that could not be found again ("=" in it, empty, "[" or ";" in front), a failed
// save.
std::int32_t WriteIniString(const std::string& file, std::string_view section, std::string_view key,
                            std::string_view value, std::ostream* channel = nullptr);

// As ReadIniString, but an empty value also gives `default_value`.
std::string GetIniSetting(const std::string& file, std::string_view section, std::string_view key,
                          std::string_view default_value);

// As WriteIniString into `file`.
void SetIniSetting(const std::string& file, std::string_view section, std::string_view key,
                   std::string_view value);

}  // namespace kv
