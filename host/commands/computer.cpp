// The machine and device commands: the simulated computer and label printer.
#include <algorithm>
#include <charconv>
#include <iostream>
#include <optional>

#include "companions/simulated_device.h"
#include "host/commands/commands.h"
#include "host/failure.h"
#include "host/record_json.h"
#include "host/utf8.h"

namespace printhost {
namespace {

using companions::DeviceReply;
using platform::OsVersion;

constexpr Option kMachineOptions[] = {
    {"--os", 1, "VERSION", "5.0 … 10.0, nt3.51, nt4, 95, 98 or me, as a workstation"},
    {"--server", 0, "", "make it a server"},
    {"--domain-controller", 0, "", "make it a domain controller"},
    {"--administrator", 1, "yes|no", "whether the person at the desk is an administrator"},
    {"--high-contrast", 1, "yes|no", "whether the user's colours are light text on black"},
    {"--permission", 2, "NAME yes|no", "whether the user may change a printer's settings"},
    {"--ansi-page", 1, "932|936|949|1252|65001", "the ANSI code page of applications"},
    {"--code-page-932", 1, "yes|no",
     "whether page 932 is installed; as the ANSI page it always is"},
    {"--hide-extensions", 1, "yes|no", "whether file names are displayed without extensions"},
    kJsonOption};
constexpr Option kDeviceOptions[] = {
    {"--mode", 1, "tear-off|continuous|peel", "the printer's mode, or any code from 0 to 255"},
    {"--density", 1, "203|305", "dots per inch of its head"},
    {"--firmware", 1, "TEXT", "the firmware's version"},
    {"--font", 1, "TEXT", "the resident fonts' version"},
    {"--offline", 1, "yes|no", "whether every call to it fails"},
    {"--answer", 1, "normal|silent|short|overlong", "how it replies"},
    kJsonOption};

struct NamedOs {
  std::string_view name;
  OsVersion os;
};
constexpr NamedOs kNamedOs[] = {
    {"95", {.major = 4, .minor = 0, .platformId = 1}},
    {"98", {.major = 4, .minor = 10, .platformId = 1}},
    {"me", {.major = 4, .minor = 90, .platformId = 1}},
    {"nt3.51", {.major = 3, .minor = 51}},
    {"nt4", {.major = 4, .minor = 0}},
};

constexpr const char* kModes[] = {"tear-off", "continuous", "peel"};
constexpr const char* kAnswers[] = {"normal", "silent", "short", "overlong"};

// Parses a number of decimal digits; returns nothing for any other text.
std::optional<DWORD> ParseNumber(std::string_view text) {
  DWORD number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

OsVersion ParseOs(const std::string& text) {
  const auto named = std::ranges::find(kNamedOs, std::string_view(text), &NamedOs::name);
  if (named != std::end(kNamedOs)) return named->os;
  const std::size_t dot = std::min(text.find('.'), text.size());
  const auto major = ParseNumber(text.substr(0, dot));
  const auto minor = ParseNumber(text.substr(std::min(dot + 1, text.size())));
  if (!major || !minor)
    throw Failure{kUsage, "--os takes a version like 6.1, or nt3.51, nt4, 95, 98 or me"};
  return {.major = *major, .minor = *minor};
}

std::string OsText(const OsVersion& os) {
  for (const NamedOs& named : kNamedOs) {
    if (named.os.major == os.major && named.os.minor == os.minor &&
        named.os.platformId == os.platformId)
      return std::string(named.name);
  }
  return std::to_string(os.major) + '.' + std::to_string(os.minor);
}

// Returns the index of a word in a list, or the number of words when it is not in the list.
template <std::size_t kCount>
std::size_t IndexOf(const char* const (&words)[kCount], std::string_view word) {
  return static_cast<std::size_t>(std::ranges::find(words, word) - std::begin(words));
}

UINT ParseAnsiPage(const std::string& text) {
  constexpr UINT kPages[] = {932, 936, 949, 1252, CP_UTF8};
  const auto page = ParseNumber(text);
  if (!page || std::ranges::find(kPages, *page) == std::end(kPages))
    throw Failure{kUsage, "--ansi-page takes 932, 936, 949, 1252 or 65001 (UTF-8)"};
  return *page;
}

// Validates all options, then applies them.
void ApplyMachineOptions(platform::Machine& machine, const Arguments& arguments) {
  const auto yesOrNo = [&](std::string_view option, std::size_t n = 0) {
    return arguments.Has(option) ? std::optional(ParseYesOrNo(option, arguments.Value(option, n)))
                                 : std::nullopt;
  };
  const bool isServer = arguments.Has("--server");
  const bool isDomainController = arguments.Has("--domain-controller");
  if (isServer && isDomainController)
    throw Failure{kUsage, "--server and --domain-controller exclude one another"};
  OsVersion os = machine.os();
  if (arguments.Has("--os")) os = ParseOs(arguments.Value("--os"));
  if (isServer) os.productType = VER_NT_SERVER;
  if (isDomainController) os.productType = VER_NT_DOMAIN_CONTROLLER;
  const auto administrator = yesOrNo("--administrator");
  const auto highContrast = yesOrNo("--high-contrast");
  const auto permission = yesOrNo("--permission", 1);
  const std::u16string printer = FromUtf8(arguments.Value("--permission"));
  if (permission) RequirePrinter(machine, printer);
  std::optional<UINT> ansiPage;
  if (arguments.Has("--ansi-page")) ansiPage = ParseAnsiPage(arguments.Value("--ansi-page"));
  const auto codePage932 = yesOrNo("--code-page-932");
  const auto hideExtensions = yesOrNo("--hide-extensions");
  if (isServer || isDomainController || arguments.Has("--os")) machine.SetOs(os);
  if (administrator) machine.SetAdministrator(*administrator);
  if (highContrast) machine.SetHighContrast(*highContrast);
  if (permission) machine.SetPermission(printer, *permission, *permission);
  if (ansiPage) machine.SetAnsiPage(*ansiPage);
  if (codePage932) machine.SetCodePage932(*codePage932);
  if (hideExtensions) machine.SetHidesExtensions(*hideExtensions);
}

int ShowMachine(Call& call) {
  ApplyMachineOptions(call.machine, call.arguments);
  const OsVersion os = call.machine.os();
  Json permissions = Json::object();
  for (const platform::PrinterSetup& printer : call.machine.Printers())
    permissions[ToUtf8(printer.name)] = printer.writable && printer.administer;
  const char* product = os.productType == VER_NT_SERVER              ? "server"
                        : os.productType == VER_NT_DOMAIN_CONTROLLER ? "domain controller"
                                                                     : "workstation";
  return call.PrintResult(
      {{"os", OsText(os)},
       {"product", product},
       {"administrator", call.machine.administrator()},
       {"highContrast", call.machine.highContrast()},
       {"permissions", permissions},
       {"ansiPage", call.machine.ansiPage()},
       {"codePage932", call.machine.codePage932()},
       {"hideExtensions", call.machine.hidesExtensions()},
       {"windows", call.machine.HostPath(call.machine.windowsDirectory()).string()},
       {"drivers", call.machine.HostPath(call.machine.driverDirectory()).string()}});
}

int Device(Call& call) {
  const std::u16string name = call.PrinterArgument();
  const Arguments& arguments = call.arguments;
  companions::SimulatedDevice device = companions::LoadSimulatedDevice(name);
  if (arguments.Has("--mode")) {
    const std::string mode = arguments.Value("--mode");
    const std::size_t index = IndexOf(kModes, mode);
    // The device reports its mode in one byte. An invalid number is rejected like a larger one.
    device.mode =
        index < std::size(kModes) ? static_cast<DWORD>(index) : ParseNumber(mode).value_or(0x100);
    if (device.mode > 0xFF)
      throw Failure{kUsage, "--mode takes tear-off, continuous, peel or a code from 0 to 255"};
  }
  if (arguments.Has("--density")) {
    device.density = ParseNumber(arguments.Value("--density")).value_or(0);
    if (device.density != 203 && device.density != 305)
      throw Failure{kUsage, "--density takes 203 or 305"};
  }
  if (arguments.Has("--answer")) {
    const std::size_t index = IndexOf(kAnswers, arguments.Value("--answer"));
    if (index == std::size(kAnswers))
      throw Failure{kUsage, "--answer takes normal, silent, short or overlong"};
    device.reply = static_cast<DeviceReply>(index);
  }
  if (arguments.Has("--firmware")) device.firmware = FromUtf8(arguments.Value("--firmware"));
  if (arguments.Has("--font")) device.font = FromUtf8(arguments.Value("--font"));
  if (arguments.Has("--offline"))
    device.offline = ParseYesOrNo("--offline", arguments.Value("--offline"));
  const bool changed = std::ranges::any_of(kDeviceOptions, [&](const Option& option) {
    return option.values > 0 && arguments.Has(option.name);
  });
  if (changed) companions::SaveSimulatedDevice(name, device);
  return call.PrintResult({{"mode", device.mode < std::size(kModes) ? kModes[device.mode]
                                                                    : std::to_string(device.mode)},
                           {"density", device.density},
                           {"firmware", ToUtf8(device.firmware)},
                           {"font", ToUtf8(device.font)},
                           {"offline", device.offline},
                           {"answer", kAnswers[static_cast<std::size_t>(device.reply)]}});
}

}  // namespace

const Command kMachine = {"machine", "", kMachineOptions,
                          "shows or sets what the computer is and who is asking", ShowMachine};
const Command kDevice = {"device", "NAME", kDeviceOptions,
                         "shows or sets the simulated printer behind the device library", Device};

}  // namespace printhost
