#include "host/http_server.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

namespace printhost {
namespace {

using std::chrono::milliseconds;

constexpr std::size_t kLongestHead = 8 << 10;
constexpr std::size_t kLongestBody = 64 << 10;
constexpr std::size_t kMostConnections = 256;  // besides the streams
// A browser has six connections for a site, whatever number of its tabs share them.
constexpr std::ptrdiff_t kMostStreams = 4;
// From the connection to the end of its head, from there to the end of its body, and so on.
constexpr milliseconds kHeadTime{2000};
constexpr milliseconds kBodyTime{2000};
constexpr milliseconds kAnswerTime{5000};
// A connection that is closed while its peer still sends loses the answer.
constexpr milliseconds kFarewellTime{300};

}  // namespace

HttpServer::HttpServer(HttpSite& site, int listener, std::string headers)
    : site_(site),
      listener_(listener),
      wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      headers_(std::move(headers)),
      thread_([this](const std::stop_token& stop) { Run(stop); }) {}

HttpServer::~HttpServer() {
  thread_.request_stop();
  Wake();
  thread_.join();
  for (Connection& connection : connections_) Leave(connection, State::kGone);
  close(listener_);
  close(wake_);
}

void HttpServer::Wake() const { eventfd_write(wake_, 1); }

void HttpServer::Run(const std::stop_token& stop) {
  std::vector<pollfd> polls;
  while (!stop.stop_requested()) {
    polls.assign({{wake_, POLLIN, 0}, {listener_, POLLIN, 0}});
    auto next = Clock::time_point::max();
    for (const Connection& connection : connections_) {
      const bool writes = connection.sent < connection.out.size();
      polls.push_back(
          {connection.socket, static_cast<short>(writes ? POLLIN | POLLOUT : POLLIN), 0});
      next = std::min(next, connection.deadline);
    }
    const auto wait = std::chrono::ceil<milliseconds>(next - Clock::now()).count();
    const int time =
        connections_.empty() || wait > 1000 ? 1000 : std::max(0, static_cast<int>(wait));
    if (poll(polls.data(), polls.size(), time) < 0 && errno != EINTR) return;
    eventfd_t count = 0;
    eventfd_read(wake_, &count);
    auto polled = polls.begin() + 2;
    for (Connection& connection : connections_) {
      if ((polled++)->revents & ~POLLOUT) Read(connection);
      Serve(connection);
    }
    if (polls[1].revents != 0) Accept();
    std::erase_if(connections_, [](const Connection& one) { return one.state == State::kGone; });
  }
}

void HttpServer::Accept() {
  const int socket = accept4(listener_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
  if (socket < 0) {
    if (errno == EMFILE || errno == ENFILE) MakeRoom();
    return;
  }
  const int yes = 1;
  setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
  if (connections_.size() >= kMostConnections) MakeRoom();
  connections_.push_back({.socket = socket, .deadline = Clock::now() + kHeadTime});
}

// Drops the oldest connection that has not been admitted; without one, the oldest that is no
// stream.
void HttpServer::MakeRoom() {
  const auto waits = [](const Connection& one) {
    return one.state == State::kHead || one.state == State::kFarewell;
  };
  auto oldest = std::ranges::find_if(connections_, waits);
  if (oldest == connections_.end())
    oldest = std::ranges::find_if(
        connections_, [](const Connection& one) { return one.state != State::kStream; });
  if (oldest != connections_.end()) Leave(*oldest, State::kGone);
}

// Closes a connection, or the server's side of it.
void HttpServer::Leave(Connection& connection, State next) {
  if (connection.state == State::kGone) return;
  if (connection.state == State::kStream) site_.Left(connection.last && next == State::kFarewell);
  connection.state = next;
  if (next == State::kGone) {
    close(connection.socket);
  } else {
    shutdown(connection.socket, SHUT_WR);
    connection.deadline = Clock::now() + kFarewellTime;
  }
}

void HttpServer::Read(Connection& connection) {
  char bytes[16 << 10];
  const ssize_t count = recv(connection.socket, bytes, sizeof bytes, 0);
  if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR))
    Leave(connection, State::kGone);
  // What comes after a request is of no use.
  else if (count > 0 && (connection.state == State::kHead || connection.state == State::kBody))
    connection.in.append(bytes, static_cast<std::size_t>(count));
}

void HttpServer::Serve(Connection& connection) {
  if (connection.state == State::kHead) ReadHead(connection);
  if (connection.state == State::kBody) ReadBody(connection);
  if (connection.state == State::kAnswer && Write(connection)) Leave(connection, State::kFarewell);
  if (connection.state == State::kStream) Stream(connection);
  if (Clock::now() < connection.deadline || connection.state == State::kGone) return;
  const bool reads = connection.state == State::kHead || connection.state == State::kBody;
  // Browsers keep connections ready that they may never use.
  if (reads && !connection.in.empty())
    Reply(connection, {.status = 408});
  else
    Leave(connection, State::kGone);
}

void HttpServer::ReadHead(Connection& connection) {
  constexpr std::string_view kHeadEnd = "\r\n\r\n";
  const std::size_t end = connection.in.find(kHeadEnd);
  if (end == std::string::npos || end > kLongestHead) {
    if (connection.in.size() > kLongestHead) Reply(connection, {.status = 431});
    return;
  }
  HttpRequest& request = connection.request;
  if (!ParseHead(std::string_view(connection.in).substr(0, end), request))
    return Reply(connection, {.status = 400});
  if (!site_.Admits(request)) return Reply(connection, {.status = 403});
  if (const int refused = ParseBodyLength(request, kLongestBody, connection.bodyLength))
    return Reply(connection, {.status = refused});
  connection.in.erase(0, end + kHeadEnd.size());
  connection.state = State::kBody;
  connection.deadline = Clock::now() + kBodyTime;
}

void HttpServer::ReadBody(Connection& connection) {
  if (connection.in.size() < connection.bodyLength) return;
  connection.in.resize(connection.bodyLength);
  Reply(connection, site_.Answer(connection.request, connection.in));
}

void HttpServer::Reply(Connection& connection, const HttpAnswer& answer) {
  connection.in = {};
  std::string& out = connection.out;
  // The number says all; a phrase for its reason may be left out.
  out = "HTTP/1.1 " + std::to_string(answer.status) + " \r\n" + headers_ + "Connection: close\r\n";
  if (answer.status != 204) out.append("Content-Type: ").append(answer.type).append("\r\n");
  if (!answer.stream && answer.status != 204)
    out.append("Content-Length: ").append(std::to_string(answer.body.size())).append("\r\n");
  out.append("\r\n").append(answer.body);
  connection.state = State::kAnswer;
  connection.deadline = Clock::now() + kAnswerTime;
  if (!answer.stream) return;
  const auto streams = [](const Connection& one) {
    return one.state == State::kStream && !one.last;
  };
  if (std::ranges::count_if(connections_, streams) >= kMostStreams) {
    Connection& oldest = *std::ranges::find_if(connections_, streams);
    oldest.out.append(site_.Displaced());
    oldest.last = true;
  }
  connection.state = State::kStream;
  connection.deadline = Clock::time_point::max();
  site_.Joined();
}

// Sends what is new, one piece of news at a time: a slow page gets the newest when it is ready.
void HttpServer::Stream(Connection& connection) {
  while (connection.state == State::kStream && Write(connection)) {
    if (connection.last) return Leave(connection, State::kFarewell);
    connection.sent = 0;
    connection.out = site_.News(connection.seen, connection.last);
    if (connection.out.empty()) return;
  }
}

// Whether all is written.
bool HttpServer::Write(Connection& connection) {
  while (connection.sent < connection.out.size()) {
    const ssize_t count = send(connection.socket, connection.out.data() + connection.sent,
                               connection.out.size() - connection.sent, MSG_NOSIGNAL);
    if (count < 0) {
      if (errno != EAGAIN && errno != EINTR) Leave(connection, State::kGone);
      return false;
    }
    connection.sent += static_cast<std::size_t>(count);
  }
  return true;
}

}  // namespace printhost
