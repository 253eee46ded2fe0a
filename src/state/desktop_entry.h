// The player's desktop entry and the description of its resume files, as a user's own files.
//
// Made from those that are installed otherwise, so that there is one text of each. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace kv {

// The entry with the program at its whole path and the picture from its file. It carries a mark by
// which the player knows it again.
std::string DesktopEntryFor(const std::string& program, const std::string& icon);

// True for a text with that mark: only such a file may be replaced or removed.
bool IsOwnDesktopEntry(std::string_view text);

// A package of the shared MIME database.
std::string_view MimePackage();

// A path as the Exec key wants it: in double quotes, with what is special there escaped.
std::string QuotedForExec(std::string_view path);

}  // namespace kv
