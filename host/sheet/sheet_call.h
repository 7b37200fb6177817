// One call of a property sheet as an application makes it: what it brings, which sheet is shown,
// and what becomes of the settings. Whoever sits at the desk, a browser or a script, is not known
// here.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/commands/commands.h"
#include "host/driver_module.h"
#include "host/failure.h"
#include "host/record_json.h"

namespace printhost {

inline constexpr Option kKindOption = {"--kind", 1, "KIND",
                                       "document (default), advanced, user-default or printer"};
inline constexpr Option kInRecordOption = {"--in", 1, "FILE",
                                           "a settings record to start from; - is standard input"};
inline constexpr Option kOutRecordOption = {"--out", 1, "FILE",
                                            "where the resulting record is written"};

class SheetCall {
 public:
  // The call that the options --kind, --in and --out ask for; another kind where one is named.
  // Throws Failure when the record or the file that is to be written cannot serve.
  SheetCall(Call& call, std::u16string printer, std::string_view kind = {});

  std::string_view kind() const;
  LPWSTR printer() { return printer_.name(); }
  HMODULE module() const { return module_.handle(); }

  // Shows the sheet to the user at the desk: CPSUI_OK and above, CPSUI_CANCEL, or a failure below
  // 0.
  LONG Show();
  // Throws Failure when the printer was removed while the sheet stood open.
  void RequirePrinter();
  // Everything that outlives a confirmed sheet: the printer's default record and the file. The
  // sheet, shown again, starts from it.
  void Keep();
  // What stands against keeping, as far as can be told before; nothing is changed.
  std::optional<Failure> Hindrance() const;
  // What becomes of the settings on OK, as the end of a sentence that begins with "the settings
  // are".
  std::string Outcome();
  // The record that came back, as JSON; null for a sheet without one.
  Json Result() const;

 private:
  struct Kind;
  static const Kind kKinds[];
  static const Kind& FindKind(std::string_view name);

  bool IsPermitted();  // `machine --permission`
  LONG ShowDocument();
  LONG ShowAdvanced();
  LONG ShowUserDefault();
  LONG ShowPrinter();
  DEVMODEW* in() { return input_.empty() ? nullptr : AsDevMode(input_); }

  platform::Machine& machine_;
  const Kind& kind_;
  DriverModule module_;
  PrinterHandle printer_;
  bool printed_;     // whether the record goes to standard output
  std::string out_;  // the file that the record goes to; empty: none
  Record input_;     // empty: none; after Keep what came back
  Record output_;
};

// The failure of the computer's store, which says its reason in English alone.
Failure StoreFailure(std::string_view reason);

// What went wrong in a step.
template <typename Step>
std::optional<Failure> Trouble(const Step& step) {
  try {
    step();
    return std::nullopt;
  } catch (const Failure& failure) {
    return failure;
  } catch (const std::exception& failure) {
    return StoreFailure(failure.what());
  }
}

}  // namespace printhost
