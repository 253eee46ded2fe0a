// Names and addresses at the door of the media back end.
#include "engine/media_gate.h"

#include "support.h"

#include <array>
#include <string_view>
#include <sys/stat.h>

namespace kv::fuzz {

void Try(std::string_view input) {
  const GateVerdict verdict = CheckMedium(std::string(input));
  if (!verdict.allowed) return;
  Require(verdict.target.find('\0') == std::string::npos, "no name ends early");
  if (!verdict.remote) {
    struct stat status {};
    const bool plain = stat(verdict.target.c_str(), &status) == 0 && S_ISREG(status.st_mode);
    Require(plain && verdict.target.starts_with('/'), "only plain files, by absolute names");
    return;
  }
  bool known = false;
  for (const std::string_view scheme : {"http://", "https://", "ftp://", "mms://"}) {
    known = known || verdict.target.starts_with(scheme);
  }
  Require(known, "only the four schemes, in lower case");
  for (const char c : verdict.target) {
    Require(static_cast<unsigned char>(c) >= 0x20 && c != 0x7F, "no control characters");
  }
  const GateVerdict again = CheckMedium(verdict.target);
  Require(again.allowed && again.target == verdict.target, "what has passed passes again");
}

}  // namespace kv::fuzz
