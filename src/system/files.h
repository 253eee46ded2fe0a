// Reading, listing, naming and moving of files.
//
// Names are bytes and come back as the file system gives them. Nothing throws: what cannot be had
// is empty, 0 or false. Writing is save_file.h, the user's folders are special_folders.h. Any
// thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

// Size of a plain file in bytes; 0 when it cannot be had.
double FileSizeBytes(const std::string& path);

// Bytes that this user can still write on the file system that holds `root`; 0 when unknown.
double GetDriveFreeBytes(const std::string& root);

// Names, without the folder, of the plain files in `folder` whose last three characters occur in
// `types`, any case; all of them for "*.*". Unsorted: the order is the file system's.
std::vector<std::string> ListFilesInFolder(const std::string& folder, std::string_view types);

// Names of the folders in `folder`, links to folders included, without "." and "..". Unsorted.
std::vector<std::string> ListSubFolders(const std::string& folder);

// No text file that the player reads comes near this size; a larger one reads as empty.
inline constexpr std::size_t kMaxTextFileBytes = std::size_t{64} * 1024 * 1024;

// The whole of a plain file, without a UTF-8 byte order mark at its start and one CR LF at its end.
// Empty on any error, and for a file above `max_bytes`.
std::string ReadTextFile(const std::string& path, std::size_t max_bytes = kMaxTextFileBytes);

// The whole of a plain file, byte for byte. False on any error, and for a file above `max_bytes`.
bool ReadWholeFile(const std::string& path, std::size_t max_bytes, std::string& bytes);

// Makes a name for a temporary file in `folder` (empty: GetTempFolder()) from the first three
// characters of `prefix`. With `unique` 0 the name cannot be guessed and the empty file is created,
// readable by the user alone; any other number goes into the name in hexadecimal and nothing is
// created. False, with `result` unchanged, when the folder is missing or cannot be written.
bool MakeTempFileName(const std::string& folder, std::string_view prefix, unsigned unique,
                      std::string& result);

// Renames inside one folder, as MoveFileApi. Does nothing and answers true when the folders differ.
bool RenameFileInFolder(const std::string& old_path, const std::string& new_path);

// Moves a file or folder. Never replaces: false when `new_path` exists. A plain file may go to
// another file system; then it is copied in full before the old one is removed.
bool MoveFileApi(const std::string& old_path, const std::string& new_path);

// Creates `folder` and what is missing above it, private to the user (0700). True when it is there.
bool CreateFolders(const std::string& folder);

}  // namespace kv
