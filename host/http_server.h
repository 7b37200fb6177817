// One thread that serves HTTP on a socket. A request is admitted or refused by its head, before
// any of its body is read; whoever is slow or never ends is cut off and keeps nobody waiting.
#pragma once

#include <chrono>
#include <cstdint>
#include <list>
#include <string>
#include <thread>

#include "host/http_request.h"

namespace printhost {

struct HttpAnswer {
  int status = 200;
  std::string_view type = "text/plain; charset=utf-8";
  std::string body = {};
  bool stream = false;  // goes on with the site's news
};

// What is served. Everything is called on the server's thread.
class HttpSite {
 public:
  virtual ~HttpSite() = default;

  virtual bool Admits(const HttpRequest& request) = 0;
  // Answers an admitted request.
  virtual HttpAnswer Answer(const HttpRequest& request, const std::string& body) = 0;

  // A stream began, or ended; told: after the last news.
  virtual void Joined() = 0;
  virtual void Left(bool told) = 0;
  // News for a stream since what it has seen; empty: none. Last: nothing will follow.
  virtual std::string News(std::uint64_t& seen, bool& last) = 0;
  // What the oldest stream is told when there is no room for one more.
  virtual std::string Displaced() = 0;
};

class HttpServer {
 public:
  // Header lines that every answer carries end with "\r\n" each. The socket listens, and becomes
  // the server's own.
  HttpServer(HttpSite& site, int listener, std::string headers);
  // Stops at once; connections under way are closed.
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  // The site has news. May be called on any thread.
  void Wake() const;

 private:
  using Clock = std::chrono::steady_clock;
  enum class State { kHead, kBody, kAnswer, kStream, kFarewell, kGone };
  struct Connection {
    int socket;
    Clock::time_point deadline;
    State state = State::kHead;
    std::string in = {}, out = {};
    std::size_t sent = 0;
    HttpRequest request = {};
    std::size_t bodyLength = 0;
    std::uint64_t seen = 0;
    bool last = false;  // the stream's last news are on their way
  };

  void Run(const std::stop_token& stop);
  void Accept();
  void MakeRoom();
  void Serve(Connection& connection);
  void Read(Connection& connection);
  void ReadHead(Connection& connection);
  void ReadBody(Connection& connection);
  void Reply(Connection& connection, const HttpAnswer& answer);
  void Stream(Connection& connection);
  bool Write(Connection& connection);
  void Leave(Connection& connection, State next);

  HttpSite& site_;
  int listener_;
  int wake_;
  std::string headers_;
  std::list<Connection> connections_;  // the oldest first
  std::jthread thread_;
};

}  // namespace printhost
