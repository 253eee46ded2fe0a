// What the text of a path says, and whether the file system has something there.
//
// A path is its bytes. A text that begins with "/" is a native path: "/" separates and "\" is an
// ordinary character of a name. Every other text (drive, UNC, relative, URL) separates by "\" and,
// where it has none, by "/". Nothing here throws or changes anything. Any thread.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace kv {

// True for a text that begins with "/".
bool IsNativePath(std::string_view path);

// True when `path` names a plain file, links followed. A path with a NUL in it names nothing.
bool FileExists(const std::string& path);

// True when `path` names a folder that can be entered. The current folder stays as it is.
bool FolderExists(const std::string& path);

// The text behind the last separator; the whole of `path` when it ends in one or has none.
std::string FileNameOfPath(std::string_view path);

// Everything up to and including the last separator; the whole of `path` when it has none.
std::string FolderOfPath(std::string_view path);

// The same as FolderOfPath.
std::string GetParentFolder(std::string_view path);

// What `path` lies on. For a native path the mount point with a trailing "/"; the path itself need
// not exist. For any other up to and including the first "\", empty without one.
std::string DriveRootOfPath(const std::string& path);

// The text behind the last dot, without the dot; empty when there is none. Looks at a bare name.
std::string ExtensionOfName(std::string_view name);

// The text behind the last dot of the name, with "." in front when `with_dot`. Empty when the last
// separator ("\", or "/" of a native path) comes after the last dot. With neither dot nor separator
// the whole of `path`, and "." behind it when `with_dot`: callers rely on getting the name back.
std::string GetFileExtension(std::string_view path, bool with_dot);

// Width of a text in pixels, as it will be drawn.
using MeasureText = std::function<int(std::string_view)>;

// `path` shortened to at most `pixels`: the file name stays, "..." takes the place of the end of
// the folder part. A name that does not fit even alone loses its end to a second "...". Where
// nothing fits the result is "...". Never cuts inside a UTF-8 character.
std::string CompactPathForWidth(std::string_view path, const MeasureText& measure, int pixels);

}  // namespace kv
