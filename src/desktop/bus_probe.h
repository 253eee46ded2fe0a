// Whether the session bus answers at all.
//
// The toolkit connects to it in the middle of a start and waits as long as it takes; a bus that
// accepts and never answers would keep the window from ever coming up. Any thread.
#pragma once

#include <string>

namespace kv {

// Greets the bus at `address` (D-Bus server address; several are separated by ";") as a client
// does, and waits at most `milliseconds`. False only for a bus that takes the connection and stays
// silent: one that is not there, or is reached otherwise than by a local socket, holds nobody up.
bool SessionBusAnswers(const std::string& address, int milliseconds);

// Takes this process off its session bus if that does not answer. To be called before the toolkit
// is there and before there are other threads.
void LeaveSilentBus();

}  // namespace kv
