#include "host/sheet_server.h"

#include <httplib.h>
#include <sys/random.h>
#include <sys/socket.h>

#include <charconv>
#include <thread>

#include "host/failure.h"
#include "host/picture.h"
#include "host/web_files.h"

namespace printhost {
namespace {

constexpr std::chrono::milliseconds kHeartbeat{500};
constexpr std::size_t kLongestBody = 1 << 20;
constexpr int kThreads = 16;  // each open page holds one for its stream

std::string RandomToken() {
  unsigned char bytes[16];
  if (getrandom(bytes, sizeof bytes, 0) != static_cast<ssize_t>(sizeof bytes))
    throw Failure{kFailed, "the system has no random numbers"};
  std::string text;
  for (const unsigned char byte : bytes) {
    text.push_back("0123456789abcdef"[byte >> 4]);
    text.push_back("0123456789abcdef"[byte & 15]);
  }
  return text;
}

struct Listen {
  std::string host;
  int port = 0;
};

Listen ParseListen(const std::string& text) {
  const std::size_t colon = text.rfind(':');
  Listen listen;
  listen.host = text.substr(0, colon);
  if (listen.host == "[::1]") listen.host = "::1";
  if (colon == std::string::npos ||
      (!listen.host.starts_with("127.") && listen.host != "::1" && listen.host != "localhost"))
    throw Failure{kUsage, "--listen takes a loopback address and a port, like 127.0.0.1:0"};
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data() + colon + 1, end, listen.port);
  if (error != std::errc() || stop != end || listen.port < 0 || listen.port > 65535)
    throw Failure{kUsage, "--listen takes a port between 0 and 65535"};
  return listen;
}

// Takes the same time wherever the texts differ.
bool SameSecret(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  int difference = 0;
  for (std::size_t i = 0; i < a.size(); ++i) difference |= a[i] ^ b[i];
  return difference == 0;
}

void SetHeaders(httplib::Response& response) {
  response.set_header(
      "Content-Security-Policy",
      "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; "
      "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'");
  response.set_header("X-Content-Type-Options", "nosniff");
  response.set_header("Referrer-Policy", "no-referrer");
  response.set_header("Cross-Origin-Resource-Policy", "same-origin");
  response.set_header("Cross-Origin-Opener-Policy", "same-origin");
  response.set_header("Cache-Control", "no-store");
}

}  // namespace

struct SheetServer::Impl {
  Exchange& exchange;
  HMODULE pictures;
  std::string token = RandomToken();
  std::string authority;  // host and port as a browser names them
  httplib::Server server;
  std::thread thread;

  bool IsOwn(const std::string& name) const {
    const std::string port = authority.substr(authority.rfind(':'));
    return name == authority || name == "127.0.0.1" + port || name == "localhost" + port ||
           name == "[::1]" + port;
  }

  // Whether a request may be answered at all.
  bool Admits(const httplib::Request& request) const {
    if (!SameSecret(std::string_view(request.path).substr(0, token.size() + 2), "/" + token + "/"))
      return false;
    if (request.get_header_value_count("Host") != 1 || !IsOwn(request.get_header_value("Host")))
      return false;
    if (!request.has_header("Origin")) return true;
    const std::string origin = request.get_header_value("Origin");
    return origin.starts_with("http://") && IsOwn(origin.substr(7));
  }

  void Serve(const WebFile& file) {
    server.Get("/" + token + "/" + std::string(file.name),
               [&file](const httplib::Request&, httplib::Response& response) {
                 response.set_content(file.bytes.data(), file.bytes.size(), file.type);
               });
  }

  void ServePicture(const httplib::Request& request, httplib::Response& response) const {
    const std::string digits = request.matches[1];
    const std::string file = BitmapFile(pictures, std::stoi(digits));
    if (file.empty())
      response.status = 404;
    else
      response.set_content(file, "image/bmp");
  }

  // One event a picture; a comment now and then shows whether the page is still there.
  void ServeEvents(httplib::Response& response) {
    exchange.Joined();
    auto next = [this, seen = std::uint64_t{0}](std::size_t, httplib::DataSink& sink) mutable {
      std::string picture;
      const bool over = exchange.ended();
      const std::string text = exchange.Await(seen, picture, kHeartbeat)
                                   ? "data: " + picture + "\n\n"
                                   : std::string(":\n\n");
      if (!sink.write(text.data(), text.size())) return false;
      if (over) sink.done();
      return true;
    };
    response.set_chunked_content_provider("text/event-stream", next,
                                          [this](bool) { exchange.Left(); });
  }

  void TakeAction(const httplib::Request& request, httplib::Response& response) {
    if (!request.get_header_value("Content-Type").starts_with("application/json")) {
      response.status = 415;
      return;
    }
    Json action = Json::parse(request.body, nullptr, false);
    const bool known = action.is_object() && action.contains("action") && action.contains("window");
    response.status = !known ? 400 : exchange.Put(std::move(action)) ? 204 : 503;
  }

  void AddRoutes() {
    // What carries a body is admitted once its body is read, or the answer could be lost with it.
    server.set_pre_routing_handler(
        [this](const httplib::Request& request, httplib::Response& response) {
          if (request.method == "POST" || Admits(request)) {
            SetHeaders(response);
            return httplib::Server::HandlerResponse::Unhandled;
          }
          response.status = 403;
          return httplib::Server::HandlerResponse::Handled;
        });
    for (const WebFile& file : WebFiles()) Serve(file);
    server.Get("/" + token + "/picture/([0-9]{1,5})",
               [this](const httplib::Request& request, httplib::Response& response) {
                 ServePicture(request, response);
               });
    server.Get(
        "/" + token + "/events",
        [this](const httplib::Request&, httplib::Response& response) { ServeEvents(response); });
    server.Post(".*", [this](const httplib::Request& request, httplib::Response& response) {
      if (!Admits(request))
        response.status = 403;
      else if (request.path != "/" + token + "/action")
        response.status = 404;
      else
        TakeAction(request, response);
    });
  }
};

SheetServer::SheetServer(Exchange& exchange, const std::string& listen, HMODULE pictures)
    : impl_(new Impl{.exchange = exchange,
                     .pictures = pictures,
                     .authority = {},
                     .server = {},
                     .thread = {}}) {
  const Listen where = ParseListen(listen);
  httplib::Server& server = impl_->server;
  server.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
  server.set_payload_max_length(kLongestBody);
  server.set_tcp_nodelay(true);
  server.set_keep_alive_max_count(1);
  // Not the library's own choice of SO_REUSEPORT: a port that another process has is not shared.
  server.set_socket_options([](socket_t socket) {
    const int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  });
  int port = where.port;
  if (port == 0)
    port = server.bind_to_any_port(where.host.c_str());
  else if (!server.bind_to_port(where.host.c_str(), port))
    port = -1;
  if (port < 0) throw Failure{kFailed, listen + " cannot be listened on; choose another port"};
  impl_->authority = (where.host == "::1" ? "[::1]" : where.host) + ":" + std::to_string(port);
  impl_->AddRoutes();
  impl_->thread = std::thread([&server] { server.listen_after_bind(); });
  while (!server.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

SheetServer::~SheetServer() {
  impl_->server.stop();
  impl_->thread.join();
}

std::string SheetServer::address() const {
  return "http://" + impl_->authority + "/" + impl_->token + "/";
}

}  // namespace printhost
