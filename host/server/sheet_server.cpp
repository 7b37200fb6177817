#include "host/server/sheet_server.h"

#include <algorithm>
#include <charconv>

#include "host/server/http_server.h"
#include "host/server/web_files.h"
#include "host/sheet/actions.h"
#include "host/sheet/picture.h"

namespace printhost {
namespace {

std::string Event(const std::string& data) { return "data: " + data + "\n\n"; }

}  // namespace

struct SheetServer::Impl final : HttpSite {
  Impl(Exchange& sheetExchange, HMODULE module, const std::string& listen)
      : exchange(sheetExchange), pictures(module), server(*this, listen) {
    exchange.SetSnapshotListener([this] { server.NotifyStreams(); });
  }
  ~Impl() override { exchange.SetSnapshotListener(nullptr); }

  HttpResponse Respond(const HttpRequest& request) override {
    const bool isAction = request.name == "action";
    if (request.method != (isAction ? "POST" : "GET")) return {.status = 405};
    if (isAction) return QueueAction(request);
    // "retry" lets a page that lost its stream reconnect after 500 ms.
    if (request.name == "events")
      return {.type = "text/event-stream", .body = "retry: 500\n\n", .isEventStream = true};
    const auto file = std::ranges::find(WebFiles(), request.name, &WebFile::name);
    if (file != WebFiles().end()) return {.type = file->type, .body = std::string(file->bytes)};
    return Picture(request.name);
  }

  HttpResponse Picture(std::string_view name) const {
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

  HttpResponse QueueAction(const HttpRequest& request) {
    if (!request.contentType.starts_with("application/json"))
      return {.status = 415, .body = "An action is application/json."};
    Json action = Json::parse(request.body, nullptr, false);
    if (const std::string error = FindActionError(action); !error.empty())
      return {.status = 400, .body = error};
    if (!exchange.Put(std::move(action)))
      return {.status = 503, .body = "Too many actions wait already; try again."};
    return {.status = 204};
  }

  void OnStreamOpened() override { exchange.OnStreamOpened(); }
  void OnStreamClosed(bool complete) override { exchange.OnStreamClosed(complete); }
  std::string NextEvent(std::uint64_t& seen, bool& last) override {
    std::string snapshot;
    return exchange.NextSnapshot(seen, snapshot, last) ? Event(snapshot) : std::string();
  }
  std::string EvictionEvent() override { return Event(R"({"end":"elsewhere"})"); }

  Exchange& exchange;
  HMODULE pictures;
  HttpServer server;
};

SheetServer::SheetServer(Exchange& exchange, const std::string& listen, HMODULE pictures)
    : impl_(new Impl(exchange, pictures, listen)) {}

SheetServer::~SheetServer() = default;

std::string SheetServer::address() const { return impl_->server.address(); }

}  // namespace printhost
