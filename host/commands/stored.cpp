// The data and registry commands.
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <iostream>

#include "host/commands/commands.h"
#include "host/failure.h"
#include "host/hex.h"
#include "host/record_json.h"
#include "host/utf8.h"

namespace printhost {
namespace {

constexpr Option kStoredOptions[] = {kJsonOption};

std::string TypeName(DWORD type) {
  constexpr const char* kTypes[] = {"REG_NONE", "REG_SZ", "REG_EXPAND_SZ", "REG_BINARY",
                                    "REG_DWORD"};
  return type < std::size(kTypes) ? kTypes[type] : std::to_string(type);
}

Json ValueJson(std::u16string_view name, const platform::DataValue& data) {
  Json json = {
      {"type", TypeName(data.type)}, {"size", data.bytes.size()}, {"bytes", Hex(data.bytes)}};
  if (data.type == REG_SZ) {
    std::u16string text(data.bytes.size() / sizeof(char16_t), u'\0');
    if (!text.empty()) std::memcpy(text.data(), data.bytes.data(), text.size() * sizeof(char16_t));
    json["text"] = ToUtf8(std::u16string_view(text).substr(0, text.find(u'\0')));
  } else if (data.type == REG_DWORD && data.bytes.size() == sizeof(DWORD)) {
    DWORD number = 0;
    std::memcpy(&number, data.bytes.data(), sizeof number);
    json["number"] = number;
  } else if (name == u"Private DevMode") {
    json["settings"] = PrinterPartJson(data.bytes);
  }
  return json;
}

// Prints a line for a value: name, type, size, and its text, number or bytes.
void PrintValue(std::u16string_view name, const platform::DataValue& data) {
  const Json json = ValueJson(name, data);
  std::cout << Printable(ToUtf8(name)) << '\t' << json["type"].get<std::string>() << '\t'
            << json["size"] << '\t';
  if (json.contains("text"))
    std::cout << Printable(json["text"].get<std::string>()) << '\n';
  else if (json.contains("number"))
    std::cout << json["number"] << '\n';
  else
    std::cout << json["bytes"].get<std::string>() << '\n';
}

int PrintValues(const Call& call, const std::map<std::u16string, platform::DataValue>& values) {
  Json json = Json::object();
  for (const auto& [name, data] : values) {
    json[ToUtf8(name)] = ValueJson(name, data);
    if (!call.json()) PrintValue(name, data);
  }
  return call.json() ? call.PrintResult(json) : kDone;
}

int Data(Call& call) {
  const std::u16string printer = call.PrinterArgument();
  if (call.arguments.positional().size() == 1)
    return PrintValues(call, call.machine.AllData(printer));
  const std::u16string name = call.TextArgument(1);
  const auto data = call.machine.Data(printer, name);
  if (!data)
    throw Failure{kFailed, "\"" + ToUtf8(printer) + "\" has no value \"" + ToUtf8(name) + "\""};
  if (call.json()) return call.PrintResult(ValueJson(name, *data));
  PrintValue(name, *data);
  return kDone;
}

// Returns a key relative to HKEY_LOCAL_MACHINE: strips "HKEY_LOCAL_MACHINE\" or "HKLM\" from it.
std::u16string StripLocalMachine(const std::u16string& key) {
  const std::size_t end = std::min(key.find(u'\\'), key.size());
  const std::u16string root = key.substr(0, end);
  if (lstrcmpiW(root.c_str(), u"HKLM") != 0 && lstrcmpiW(root.c_str(), u"HKEY_LOCAL_MACHINE") != 0)
    return key;
  return key.substr(std::min(end + 1, key.size()));
}

int Registry(Call& call) {
  const std::u16string key = call.arguments.positional().empty()
                                 ? std::u16string()
                                 : StripLocalMachine(call.TextArgument(0));
  const auto values = call.machine.AllRegistry(key);
  if (values.empty() && !key.empty()) {
    HKEY open = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, KEY_READ, &open) != ERROR_SUCCESS)
      throw Failure{kFailed, "HKEY_LOCAL_MACHINE has no key \"" + ToUtf8(key) + "\""};
    RegCloseKey(open);
  }
  return PrintValues(call, values);
}

}  // namespace

const Command kData = {"data", "NAME [VALUE]", kStoredOptions,
                       "a printer's data: name, type, size, bytes", Data};
const Command kRegistry = {"registry", "[KEY]", kStoredOptions,
                           "the registry's values at and below a key of HKEY_LOCAL_MACHINE",
                           Registry};

}  // namespace printhost
