// The caps command: queries every capability index.
#include <algorithm>
#include <cstring>
#include <iostream>
#include <span>
#include <vector>

#include "driver/settings_block.h"
#include "host/commands/commands.h"
#include "host/driver_module.h"
#include "host/failure.h"
#include "host/record_json.h"
#include "host/utf8.h"

namespace printhost {
namespace {

constexpr Option kCapsOptions[] = {kJsonOption};

// What DeviceCapabilities writes for an index, as documented.
enum class Output { kNone, kWords, kDwords, kPoint, kPoints, kNames24, kNames64 };

struct Capability {
  WORD index;
  const char* name;
  Output output;
};

constexpr Capability kCapabilities[] = {
    {1, "DC_FIELDS", Output::kNone},
    {2, "DC_PAPERS", Output::kWords},
    {3, "DC_PAPERSIZE", Output::kPoints},
    {4, "DC_MINEXTENT", Output::kPoint},
    {5, "DC_MAXEXTENT", Output::kPoint},
    {6, "DC_BINS", Output::kWords},
    {7, "DC_DUPLEX", Output::kNone},
    {8, "DC_SIZE", Output::kNone},
    {9, "DC_EXTRA", Output::kNone},
    {10, "DC_VERSION", Output::kNone},
    {11, "DC_DRIVER", Output::kNone},
    {12, "DC_BINNAMES", Output::kNames24},
    {13, "DC_ENUMRESOLUTIONS", Output::kPoints},
    {14, "DC_FILEDEPENDENCIES", Output::kNames64},
    {15, "DC_TRUETYPE", Output::kNone},
    {16, "DC_PAPERNAMES", Output::kNames64},
    {17, "DC_ORIENTATION", Output::kNone},
    {18, "DC_COPIES", Output::kNone},
    {19, "DC_BINADJUST", Output::kNone},
    {20, "DC_EMF_COMPLIANT", Output::kNone},
    {21, "DC_DATATYPE_PRODUCED", Output::kNone},
    {22, "DC_COLLATE", Output::kNone},
    {23, "DC_MANUFACTURER", Output::kNone},
    {24, "DC_MODEL", Output::kNone},
    {25, "DC_PERSONALITY", Output::kNames64},
    {26, "DC_PRINTRATE", Output::kNone},
    {27, "DC_PRINTRATEUNIT", Output::kNone},
    {28, "DC_PRINTERMEM", Output::kNone},
    {29, "DC_MEDIAREADY", Output::kNames64},
    {30, "DC_STAPLE", Output::kNone},
    {31, "DC_PRINTRATEPPM", Output::kNone},
    {32, "DC_COLORDEVICE", Output::kNone},
    {33, "DC_NUP", Output::kDwords},
    {34, "DC_MEDIATYPENAMES", Output::kNames64},
    {35, "DC_MEDIATYPES", Output::kDwords},
};

template <typename Item>
std::vector<Item> Items(std::span<const std::byte> bytes, std::size_t count) {
  std::vector<Item> items(std::min(count, bytes.size() / sizeof(Item)));
  if (!items.empty()) std::memcpy(items.data(), bytes.data(), items.size() * sizeof(Item));
  return items;
}

Json Names(std::span<const std::byte> bytes, std::size_t count, std::size_t units) {
  const std::vector<char16_t> text = Items<char16_t>(bytes, count * units);
  Json names = Json::array();
  for (std::size_t i = 0; i + units <= text.size(); i += units) {
    const std::u16string_view name(text.data() + i, units);
    names.push_back(ToUtf8(name.substr(0, name.find(u'\0'))));
  }
  return names;
}

Json Points(std::span<const std::byte> bytes, std::size_t count) {
  Json points = Json::array();
  for (const POINT& point : Items<POINT>(bytes, count)) points.push_back({point.x, point.y});
  return points;
}

Json Decode(Output output, std::span<const std::byte> bytes, LONG result) {
  const auto count = static_cast<std::size_t>(std::max<LONG>(result, 0));
  switch (output) {
    case Output::kWords:
      return Items<WORD>(bytes, count);
    case Output::kDwords:
      return Items<DWORD>(bytes, count);
    case Output::kPoint:
      return Points(bytes, 1)[0];
    case Output::kPoints:
      return Points(bytes, count);
    case Output::kNames24:
      return Names(bytes, count, 24);
    case Output::kNames64:
      return Names(bytes, count, 64);
    case Output::kNone:
      break;
  }
  return nullptr;
}

int Caps(Call& call) {
  PrinterHandle printer(call.PrinterArgument());
  DriverModule module(call.machine);
  Json json = Json::object();
  // Large enough for the most entries possible: another process may register papers meanwhile.
  std::vector<std::byte> bytes((kestrel::kPaperCapacity + 1) * 64 * sizeof(char16_t));
  for (const Capability& capability : kCapabilities) {
    void* output = capability.output == Output::kNone ? nullptr : bytes.data();
    const auto result = static_cast<LONG>(module.deviceCapabilities(
        printer.get(), printer.name(), capability.index, output, nullptr));
    // The driver writes nothing for an unsupported index or an empty list.
    const bool hasOutput = output != nullptr && result > 0;
    json[capability.name] = {
        {"result", result},
        {"output", hasOutput ? Decode(capability.output, bytes, result) : Json()}};
  }
  if (call.json()) return call.PrintResult(json);
  for (const auto& [name, value] : json.items()) {
    std::cout << name << '\t' << value["result"];
    if (!value["output"].is_null()) std::cout << '\t' << Printable(value["output"].dump());
    std::cout << '\n';
  }
  return kDone;
}

}  // namespace

const Command kCaps = {"caps", "NAME", kCapsOptions, "every capability index with its answer",
                       Caps};

}  // namespace printhost
