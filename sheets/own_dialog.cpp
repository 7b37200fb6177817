#include "sheets/own_dialog.h"

namespace kestrel {
namespace {

ShownDialog& ShownBy(HWND dialog) {
  return *reinterpret_cast<ShownDialog*>(GetWindowLongPtrW(dialog, DWLP_USER));
}

}  // namespace

QuietDialog::QuietDialog(HWND dialog) : shown_(ShownBy(dialog)), before_(shown_.quiet) {
  shown_.quiet = true;
}

}  // namespace kestrel
