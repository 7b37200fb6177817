// The detail dialog of a barcode kind.
#pragma once

#include <windows.h>

#include <span>

#include "companions/barcode_parameters.h"

namespace companions {

// Shows the kind's parameters in a modal dialog over the owner. True when the user confirmed: the
// block then holds the new values, otherwise it is untouched.
bool EditBarcodeDetail(const BarcodeKind& kind, const BarcodeLibInfo& info, std::span<BYTE> block,
                       HWND owner);

}  // namespace companions
