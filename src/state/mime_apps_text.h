// The text of a "mimeapps.list" as a value: which programs open a type by default.
//
// Freedesktop "Association between MIME types and applications" 1.0.1: group [Default
// Applications], lines TYPE=ID;ID;... with the most preferred program first. Of a group or key that
// stands more than once the last line of a key counts. Every edit leaves all bytes alone that it
// need not change. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kv {

// What stands behind "=", blanks at both ends dropped; nothing when there is no such line.
std::optional<std::string_view> DefaultPrograms(std::string_view text, std::string_view type);

// The first id of a list of programs; empty when there is none.
std::string_view FirstProgram(std::string_view programs);

// Puts `id` in front of the programs of `type`. Those that were there stay behind it, so that they
// are found again when it goes, even by a system that no longer has it.
void PutProgramFirst(std::string& text, std::string_view type, std::string_view id);

// Takes `id` away from the front of the programs of `type`, and the line when nothing is left. Does
// nothing, and answers false, where another program is in front.
bool RemoveFirstProgram(std::string& text, std::string_view type, std::string_view id);

}  // namespace kv
