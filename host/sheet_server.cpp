#include "host/sheet_server.h"

#include <sys/random.h>

#include <algorithm>
#include <charconv>

#include "host/actions.h"
#include "host/failure.h"
#include "host/http_server.h"
#include "host/loopback.h"
#include "host/picture.h"
#include "host/sha256.h"
#include "host/web_files.h"

namespace printhost {
namespace {

constexpr char kHeaders[] =
    "Content-Security-Policy: default-src 'none'; script-src 'self'; style-src 'self'; "
    "img-src 'self'; connect-src 'self'; base-uri 'none'; form-action 'none'; "
    "frame-ancestors 'none'\r\n"
    "X-Content-Type-Options: nosniff\r\n"
    "Referrer-Policy: no-referrer\r\n"
    "Cross-Origin-Resource-Policy: same-origin\r\n"
    "Cross-Origin-Opener-Policy: same-origin\r\n"
    "Cache-Control: no-store\r\n";

std::string RandomToken() {
  unsigned char bytes[16];
  if (getrandom(bytes, sizeof bytes, 0) != static_cast<ssize_t>(sizeof bytes))
    throw Failure{kFailed, "the system has no random numbers"};
  return Hex(std::as_bytes(std::span(bytes)));
}

// Takes the same time wherever the texts differ.
bool SameSecret(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  int difference = 0;
  for (std::size_t i = 0; i < a.size(); ++i) difference |= a[i] ^ b[i];
  return difference == 0;
}

std::string Event(const std::string& picture) { return "data: " + picture + "\n\n"; }

}  // namespace

struct SheetServer::Impl final : HttpSite {
  Impl(Exchange& meeting, HMODULE module, const LoopbackSocket& listener)
      : exchange(meeting),
        pictures(module),
        authority(listener.authority),
        server(*this, listener.socket, kHeaders) {
    exchange.OnPicture([this] { server.Wake(); });
  }
  ~Impl() override { exchange.OnPicture(nullptr); }

  bool IsOwn(std::string_view name) const {
    const std::string port = authority.substr(authority.rfind(':'));
    return name == authority || name == "127.0.0.1" + port || name == "localhost" + port ||
           name == "[::1]" + port;
  }

  bool Admits(const HttpRequest& request) override {
    if (!SameSecret(std::string_view(request.path).substr(0, token.size() + 2), "/" + token + "/"))
      return false;
    if (request.Count("host") != 1 || !IsOwn(request.Header("host"))) return false;
    if (request.Count("origin") == 0) return true;
    const std::string_view origin = request.Header("origin");
    return request.Count("origin") == 1 && origin.starts_with("http://") && IsOwn(origin.substr(7));
  }

  HttpAnswer Answer(const HttpRequest& request, const std::string& body) override {
    const std::string_view name = std::string_view(request.path).substr(token.size() + 2);
    const bool isAction = name == "action";
    if (request.method != (isAction ? "POST" : "GET")) return {.status = 405};
    if (isAction) return TakeAction(request, body);
    // A page that lost its stream tries again in half a second.
    if (name == "events")
      return {.type = "text/event-stream", .body = "retry: 500\n\n", .stream = true};
    const auto file = std::ranges::find(WebFiles(), name, &WebFile::name);
    if (file != WebFiles().end()) return {.type = file->type, .body = std::string(file->bytes)};
    return Picture(name);
  }

  HttpAnswer Picture(std::string_view name) const {
    constexpr std::string_view kFolder = "picture/";
    std::uint16_t number = 0;
    std::string bitmap;
    if (name.starts_with(kFolder)) {
      name.remove_prefix(kFolder.size());
      const auto [stop, error] = std::from_chars(name.data(), name.data() + name.size(), number);
      if (error == std::errc() && stop == name.data() + name.size())
        bitmap = BitmapFile(pictures, number);
    }
    if (bitmap.empty()) return {.status = 404};
    return {.type = "image/bmp", .body = std::move(bitmap)};
  }

  HttpAnswer TakeAction(const HttpRequest& request, const std::string& body) {
    if (!request.Header("content-type").starts_with("application/json"))
      return {.status = 415, .body = "An action is application/json."};
    Json action = Json::parse(body, nullptr, false);
    if (const std::string problem = ActionProblem(action); !problem.empty())
      return {.status = 400, .body = problem};
    if (!exchange.Put(std::move(action)))
      return {.status = 503, .body = "Too many actions wait already; try again."};
    return {.status = 204};
  }

  void Joined() override { exchange.Joined(); }
  void Left(bool told) override { exchange.Left(told); }
  std::string News(std::uint64_t& seen, bool& last) override {
    std::string picture;
    return exchange.Newer(seen, picture, last) ? Event(picture) : std::string();
  }
  std::string Displaced() override { return Event(R"({"end":"elsewhere"})"); }

  Exchange& exchange;
  HMODULE pictures;
  std::string token = RandomToken();
  std::string authority;  // host and port as a browser names them
  HttpServer server;
};

SheetServer::SheetServer(Exchange& exchange, const std::string& listen, HMODULE pictures)
    : impl_(new Impl(exchange, pictures, ListenOnLoopback(listen))) {}

SheetServer::~SheetServer() = default;

std::string SheetServer::address() const {
  return "http://" + impl_->authority + "/" + impl_->token + "/";
}

}  // namespace printhost
