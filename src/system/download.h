// Fetching a file from the network, as the rules of the player ask for it.
//
// The program makes one, which lives as long as the main form. Interface thread only.
#pragma once

#include <string>

namespace kv {

class Download {
 public:
  virtual ~Download() = default;

  // Fetches `url` into the file `local_name`, replacing it. Pumps messages until it is done. False
  // on any error, and then no partial file stands under that name.
  virtual bool Get_File(const std::string& url, const std::string& local_name) = 0;
};

}  // namespace kv
