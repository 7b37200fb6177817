#include "sheets/dialog_handlers.h"

namespace kestrel {
namespace {

DialogState& StateOf(HWND dialog) {
  return *reinterpret_cast<DialogState*>(GetWindowLongPtrW(dialog, DWLP_USER));
}

}  // namespace

SuppressCommands::SuppressCommands(HWND dialog)
    : state_(StateOf(dialog)), previous_(state_.commandsSuppressed) {
  state_.commandsSuppressed = true;
}

}  // namespace kestrel
