// The operation page: print speed, sensor, feed mode, colour, dithering, precedence of the driver's
// settings, and page-by-page confirmation.
#include "driver/text.h"
#include "operation/administrator.h"
#include "operation/device_settings.h"
#include "operation/halftone_ui.h"
#include "operation/operation_options.h"
#include "paper/fields/controls.h"
#include "paper/fields/help_text.h"
#include "resources/resource.h"
#include "sheets/page_handlers.h"
#include "sheets/page_procs.h"
#include "sheets/page_services.h"
#include "sheets/session_fonts.h"

namespace kestrel {
namespace {

constexpr HelpRow kHelp[] = {
    Plain(IDC_OPERATION_COLOR_BLACK, IDS_HELP_OPERATION_COLOR_BLACK),
    Plain(IDC_OPERATION_COLOR_SHADED, IDS_HELP_OPERATION_COLOR_SHADED),
    Plain(IDC_OPERATION_DITHER_NONE, IDS_HELP_OPERATION_DITHER_NONE),
    Plain(IDC_OPERATION_DITHER_PHOTO_203, IDS_HELP_OPERATION_DITHER_PHOTO_203),
    Plain(IDC_OPERATION_DITHER_PHOTO_305, IDS_HELP_OPERATION_DITHER_PHOTO_305),
    Plain(IDC_OPERATION_DITHER_ILLUSTRATION, IDS_HELP_OPERATION_DITHER_ILLUSTRATION),
    Plain(IDC_OPERATION_SPEED, IDS_HELP_OPERATION_SPEED),
    Plain(IDC_OPERATION_SENSOR, IDS_HELP_OPERATION_SENSOR),
    Plain(IDC_OPERATION_COLOR_ADJUST, IDS_HELP_OPERATION_COLOR_ADJUST),
    Plain(IDC_OPERATION_HALFTONE, IDS_HELP_OPERATION_HALFTONE),
    Plain(IDC_OPERATION_SYNC_PRINT, IDS_HELP_OPERATION_SYNC_PRINT),
    Plain(IDC_OPERATION_COMPULSORY, IDS_HELP_OPERATION_COMPULSORY),
};

// Help for the feed-mode list, by PrinterMode.
constexpr HelpRow kFeedModeHelp[] = {
    Plain(IDC_OPERATION_FEED_MODE, IDS_HELP_OPERATION_FEED_TEAR_OFF),
    Plain(IDC_OPERATION_FEED_MODE, IDS_HELP_OPERATION_FEED_CONTINUOUS),
    Plain(IDC_OPERATION_FEED_MODE, IDS_HELP_OPERATION_FEED_PEEL),
};

// By the value of Dither. When none is checked, Dither becomes the last value.
constexpr int kDitherRadios[] = {IDC_OPERATION_DITHER_NONE, IDC_OPERATION_DITHER_PHOTO_203,
                                 IDC_OPERATION_DITHER_PHOTO_305, IDC_OPERATION_DITHER_ILLUSTRATION};
constexpr int kDitherCount = 4;

bool Checked(HWND page, int control) { return IsDlgButtonChecked(page, control) == BST_CHECKED; }

void Check(HWND page, int control, bool on) {
  CheckDlgButton(page, control, on ? BST_CHECKED : BST_UNCHECKED);
}

void ShowOperationHelp(HWND page, const DriverUiData& session, int control) {
  const PrinterSettingsPart& printer = session.settings->Printer;
  HelpTextTable rows = kHelp;
  if (control == IDC_OPERATION_FEED_MODE) {
    rows = HelpTextTable(
        kFeedModeHelp + (printer.Mecha <= kPeelMode ? printer.Mecha : uint16_t{kTearOffMode}), 1);
  }
  ShowHelp(page, rows, control, IDC_HELP_TEXT, kPlain, printer.HeadDensity);
}

void FillLists(HWND page, const DriverUiData& session) {
  const PrivateDevMode& settings = session.settings->Record.Private;
  FillOptionList(page, IDC_OPERATION_SPEED, SpeedOptions(), settings.nPrintSpeed);
  FillOptionList(page, IDC_OPERATION_SENSOR, SensorOptions(), settings.nSensor);
  FillOptionList(page, IDC_OPERATION_FEED_MODE, FeedModeOptions(session.settings->Printer.Mecha),
                 settings.nMoveMode);
}

void FillPage(HWND page, DriverUiData& session) {
  PrivateDevMode& settings = session.settings->Record.Private;
  SetDlgItemTextW(page, IDC_HELP_TEXT, kFirstHelpPosition);
  FillLists(page, session);
  const DWORD syncPrint = DeviceSettings(session.printerName).SyncPrint();
  settings.nTSMode = static_cast<int16_t>(syncPrint);
  Check(page, IDC_OPERATION_SYNC_PRINT, syncPrint != 0);
  for (int i = 0; i < kDitherCount; ++i) Check(page, kDitherRadios[i], settings.Dither == i);
  const bool userDefault = session.mode == kUserDefaultSession;
  if (!userDefault) HideControl(page, IDC_OPERATION_HALFTONE);
  Check(page, IDC_OPERATION_COLOR_SHADED, settings.nColorText != 0);
  Check(page, IDC_OPERATION_COLOR_BLACK, settings.nColorText == 0);
  Check(page, IDC_OPERATION_COMPULSORY, settings.nCompulsory != 0);
  EnableWindow(GetDlgItem(page, IDC_OPERATION_SYNC_PRINT), userDefault && IsAdministrator());
  EnableWindow(GetDlgItem(page, IDC_OPERATION_COMPULSORY), userDefault);
  LockControls(page, IDD_OPERATION, session.permission != FALSE);
}

void ReadPage(HWND page, DriverUiData& session) {
  PrivateDevMode& settings = session.settings->Record.Private;
  settings.nPrintSpeed = SelectedOption(page, IDC_OPERATION_SPEED, SpeedOptions());
  settings.nCompulsory = Checked(page, IDC_OPERATION_COMPULSORY) ? 1 : 0;
  settings.nSensor = SelectedOption(page, IDC_OPERATION_SENSOR, SensorOptions());
  settings.nMoveMode = SelectedOption(page, IDC_OPERATION_FEED_MODE,
                                      FeedModeOptions(session.settings->Printer.Mecha));
  settings.nTSMode = Checked(page, IDC_OPERATION_SYNC_PRINT) ? 1 : 0;
  DeviceSettings(session.printerName).SetSyncPrint(settings.nTSMode != 0);
  int16_t dither = 0;
  while (dither < kDitherCount - 1 && !Checked(page, kDitherRadios[dither])) ++dither;
  settings.Dither = dither;
  settings.nColorText = Checked(page, IDC_OPERATION_COLOR_SHADED) ? 1 : 0;
}

void OnList(HWND page, DriverUiData& session, int list, int notification) {
  if (notification == CBN_SETFOCUS) ShowOperationHelp(page, session, list);
  if (notification == CBN_SELCHANGE) MarkPageChanged(page);
}

void OnButton(HWND page, DriverUiData& session, int control) {
  ShowOperationHelp(page, session, control);
  const bool permission = session.permission != FALSE;
  switch (control) {
    case IDC_OPERATION_COLOR_ADJUST:
      if (AdjustColor(*session.settings, session.printerName, permission) >= 1)
        MarkPageChanged(page);
      break;
    case IDC_OPERATION_HALFTONE:
      if (AdjustHalftone(*session.settings, session.printerName, permission) >= 1) {
        MarkPageChanged(page);
      }
      break;
    default:
      MarkPageChanged(page);
  }
}

void OnCommand(HWND page, DriverUiData& session, int control, int notification) {
  switch (control) {
    case IDC_OPERATION_SPEED:
    case IDC_OPERATION_SENSOR:
    case IDC_OPERATION_FEED_MODE:
      OnList(page, session, control, notification);
      break;
    case IDC_OPERATION_DITHER_NONE:
    case IDC_OPERATION_DITHER_PHOTO_203:
    case IDC_OPERATION_DITHER_PHOTO_305:
    case IDC_OPERATION_DITHER_ILLUSTRATION:
    case IDC_OPERATION_COLOR_SHADED:
    case IDC_OPERATION_COLOR_BLACK:
    case IDC_OPERATION_SYNC_PRINT:
    case IDC_OPERATION_COMPULSORY:
    case IDC_OPERATION_COLOR_ADJUST:
    case IDC_OPERATION_HALFTONE:
      if (notification == BN_CLICKED) OnButton(page, session, control);
      break;
    default:
      break;
  }
}

constexpr PageHandlers kPage = {.create = FillPage,
                                .activate = FillPage,
                                .leave = ReadPage,
                                .command = OnCommand,
                                .apply = SaveFontsThenConfirm};

}  // namespace

INT_PTR CALLBACK OperationPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
  return HandlePageMessage(kPage, page, message, wParam, lParam);
}

}  // namespace kestrel
