#include "paper/fields/controls.h"

#include <span>

#include "resources/resource.h"

namespace kestrel {
namespace {

constexpr int kOperationControls[] = {
    IDC_OPERATION_COLOR_BLACK,
    IDC_OPERATION_COLOR_SHADED,
    IDC_OPERATION_DITHER_NONE,
    IDC_OPERATION_DITHER_PHOTO_203,
    IDC_OPERATION_DITHER_PHOTO_305,
    IDC_OPERATION_DITHER_ILLUSTRATION,
    IDC_OPERATION_SPEED,
    IDC_OPERATION_SENSOR,
    IDC_OPERATION_FEED_MODE,
    IDC_OPERATION_COLOR_ADJUST,
    IDC_OPERATION_HALFTONE,
    IDC_OPERATION_SYNC_PRINT,
    IDC_OPERATION_COMPULSORY,
};

constexpr int kPaperControls[] = {
    IDC_PAPER_LIST,        IDC_PAPER_PORTRAIT,     IDC_PAPER_LANDSCAPE,  IDC_PAPER_FLIP,
    IDC_PAPER_VERT_BASE,   IDC_PAPER_HORZ_BASE,    IDC_PAPER_CUT_OFFSET, IDC_PAPER_PEEL_OFFSET,
    IDC_PAPER_TEAR_OFFSET, IDC_PAPER_PITCH_OFFSET, IDC_PAPER_REGISTER,   IDC_PAPER_EDIT,
    IDC_PAPER_DELETE,      IDC_PAPER_FREE_EDIT,    IDC_PAPER_REFERENCE,  IDC_PAPER_WHOLE_LABEL,
    IDC_PAPER_POSITION,
};

constexpr int kPaperRegisterControls[] = {
    IDC_PAPER_REGISTER_NAME,
    IDC_PAPER_REGISTER_GRADE,
    IDC_PAPER_REGISTER_THICKNESS,
    IDC_PAPER_REGISTER_MM,
    IDC_PAPER_REGISTER_INCH,
    IDC_PAPER_REGISTER_WIDTH,
    IDC_PAPER_REGISTER_LENGTH,
    IDC_PAPER_REGISTER_GAP,
    IDC_PAPER_REGISTER_EYE_MARK,
    IDC_PAPER_REGISTER_PRINTABLE_LEFT,
    IDC_PAPER_REGISTER_PRINTABLE_TOP,
    IDC_PAPER_REGISTER_PRINTABLE_WIDTH,
    IDC_PAPER_REGISTER_PRINTABLE_HEIGHT,
    IDC_PAPER_REGISTER_YOSHI,
    IDC_PAPER_REGISTER_REFERENCE,
    IDC_PAPER_REGISTER_WHOLE_LABEL,
};

constexpr int kDeviceControls[] = {
    IDC_DEVICE_MODE,
    IDC_DEVICE_DENSITY,
    IDC_DEVICE_QUERY_MODE,
    IDC_DEVICE_QUERY_VERSION,
};

constexpr int kCreateFontControls[] = {
    IDC_CREATE_FONT_DECO_NEW,      IDC_CREATE_FONT_DECO_EDIT,      IDC_CREATE_FONT_DECO_DELETE,
    IDC_CREATE_FONT_BAR_NEW,       IDC_CREATE_FONT_BAR_EDIT,       IDC_CREATE_FONT_BAR_DELETE,
    IDC_CREATE_FONT_BAR_REFERENCE, IDC_CREATE_FONT_DECO_REFERENCE,
};

constexpr int kUtilityControls[] = {
    IDC_UTILITY_SAVE_NAME, IDC_UTILITY_LOAD_NAME,   IDC_UTILITY_SAVE,
    IDC_UTILITY_LOAD,      IDC_UTILITY_SAVE_BROWSE, IDC_UTILITY_LOAD_BROWSE,
};

std::span<const int> LockedControlList(int dialogId) {
  switch (dialogId) {
    case IDD_OPERATION:
      return kOperationControls;
    case IDD_PAPER:
      return kPaperControls;
    case IDD_PAPER_REGISTER:
      return kPaperRegisterControls;
    case IDD_DEVICE:
      return kDeviceControls;
    case IDD_CREATE_FONT:
      return kCreateFontControls;
    case IDD_UTILITY:
      return kUtilityControls;
    default:
      return {};
  }
}

}  // namespace

void LockControls(HWND dialog, int dialogId, bool permission) {
  if (permission) return;
  for (int control : LockedControlList(dialogId)) {
    // The templates lack some of the controls.
    if (HWND window = GetDlgItem(dialog, control)) EnableWindow(window, FALSE);
  }
}

void HideControl(HWND dialog, int control) {
  HWND window = GetDlgItem(dialog, control);
  if (window == nullptr) return;
  SetWindowPos(window, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  EnableWindow(window, FALSE);
}

void MoveFocus(HWND dialog, int control) {
  HWND window = GetDlgItem(dialog, control);
  if (window != nullptr) {
    SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(window), TRUE);
  }
}

}  // namespace kestrel
