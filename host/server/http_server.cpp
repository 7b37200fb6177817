#include "host/server/http_server.h"

#include <sys/random.h>

#include <algorithm>
#include <array>
#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/http/write.hpp>
#include <charconv>
#include <chrono>
#include <list>
#include <span>
#include <sstream>
#include <thread>
#include <utility>

#include "host/failure.h"
#include "host/hex.h"
#include "host/server/request_head.h"

namespace printhost {
namespace {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using asio::ip::tcp;
using boost::system::error_code;
using std::chrono::milliseconds;

// Event streams included. An unfinished head takes up to 11 KB of memory.
constexpr std::size_t kMaxConnections = 64;
// A browser opens six connections to a site, shared by all of its tabs.
constexpr std::ptrdiff_t kMaxStreams = 4;
constexpr milliseconds kHeadTimeout{2000};
constexpr milliseconds kBodyTimeout{2000};
constexpr milliseconds kResponseTimeout{5000};
// A connection that is closed while its peer still sends loses the response.
constexpr milliseconds kLingerTimeout{300};
constexpr milliseconds kAcceptRetryDelay{100};

constexpr std::pair<const char*, const char*> kHeaders[] = {
    {"Content-Security-Policy",
     "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; "
     "base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
    {"X-Content-Type-Options", "nosniff"},
    {"Referrer-Policy", "no-referrer"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
    {"Cross-Origin-Opener-Policy", "same-origin"},
    {"Cache-Control", "no-store"}};

// Returns the acceptor of the server; see HttpServer's constructor.
tcp::acceptor ListenOnLoopback(asio::io_context& io, const std::string& listen) {
  const std::size_t colon = listen.rfind(':');
  std::string host = listen.substr(0, colon);
  if (host.starts_with('[') && host.ends_with(']')) host = host.substr(1, host.size() - 2);
  const std::string port = colon == std::string::npos ? "" : listen.substr(colon + 1);
  int number = -1;
  const auto [stop, parseError] = std::from_chars(port.data(), port.data() + port.size(), number);
  if (colon != std::string::npos &&
      (parseError != std::errc() || stop != port.data() + port.size() || number < 0 ||
       number > 65535))
    throw Failure{kUsage, "--listen takes a port between 0 and 65535"};

  error_code error;
  tcp::resolver::results_type found;
  if (number >= 0 && !host.empty())
    found = tcp::resolver(io).resolve(host, port, tcp::resolver::numeric_service, error);
  const auto isLoopback = [](const tcp::resolver::results_type::value_type& entry) {
    return entry.endpoint().address().is_loopback();
  };
  if (found.empty() || !std::all_of(found.begin(), found.end(), isLoopback))
    throw Failure{kUsage, "--listen takes a loopback address and a port, like 127.0.0.1:0"};
  try {
    return {io, found.begin()->endpoint()};  // with SO_REUSEADDR
  } catch (const boost::system::system_error&) {
    throw Failure{kFailed, listen + " cannot be listened on; choose another port"};
  }
}

std::string RandomToken() {
  unsigned char bytes[16];
  if (getrandom(bytes, sizeof bytes, 0) != static_cast<ssize_t>(sizeof bytes))
    throw Failure{kFailed, "the system has no random numbers"};
  return Hex(std::as_bytes(std::span(bytes)));
}

// Compares in a time that does not depend on where the texts differ.
bool EqualSecrets(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  int difference = 0;
  for (std::size_t i = 0; i < a.size(); ++i) difference |= a[i] ^ b[i];
  return difference == 0;
}

}  // namespace

class Connection;

struct HttpServer::Impl {
  Impl(HttpSite& served, const std::string& listen)
      : site(served), acceptor(ListenOnLoopback(io, listen)) {
    authority = [this] {
      std::ostringstream text;
      text << acceptor.local_endpoint();
      return text.str();
    }();
    Accept();
    thread = std::thread([this] { io.run(); });
  }
  ~Impl();

  void Accept();
  void EvictConnection();
  void EvictStream();
  void Remove(const Connection& connection);

  // Returns true for a loopback address or the local name with the server's port.
  bool IsOwn(std::string_view name) const {
    const std::string port = authority.substr(authority.rfind(':'));
    return name == authority || name == "127.0.0.1" + port || name == "localhost" + port ||
           name == "[::1]" + port;
  }

  // Returns true when the path begins with the token, the only Host is the server's own and the
  // Origin, if any, is the same.
  bool Admits(const http::request_header<>& header) const {
    if (!EqualSecrets(View(header.target()).substr(0, prefix.size()), prefix)) return false;
    if (header.count(http::field::host) != 1 || !IsOwn(View(header[http::field::host])))
      return false;
    const std::size_t origins = header.count(http::field::origin);
    const std::string_view origin = View(header[http::field::origin]);
    return origins == 0 ||
           (origins == 1 && origin.starts_with("http://") && IsOwn(origin.substr(7)));
  }

  HttpSite& site;
  std::string prefix = '/' + RandomToken() + '/';
  std::string authority;  // address and port as a browser names them
  asio::io_context io{1};
  tcp::acceptor acceptor;
  asio::steady_timer acceptRetry{io};
  std::list<std::shared_ptr<Connection>> connections;  // the oldest first
  std::array<char, 4096> discarded;                    // input after a request, dropped
  std::thread thread;
};

class Connection : public std::enable_shared_from_this<Connection> {
 public:
  enum class State { kHead, kBody, kResponse, kStream, kLinger, kClosed };

  Connection(HttpServer::Impl& server, tcp::socket socket)
      : server_(server), socket_(std::move(socket)), timer_(socket_.get_executor()) {}

  State state() const { return state_; }
  bool isEnding() const { return isLast_; }

  // Begins to read the request.
  void Start() {
    error_code ignored;
    socket_.set_option(tcp::no_delay(true), ignored);
    SetDeadline(kHeadTimeout);
    asio::async_read(
        socket_, asio::dynamic_buffer(head_, kMaxHead),
        [this](const error_code&, std::size_t) {
          return isTimedOut_ || head_.find(kHeadEnd) != std::string::npos ? 0 : kMaxHead;
        },
        [self = shared_from_this()](const error_code&, std::size_t) { self->OnHead(); });
  }

  // Sends the site's next event, unless one is still being sent: a slow client gets the newest one
  // when it is ready.
  void SendNextEvent() {
    if (state_ != State::kStream || isSending_) return;
    if (isLast_) return Linger();
    if (isEvicted_) {
      event_ = server_.site.EvictionEvent();
      isLast_ = true;
    } else {
      event_ = server_.site.NextEvent(seen_, isLast_);
    }
    if (event_.empty()) return;
    if (isLast_) SetDeadline(kResponseTimeout);
    isSending_ = true;
    asio::async_write(socket_, asio::buffer(event_),
                      [self = shared_from_this()](const error_code& error, std::size_t) {
                        self->isSending_ = false;
                        if (error) return self->Close();
                        self->SendNextEvent();
                      });
  }

  // Ends an event stream with the site's eviction event.
  void Evict() {
    isEvicted_ = true;
    SendNextEvent();
  }
  bool isEvicted() const { return isEvicted_; }

  void Close() {
    if (state_ == State::kClosed) return;
    if (state_ == State::kStream) server_.site.OnStreamClosed(false);
    state_ = State::kClosed;
    error_code ignored;
    socket_.close(ignored);
    timer_.cancel();
    server_.Remove(*this);
  }

 private:
  void SetDeadline(milliseconds timeout) {
    timer_.expires_after(timeout);
    timer_.async_wait([self = shared_from_this()](const error_code& error) {
      // A handler that is queued already runs although its deadline has moved.
      if (error || self->timer_.expiry() > std::chrono::steady_clock::now()) return;
      if (self->state_ != State::kHead && self->state_ != State::kBody) return self->Close();
      self->isTimedOut_ = true;
      error_code ignored;
      self->socket_.cancel(ignored);
    });
  }

  void OnHead() {
    if (state_ == State::kClosed) return;
    const std::size_t end = head_.find(kHeadEnd);
    if (end == std::string::npos) {
      if (head_.size() >= kMaxHead) return Send({.status = 431});
      // Browsers keep connections ready that they may never use.
      return isTimedOut_ && !head_.empty() ? Send({.status = 408}) : Close();
    }
    const std::string_view head = std::string_view(head_).substr(0, end + kHeadEnd.size());
    RequestHead request = ParseHead(head);
    if (request.isMalformed) return Send({.status = 400});
    if (!server_.Admits(request.header)) return Send({.status = 403});
    if (request.refusal != 0) return Send({.status = request.refusal});
    request_ = std::move(request.header);
    body_ = head_.substr(head.size(), request.bodyLength);
    ReadBody(request.bodyLength);
  }

  void ReadBody(std::size_t length) {
    state_ = State::kBody;
    SetDeadline(kBodyTimeout);
    const std::size_t received = body_.size();
    body_.resize(length);
    asio::async_read(
        socket_, asio::buffer(body_) + received,
        [this](const error_code&, std::size_t) { return isTimedOut_ ? 0 : kMaxBody; },
        [self = shared_from_this(), missing = length - received](const error_code&,
                                                                 std::size_t count) {
          if (self->state_ == State::kClosed) return;
          if (count == missing) return self->Respond();
          if (self->isTimedOut_) return self->Send({.status = 408});
          self->Close();
        });
  }

  void Respond() {
    const std::string_view path = View(request_.target());
    Send(server_.site.Respond({.method = View(request_.method_string()),
                               .name = path.substr(0, path.find('?')).substr(server_.prefix.size()),
                               .contentType = View(request_[http::field::content_type]),
                               .body = body_}));
  }

  void Send(HttpResponse response) {
    head_ = {};
    body_ = {};
    response_.version(11);
    response_.result(static_cast<unsigned>(response.status));
    for (const auto& [name, value] : kHeaders) response_.set(name, value);
    response_.keep_alive(false);
    if (response.status != 204)
      response_.set(http::field::content_type,
                    boost::beast::string_view(response.type.data(), response.type.size()));
    response_.body() = std::move(response.body);
    if (!response.isEventStream) response_.prepare_payload();
    state_ = State::kResponse;
    SetDeadline(kResponseTimeout);
    if (response.isEventStream) OpenStream();
    http::async_write(socket_, response_,
                      [self = shared_from_this()](const error_code& error, std::size_t) {
                        self->isSending_ = false;
                        if (self->state_ == State::kClosed) return;
                        if (error) return self->Close();
                        self->Discard();
                        if (self->state_ == State::kStream) return self->SendNextEvent();
                        self->Linger();
                      });
  }

  void OpenStream() {
    server_.EvictStream();
    state_ = State::kStream;
    isSending_ = true;
    timer_.expires_at(std::chrono::steady_clock::time_point::max());
    server_.site.OnStreamOpened();
  }

  // Ends the server's side of the connection and waits a moment for the client to do the same.
  void Linger() {
    if (state_ == State::kStream) server_.site.OnStreamClosed(true);
    state_ = State::kLinger;
    error_code ignored;
    socket_.shutdown(tcp::socket::shutdown_send, ignored);
    SetDeadline(kLingerTimeout);
  }

  // Reads and drops whatever the client sends until it closes, which ends a stream or a lingering
  // connection.
  void Discard() {
    socket_.async_read_some(asio::buffer(server_.discarded),
                            [self = shared_from_this()](const error_code& error, std::size_t) {
                              if (self->state_ == State::kClosed) return;
                              if (error) return self->Close();
                              self->Discard();
                            });
  }

  HttpServer::Impl& server_;
  tcp::socket socket_;
  asio::steady_timer timer_;
  State state_ = State::kHead;
  bool isTimedOut_ = false;
  std::string head_, body_;
  http::request_header<> request_;
  http::response<http::string_body> response_;
  std::string event_;
  std::uint64_t seen_ = 0;
  bool isSending_ = false;
  bool isEvicted_ = false;
  bool isLast_ = false;  // the last event is being sent, or has been
};

HttpServer::Impl::~Impl() {
  io.stop();
  thread.join();
  while (!connections.empty()) std::shared_ptr(connections.front())->Close();
}

void HttpServer::Impl::Accept() {
  acceptor.async_accept([this](const error_code& error, tcp::socket socket) {
    if (error) {
      if (error == asio::error::no_descriptors) EvictConnection();
      acceptRetry.expires_after(kAcceptRetryDelay);
      return acceptRetry.async_wait([this](const error_code&) { Accept(); });
    }
    if (connections.size() >= kMaxConnections) EvictConnection();
    connections.push_back(std::make_shared<Connection>(*this, std::move(socket)));
    connections.back()->Start();
    Accept();
  });
}

// Closes the oldest connection that has not been admitted; without one, the oldest that is not a
// stream.
void HttpServer::Impl::EvictConnection() {
  using State = Connection::State;
  auto oldest = std::ranges::find_if(connections, [](const auto& connection) {
    return connection->state() == State::kHead || connection->state() == State::kLinger;
  });
  if (oldest == connections.end())
    oldest = std::ranges::find_if(
        connections, [](const auto& connection) { return connection->state() != State::kStream; });
  if (oldest != connections.end()) std::shared_ptr(*oldest)->Close();
}

// Ends the oldest stream when there are kMaxStreams already.
void HttpServer::Impl::EvictStream() {
  const auto isOpen = [](const auto& connection) {
    return connection->state() == Connection::State::kStream && !connection->isEnding() &&
           !connection->isEvicted();
  };
  if (std::ranges::count_if(connections, isOpen) >= kMaxStreams)
    std::shared_ptr(*std::ranges::find_if(connections, isOpen))->Evict();
}

void HttpServer::Impl::Remove(const Connection& connection) {
  connections.remove_if([&](const auto& each) { return each.get() == &connection; });
}

HttpServer::HttpServer(HttpSite& site, const std::string& listen)
    : impl_(std::make_unique<Impl>(site, listen)) {}

HttpServer::~HttpServer() = default;

std::string HttpServer::address() const { return "http://" + impl_->authority + impl_->prefix; }

void HttpServer::NotifyStreams() {
  asio::post(impl_->io, [impl = impl_.get()] {
    const auto streams = impl->connections;
    for (const auto& connection : streams) connection->SendNextEvent();
  });
}

}  // namespace printhost
