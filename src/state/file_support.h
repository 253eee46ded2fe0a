// "filesupport.dat": what can be played, by the names of files. Any thread.
#pragma once

#include <string>

namespace kv {

struct FileSupport {
  std::string SupportedExtensions;  // line 1: patterns separated by ";"
  std::string OpenFilter;           // line 2: the filter of the open dialog
};

// Reads the two lines, ended by LF or CR LF. What is not there, or lies in a file of more than 1
// MB, is empty.
FileSupport ReadFileSupport(const std::string& path);

}  // namespace kv
