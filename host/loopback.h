// A socket that only this computer reaches.
#pragma once

#include <string>

namespace printhost {

struct LoopbackSocket {
  int socket;             // listens
  std::string authority;  // its address and port, as a browser names them
};

// Listens at "address:port", port 0 for any free one. The address may be a name; all that it
// resolves to has to be loopback addresses. Throws Failure (usage) otherwise, Failure when the port
// is taken.
LoopbackSocket ListenOnLoopback(const std::string& where);

}  // namespace printhost
