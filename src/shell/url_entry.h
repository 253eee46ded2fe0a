// What `frmURL` accepts and remembers.
//
// The last address stands in the registry as it was given, since it is offered again; the earlier
// ones, which complete what the user types, never with a name or password. Owned by that window;
// interface thread only.
#pragma once

#include "state/session.h"
#include "system/dialogs.h"
#include "system/registry.h"

#include <string>
#include <vector>

namespace kv {

class UrlEntry {
 public:
  // The most earlier addresses that are kept; long ones leave room for fewer.
  static constexpr int kKept = 20;

  // All must outlive this object.
  UrlEntry(Registry& registry, const Session& session, Dialogs& dialogs);

  // "LastURL", empty at first.
  std::string LastUrl() const;

  // Earlier addresses, newest first, each once.
  std::vector<std::string> Earlier() const;

  // The OK button with `text` in the box. The address to open, decoded, which is remembered now;
  // empty when there is none, or when it cannot be played, which was told then. A path that names
  // a file is taken as it stands, and a "file:" address as its path.
  std::string Accept(const std::string& text);

 private:
  void Remember(const std::string& address);

  Registry& registry_;
  const Session& session_;
  Dialogs& dialogs_;
};

}  // namespace kv
