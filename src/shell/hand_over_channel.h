// The way from a second start to the player that runs: a local socket of the user's own.
//
// One request is one connection: four bytes of length, least significant first, then that many
// bytes of text, a path in double quotes. The answer is one byte. The socket lies in the user's
// runtime folder, which nobody else can enter, and carries a number derived from the program
// folder, since players with different program folders share nothing. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kv {

inline constexpr std::size_t kHandOverHeader = 4;           // bytes
inline constexpr std::size_t kMaxHandOverText = 64 * 1024;  // bytes; a path has at most 4096
inline constexpr char kHandOverAccepted = 'A';
inline constexpr char kHandOverRefused = 'R';

// The whole path of the socket. $XDG_RUNTIME_DIR is used where it is a folder of this user that
// nobody else can enter; otherwise a folder of that kind is made below the temporary folder. Empty
// when there is none and none can be made.
std::string HandOverSocketPath(const std::string& app_folder);

std::string EncodeHandOver(std::string_view text);

enum class HandOverState { kIncomplete, kComplete, kMalformed };

struct DecodedHandOver {
  HandOverState state = HandOverState::kIncomplete;
  std::string text;
};

// Reads what has come so far. Malformed: a text that is empty or too long, holds a NUL, or has
// something behind it.
DecodedHandOver DecodeHandOver(std::string_view bytes);

// True when the process at the other end of a connected socket belongs to this user.
bool PeerIsSameUser(int socket);

// True when nobody is at the other end of a socket any more; what was sent can still be read.
bool PeerHasGone(int socket);

enum class HandOverAnswer { kNobody, kAccepted, kRefused };

// Delivers a text to the player behind a socket. kNobody: nobody listens, or no answer came within
// `timeout_milliseconds`. Blocks for at most that long.
HandOverAnswer SendHandOver(const std::string& socket_path, std::string_view text,
                            int timeout_milliseconds);

}  // namespace kv
