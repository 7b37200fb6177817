// The module command: describes a Windows DLL, reading only the bytes of the file.
#include <sha2.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <iostream>
#include <span>

#include "host/commands/commands.h"
#include "host/driver_module.h"
#include "host/failure.h"
#include "host/record_json.h"
#include "host/utf8.h"
#include "platform/loader/image_file.h"

namespace printhost {
namespace {

using platform::ImageFile;

constexpr Option kModuleOptions[] = {kJsonOption};

std::string HexNumber(std::uint64_t value, int digits) {
  std::string text(static_cast<std::size_t>(digits), '0');
  for (auto digit = text.rbegin(); digit != text.rend(); ++digit, value /= 16)
    *digit = "0123456789abcdef"[value % 16];
  return text;
}

std::string Sha256(std::span<const std::byte> bytes) {
  char digits[SHA256_DIGEST_STRING_LENGTH];
  return SHA256Data(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(), digits);
}

std::string MachineText(WORD machine) {
  switch (machine) {
    case platform::kMachineX86:
      return "x86";
    case platform::kMachineX64:
      return "x86-64";
    case platform::kMachineArm64:
      return "ARM64";
    default:
      return "0x" + HexNumber(machine, 4);
  }
}

// Returns the name of a resource type; RT_… constants index the table.
std::string TypeText(const platform::ResourceName& type) {
  constexpr const char* kTypes[] = {
      "",       "cursor",          "bitmap",        "icon", "menu",
      "dialog", "string",          "fontdir",       "font", "accelerator",
      "data",   "messages",        "group cursor",  "",     "group icon",
      "",       "version",         "include",       "",     "plug and play",
      "vxd",    "animated cursor", "animated icon", "html", "manifest"};
  if (!type.text.empty()) return ToUtf8(type.text);
  if (type.id < std::size(kTypes) && *kTypes[type.id] != 0) return kTypes[type.id];
  return std::to_string(type.id);
}

// Returns the file version in the version resource; null without one.
Json VersionJson(const ImageFile& image) {
  for (const platform::ImageResource& each : image.resources) {
    if (each.type.id != platform::kResourceVersion || !each.type.text.empty()) continue;
    const platform::Bytes bytes = image.At(each.address, each.size);
    void* found = nullptr;
    UINT size = 0;
    WORD length = 0;
    if (bytes.size() >= 40) std::memcpy(&length, bytes.data(), sizeof(length));
    if (length == 0 || length > bytes.size() || !VerQueryValueW(bytes.data(), u"\\", &found, &size))
      break;
    VS_FIXEDFILEINFO fixed;
    std::memcpy(&fixed, found, sizeof(fixed));
    std::string text;
    for (const DWORD part : {fixed.dwFileVersionMS, fixed.dwFileVersionLS})
      text += '.' + std::to_string(HIWORD(part)) + '.' + std::to_string(LOWORD(part));
    return text.substr(1);
  }
  return nullptr;
}

// DependentLoadFlags: search the system directory only (LOAD_LIBRARY_SEARCH_SYSTEM32).
constexpr WORD kSearchSystemDirectory = 0x0800;

// Returns the protections that the file enables. "callTargets" is the number of functions that an
// indirect call may reach; null without Control Flow Guard.
Json HardeningJson(const ImageFile& image) {
  const auto has = [&](WORD flag) { return (image.dllCharacteristics & flag) != 0; };
  const platform::ImageLoadConfiguration none;
  const auto& config = image.loadConfiguration ? *image.loadConfiguration : none;
  const bool isWritableCode = std::ranges::any_of(
      image.sections, [](const auto& each) { return each.writable && each.executable; });
  return {{"anyAddress", has(platform::kDynamicBase) && !image.relocations.empty()},
          {"highEntropy", has(platform::kHighEntropyAddress)},
          {"noExecutableData", has(platform::kNxCompatible) && !isWritableCode},
          {"noExceptionHandlers", has(platform::kNoSeh)},
          {"stackProtector", config.securityCookie != 0},
          {"callTargets", config.callTargets ? Json(config.callTargets->size()) : Json()},
          {"shadowStacks", image.hasShadowStacks},
          {"systemLibrariesOnly", config.dependentLoadFlags == kSearchSystemDirectory}};
}

// Returns the name and identifier of the symbol file; null without symbols. The identifier, GUID
// and age, is written as the file's folder on a symbol server is named.
Json SymbolsJson(const ImageFile& image) {
  if (!image.symbols) return nullptr;
  // A GUID is numbers of 32, 16 and 16 bits, then eight bytes.
  const auto& guid = image.symbols->guid;
  DWORD first;
  WORD second, third;
  std::memcpy(&first, guid.data(), sizeof(first));
  std::memcpy(&second, guid.data() + 4, sizeof(second));
  std::memcpy(&third, guid.data() + 6, sizeof(third));
  std::string id = HexNumber(first, 8) + HexNumber(second, 4) + HexNumber(third, 4);
  for (std::size_t i = 8; i < guid.size(); ++i) id += HexNumber(guid[i], 2);
  std::string age = HexNumber(image.symbols->age, 8);
  age.erase(0, std::min(age.find_first_not_of('0'), age.size() - 1));
  id += age;
  for (char& digit : id) digit = static_cast<char>(std::toupper(static_cast<unsigned char>(digit)));
  return {{"file", image.symbols->file}, {"id", id}};
}

Json ModuleJson(const std::string& file, platform::Bytes bytes) {
  const ImageFile image(bytes);
  Json exports = Json::array(), imports = Json::object(), resources = Json::array(),
       sections = Json::array();
  for (const auto& each : image.exports) exports.push_back(each.name);
  for (const auto& library : image.imports) {
    Json& functions = imports[library.name] = Json::array();
    for (const auto& each : library.functions)
      functions.push_back(each.name.empty() ? Json() : Json(each.name));
  }
  for (const auto& each : image.resources) {
    Json name = each.name.text.empty() ? Json(each.name.id) : Json(ToUtf8(each.name.text));
    resources.push_back({{"type", TypeText(each.type)}, {"name", name}, {"size", each.size}});
  }
  for (const auto& each : image.sections) {
    const std::string protection = {each.readable ? 'r' : '-', each.writable ? 'w' : '-',
                                    each.executable ? 'x' : '-'};
    sections.push_back({{"name", each.name},
                        {"address", each.address},
                        {"size", each.size},
                        {"protection", protection}});
  }
  return {{"file", file},
          {"format", image.wide ? "PE32+" : "PE32"},
          {"machine", MachineText(image.machine)},
          {"version", VersionJson(image)},
          {"hardening", HardeningJson(image)},
          {"symbols", SymbolsJson(image)},
          {"exports", exports},
          {"imports", imports},
          {"resources", resources},
          {"sections", sections},
          {"sha256", Sha256(bytes)}};
}

// Returns a name from the file as it may be printed to a terminal.
std::string PrintableName(const Json& name) {
  if (!name.is_string()) return name.is_null() ? "by ordinal" : name.dump();
  return Printable(name.get<std::string>());
}

void PrintList(const std::string& title, const Json& items) {
  std::cout << title << " (" << items.size() << ")\n";
  for (const Json& item : items) std::cout << "  " << PrintableName(item) << '\n';
}

void Print(const Json& module) {
  for (const char* name : {"file", "format", "machine", "version", "sha256"})
    std::cout << name << '\t' << PrintableName(module[name].is_null() ? Json("none") : module[name])
              << '\n';
  std::cout << "symbols\t"
            << (module["symbols"].is_null() ? "none"
                                            : PrintableName(module["symbols"]["file"]) + ' ' +
                                                  PrintableName(module["symbols"]["id"]))
            << '\n';
  std::cout << "hardening\n";
  for (const auto& [property, value] : module["hardening"].items())
    std::cout << "  " << property << '\t'
              << (value.is_number() ? value.dump()
                  : value == true   ? "yes"
                                    : "no")
              << '\n';
  PrintList("exports", module["exports"]);
  for (const auto& [library, functions] : module["imports"].items())
    PrintList("imports from " + PrintableName(library), functions);
  std::cout << "resources (" << module["resources"].size() << ")\n";
  for (const Json& each : module["resources"])
    std::cout << "  " << PrintableName(each["type"]) << '\t' << PrintableName(each["name"]) << '\t'
              << each["size"] << " bytes\n";
  std::cout << "sections (" << module["sections"].size() << ")\n";
  for (const Json& each : module["sections"])
    std::cout << "  " << PrintableName(each["name"]) << '\t' << PrintableName(each["protection"])
              << '\t' << each["size"] << " bytes at 0x"
              << HexNumber(each["address"].get<DWORD>(), 8) << '\n';
}

int Show(Call& call) {
  const bool installed = call.arguments.positional().empty();
  const std::filesystem::path file = installed
                                         ? InstalledDriver(call.machine)
                                         : std::filesystem::path(call.arguments.positional()[0]);
  std::error_code ignored;
  if (!is_regular_file(file, ignored))
    throw Failure{kFailed, installed ? "no driver is installed; add a printer or name a file"
                                     : file.string() + " is no file that can be read"};
  const std::vector<std::byte> bytes = platform::ReadWhole(file);
  try {
    const Json module = ModuleJson(file.string(), bytes);
    if (call.json())
      call.PrintResult(module);
    else
      Print(module);
  } catch (const platform::ImageError& error) {
    throw Failure{kFailed, file.string() + ": " + error.what()};
  }
  return kDone;
}

}  // namespace

const Command kModule = {"module", "[FILE]", kModuleOptions,
                         "what the installed driver's file, or another DLL, holds", Show};

}  // namespace printhost
