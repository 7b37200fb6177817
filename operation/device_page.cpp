// The device page: the printer's mode and head density, and the queries to the printer.
#include "driver/text.h"
#include "operation/device_library.h"
#include "operation/operation_options.h"
#include "paper/fields/controls.h"
#include "paper/fields/help_text.h"
#include "paper/fields/immediate_list.h"
#include "resources/resource.h"
#include "sheets/messages.h"
#include "sheets/page_handlers.h"
#include "sheets/page_procs.h"
#include "sheets/page_services.h"
#include "sheets/session_fonts.h"

namespace kestrel {
namespace {

constexpr HelpRow kHelp[] = {
    Plain(IDC_DEVICE_MODE, IDS_HELP_DEVICE_MODE),
    Plain(IDC_DEVICE_QUERY_MODE, IDS_HELP_DEVICE_QUERY_MODE),
    Plain(IDC_DEVICE_QUERY_VERSION, IDS_HELP_DEVICE_QUERY_VERSION),
};

constexpr uint8_t kDensity203Code = 0;

void ShowMode(HWND page, const DriverUiData& session) {
  const PrinterSettingsPart& printer = session.settings->Printer;
  FillOptionList(page, IDC_DEVICE_MODE, PrinterModeOptions(), printer.Mecha);
  const OptionTable& densities = DensityOptions();
  SetDlgItemTextW(page, IDC_DEVICE_DENSITY,
                  densities.entries[OptionIndex(densities, printer.HeadDensity)].text);
}

void FillPage(HWND page, DriverUiData& session) {
  SetDlgItemTextW(page, IDC_HELP_TEXT, kFirstHelpPosition);
  ShowMode(page, session);
  EnableWindow(GetDlgItem(page, IDC_DEVICE_DENSITY), FALSE);
  LockControls(page, IDD_DEVICE, session.permission != FALSE);
}

// Shows a warning that a value of the printer changed. Its text is that of `what` followed by that
// of `check`.
void WarnOfChange(HWND page, UINT what, UINT check) {
  WCHAR caption[128];
  GetWindowTextW(page, caption, 128);
  WCHAR text[2 * kMessageLength];
  const int length = LoadMessageText(what, text, kMessageLength);
  LoadMessageText(check, text + length, kMessageLength);
  MessageBoxW(page, text, caption, MB_ICONEXCLAMATION);
}

void ShowLibraryError(HWND page, DeviceQuery result) {
  constexpr WCHAR kCaption[] = TEXT("DeviceDlgFunc");
  if (result == DeviceQuery::kNoLibrary) {
    MessageBoxW(page, TEXT("LoadLibrary Error!"), kCaption, MB_OK);
  } else if (result == DeviceQuery::kNoEntryPoint) {
    MessageBoxW(page, TEXT("GetProcAddress Error!"), kCaption, MB_OK);
  }
}

// Copies the reply to the settings. Unknown codes leave their field unchanged.
void ApplyDeviceMode(PrinterSettingsPart& printer, const DeviceMode& reply) {
  if (reply.densityCode == kDensity203Code) printer.HeadDensity = 203;
  if (reply.modeCode <= kPeelMode) printer.Mecha = reply.modeCode;
}

void QueryMode(HWND page, DriverUiData& session) {
  PrinterSettingsPart& printer = session.settings->Printer;
  const uint16_t density = printer.HeadDensity;
  const uint16_t mode = printer.Mecha;
  SetWaitCursor(true);
  DeviceMode reply = {};
  const DeviceQuery result = QueryDeviceMode(session.printer, session.printerName, reply);
  ShowLibraryError(page, result);
  if (result == DeviceQuery::kSucceeded) {
    ApplyDeviceMode(printer, reply);
    MarkPageChanged(page);
  }
  SetWaitCursor(false);
  if (result != DeviceQuery::kSucceeded) {
    ShowMessage(page, IDS_QUERY_FAILED, MB_ICONHAND);
    return;
  }
  if (printer.HeadDensity != density) {
    WarnOfChange(page, IDS_DENSITY_CHANGED, IDS_DENSITY_CHANGED_CHECK);
  }
  if (printer.Mecha != mode) WarnOfChange(page, IDS_MODE_CHANGED, IDS_MODE_CHANGED_CHECK);
  ShowMode(page, session);
}

void QueryVersions(HWND page, DriverUiData& session) {
  SetWaitCursor(true);
  DeviceVersions versions = {};
  const DeviceQuery result = QueryDeviceVersions(session.printer, session.printerName, versions);
  if (result == DeviceQuery::kSucceeded) {
    SetDlgItemTextW(page, IDC_DEVICE_FIRMWARE_VERSION, versions.firmware);
    SetDlgItemTextW(page, IDC_DEVICE_FONT_VERSION, versions.font);
  } else {
    ShowMessage(page, IDS_QUERY_FAILED, MB_ICONHAND);
  }
  SetWaitCursor(false);
}

void OnModeList(HWND page, DriverUiData& session, int notification) {
  DevicePageState& state = session.device;
  uint16_t& mode = session.settings->Printer.Mecha;
  switch (OnListNotified(page, IDC_DEVICE_MODE, notification, state.list)) {
    case ListAction::kOpened:
      state.modeBefore = mode;
      return;
    case ListAction::kChoose:
      mode = static_cast<uint16_t>(SelectedOption(page, IDC_DEVICE_MODE, PrinterModeOptions()));
      MarkPageChanged(page);
      return;
    case ListAction::kRestore:
      mode = state.modeBefore;
      return;
    case ListAction::kNone:
      return;
  }
}

void OnCommand(HWND page, DriverUiData& session, int control, int notification) {
  const bool list = control == IDC_DEVICE_MODE;
  if (list || notification == BN_CLICKED) {
    ShowHelp(page, kHelp, control, IDC_HELP_TEXT, kPlain, session.settings->Printer.HeadDensity);
  }
  if (list) {
    OnModeList(page, session, notification);
  } else if (control == IDC_DEVICE_QUERY_MODE && notification == BN_CLICKED) {
    QueryMode(page, session);
  } else if (control == IDC_DEVICE_QUERY_VERSION && notification == BN_CLICKED) {
    QueryVersions(page, session);
  }
}

constexpr PageHandlers kPage = {
    .create = FillPage, .activate = FillPage, .command = OnCommand, .apply = SaveFontsThenConfirm};

}  // namespace

INT_PTR CALLBACK DevicePageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
  return HandlePageMessage(kPage, page, message, wParam, lParam);
}

}  // namespace kestrel
