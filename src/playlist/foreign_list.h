// Playlists as other programs write them: lines that end in LF or CR alone, texts that are not
// UTF-8. Recognises them and gives their lines in this player's own form.
//
// Names of files are bytes and need not be UTF-8 on this system either, so the files decide what
// bytes mean. Nothing here reads or writes; `names_file` asks the disk. Any thread.
#pragma once

#include "system/code_page.h"
#include "system/dialogs.h"

#include <functional>
#include <string>
#include <string_view>

namespace kv {

// Answers whether a line of the playlist, byte for byte, names a file.
using LineTest = std::function<bool(std::string_view line)>;

// False when a playlist that is read with CR LF alone between its lines would come out with fewer
// of them than its writer meant: lines end otherwise, or the text is UTF-16. A line that names a
// file as it stands has its LF or CR in that name.
bool HasPlainLines(std::string_view text, const LineTest& names_file);

struct ForeignList {
  bool line_ends = false;  // there are lines that end in LF or CR alone
  bool complete = true;    // false: more lines than a list has room for; the last one has the rest
  std::string encoding;    // of what was not UTF-8; empty: nothing had to be decoded
  std::string script;      // what is written in that code page, English; empty for UTF-16
  std::string example;     // a name that was decoded, fit to be shown
  std::string text;        // the entries, without comments: UTF-8, CR LF between

  // True when there is something to ask the user.
  bool Found() const { return line_ends || !encoding.empty(); }
};

// Reads `text`, a whole playlist without a UTF-8 byte order mark.
//
// A text with the byte order mark of UTF-16 and NULs in it, which no name can have, is UTF-16.
// Elsewhere a line that is UTF-8 stays as it is. A line that is not:
// - stays when its bytes name a file, since those bytes are the name;
// - is decoded when what comes out names a file;
// - with neither goes as the list does, which one program wrote in one way: it stays when the bytes
//   of another line name a file, else it is decoded.
// The code page is the first of those for `locale` by which a line comes to name a file; without
// such a line the first that has characters for all lines.
ForeignList ReadForeignList(std::string_view text, std::string_view locale,
                            const LineTest& names_file);

// The question whether to read `path` so: Yes, No or Cancel.
MessageBoxRequest QuestionAbout(const ForeignList& list, std::string_view path);

}  // namespace kv
