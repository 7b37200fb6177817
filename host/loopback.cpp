#include "host/loopback.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <charconv>
#include <cstring>
#include <memory>

#include "host/failure.h"

namespace printhost {
namespace {

bool IsLoopback(const sockaddr* address) {
  if (address->sa_family == AF_INET) {
    sockaddr_in four = {};
    std::memcpy(&four, address, sizeof four);
    return ntohl(four.sin_addr.s_addr) >> 24 == 127;
  }
  sockaddr_in6 six = {};
  std::memcpy(&six, address, sizeof six);
  return address->sa_family == AF_INET6 && IN6_IS_ADDR_LOOPBACK(&six.sin6_addr);
}

// The socket's own address and port.
std::string Authority(int socket) {
  sockaddr_storage own = {};
  socklen_t size = sizeof own;
  getsockname(socket, reinterpret_cast<sockaddr*>(&own), &size);
  char host[NI_MAXHOST], port[NI_MAXSERV];
  getnameinfo(reinterpret_cast<sockaddr*>(&own), size, host, sizeof host, port, sizeof port,
              NI_NUMERICHOST | NI_NUMERICSERV);
  const std::string name = own.ss_family == AF_INET6 ? "[" + std::string(host) + "]" : host;
  return name + ':' + port;
}

}  // namespace

LoopbackSocket ListenOnLoopback(const std::string& where) {
  const std::size_t colon = where.rfind(':');
  std::string host = where.substr(0, colon);
  if (host.starts_with('[') && host.ends_with(']')) host = host.substr(1, host.size() - 2);
  const std::string port = colon == std::string::npos ? "" : where.substr(colon + 1);
  int number = -1;
  const auto [stop, error] = std::from_chars(port.data(), port.data() + port.size(), number);
  if (colon != std::string::npos &&
      (error != std::errc() || stop != port.data() + port.size() || number < 0 || number > 65535))
    throw Failure{kUsage, "--listen takes a port between 0 and 65535"};

  addrinfo hints = {}, *found = nullptr;
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_NUMERICSERV;
  bool own =
      number >= 0 && !host.empty() && getaddrinfo(host.c_str(), port.c_str(), &hints, &found) == 0;
  const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> addresses(found, &freeaddrinfo);
  for (const addrinfo* one = found; one != nullptr; one = one->ai_next)
    own = own && IsLoopback(one->ai_addr);
  if (!own) throw Failure{kUsage, "--listen takes a loopback address and a port, like 127.0.0.1:0"};

  const int socket = ::socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  const int yes = 1;
  setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  if (bind(socket, found->ai_addr, found->ai_addrlen) != 0 || listen(socket, SOMAXCONN) != 0) {
    close(socket);
    throw Failure{kFailed, where + " cannot be listened on; choose another port"};
  }
  return {socket, Authority(socket)};
}

}  // namespace printhost
