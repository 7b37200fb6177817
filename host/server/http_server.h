// An HTTP server for one site on a loopback address, with a thread of its own. A request is
// admitted or refused by its head, before any of its body is read. Every wait has a deadline.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace printhost {

// An admitted request.
struct HttpRequest {
  std::string_view method;
  std::string_view name;         // the path below the site's address, without a query
  std::string_view contentType;  // empty when the header is missing
  std::string_view body;
};

struct HttpResponse {
  int status = 200;
  std::string_view type = "text/plain; charset=utf-8";
  std::string body = {};
  bool isEventStream = false;  // events of the site follow the body
};

// The content of the site. The server calls every function on its own thread.
class HttpSite {
 public:
  virtual ~HttpSite() = default;

  virtual HttpResponse Respond(const HttpRequest& request) = 0;

  // An event stream opened or closed. Complete: the client has received the last event.
  virtual void OnStreamOpened() = 0;
  virtual void OnStreamClosed(bool complete) = 0;
  // Returns the event that follows the one with the number seen and updates the number; empty when
  // there is none. Last: the stream ends after this event.
  virtual std::string NextEvent(std::uint64_t& seen, bool& last) = 0;
  // Returns the last event of a stream that the server closes in favour of a newer one.
  virtual std::string EvictionEvent() = 0;
};

class HttpServer {
 public:
  // Listens at "address:port", port 0 for any free one. The address may be a name; all addresses
  // that it resolves to must be loopback addresses. Throws Failure (usage) otherwise, Failure
  // (failed) when the port is in use.
  HttpServer(HttpSite& site, const std::string& listen);
  // Stops at once and closes all connections.
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  // Returns the site's address, which contains a random token. Requests without it are refused.
  std::string address() const;
  // Sends the next event to every stream. May be called on any thread; does not block.
  void NotifyStreams();

  struct Impl;

 private:
  std::unique_ptr<Impl> impl_;
};

}  // namespace printhost
