// One call of a property sheet as an application makes it: the input record, the kind of sheet and
// where the resulting settings are stored. It works with any user of the desk.
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
  // Reads --kind, --in and --out; a kind that is not empty overrides --kind. Throws Failure when
  // the record is not valid or the output file cannot be written.
  SheetCall(Call& call, std::u16string printer, std::string_view kind = {});

  std::string_view kind() const;
  LPWSTR printer() { return printer_.name(); }
  HMODULE module() const { return module_.handle(); }

  // Shows the sheet to the user at the desk: CPSUI_OK and above, CPSUI_CANCEL, or a failure below
  // 0.
  LONG Show();
  // Throws Failure when the printer was removed while the sheet was open.
  void RequirePrinter();
  // Stores the printer's default record and writes the output file after OK. A sheet that is shown
  // again starts from these settings. Throws Failure.
  void Save();
  // Returns the error that Save would have, as far as that can be found without changing anything.
  std::optional<Failure> SaveError() const;
  // Returns what OK does with the settings, as the end of a sentence that begins "The settings
  // are".
  std::string DescribeOutcome();
  // Returns the resulting record as JSON; null for a sheet without a record.
  Json Result() const;

 private:
  struct Kind;
  static const Kind kKinds[];
  static const Kind& FindKind(std::string_view name);

  bool HasPermission();  // as `machine --permission` set it
  LONG ShowDocument();
  LONG ShowAdvanced();
  LONG ShowUserDefault();
  LONG ShowPrinter();
  DEVMODEW* input() { return input_.empty() ? nullptr : AsDevMode(input_); }

  platform::Machine& machine_;
  const Kind& kind_;
  DriverModule module_;
  PrinterHandle printer_;
  bool printsJson_;  // the record is written to standard output
  std::string out_;  // the output file; empty: none
  Record input_;     // empty: none; after Save the resulting record
  Record output_;
};

// Returns the Failure for an error of the computer's store.
Failure StoreFailure(std::string_view reason);

// Runs a step and returns the Failure that it threw, or nothing.
template <typename Step>
std::optional<Failure> CatchFailure(const Step& step) {
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
