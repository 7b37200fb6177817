// The module's property sheets, shown by the system's own library.
#pragma once

#include "try/arguments.h"
#include "try/module.h"
#include "try/output.h"

namespace kestrel_try {

enum class SheetEnd { kOk, kCancelled, kFailed };

// Returns true for the kinds of sheets that store settings of the printer on OK.
inline bool StoresOnOk(Sheet sheet) {
  return sheet == Sheet::kUserDefault || sheet == Sheet::kPrinter;
}

// Shows a sheet until the user closes it and writes its result as one call. mayStore: the
// printer was opened with the right to change it, which only the kinds that store need. The
// registry value SyncPrint, which the operation page writes when the user leaves it, is
// restored unless the user confirms such a kind.
SheetEnd ShowSheet(const Target& target, Sheet sheet, bool mayStore, Json& json);

}  // namespace kestrel_try
