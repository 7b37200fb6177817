// The page that lists the registered fonts and registers, changes and deletes them.
#include <algorithm>
#include <cstring>

#include "driver/text.h"
#include "fonts/bar_dialog.h"
#include "fonts/deco_dialog.h"
#include "fonts/font_store.h"
#include "paper/fields/controls.h"
#include "paper/fields/help_text.h"
#include "paper/paper_info.h"
#include "resources/resource.h"
#include "sheets/messages.h"
#include "sheets/page_handlers.h"
#include "sheets/page_procs.h"
#include "sheets/page_services.h"
#include "sheets/session_fonts.h"

namespace kestrel {
namespace {

constexpr HelpRow kHelp[] = {
    Plain(IDC_CREATE_FONT_DECO_LIST, IDS_HELP_CREATE_FONT_DECO_LIST),
    Plain(IDC_CREATE_FONT_DECO_NEW, IDS_HELP_CREATE_FONT_DECO_NEW),
    Plain(IDC_CREATE_FONT_DECO_EDIT, IDS_HELP_CREATE_FONT_DECO_EDIT),
    Plain(IDC_CREATE_FONT_DECO_DELETE, IDS_HELP_CREATE_FONT_DECO_DELETE),
    Plain(IDC_CREATE_FONT_BAR_LIST, IDS_HELP_CREATE_FONT_BAR_LIST),
    Plain(IDC_CREATE_FONT_BAR_NEW, IDS_HELP_CREATE_FONT_BAR_NEW),
    Plain(IDC_CREATE_FONT_BAR_EDIT, IDS_HELP_CREATE_FONT_BAR_EDIT),
    Plain(IDC_CREATE_FONT_BAR_DELETE, IDS_HELP_CREATE_FONT_BAR_DELETE),
    Plain(IDC_CREATE_FONT_BAR_REFERENCE, IDS_HELP_CREATE_FONT_BAR_REFERENCE),
    Plain(IDC_CREATE_FONT_DECO_REFERENCE, IDS_HELP_CREATE_FONT_DECO_REFERENCE),
};

// The controls of one of the two groups, decorative and barcode fonts.
struct FontGroup {
  FontKindCode kind;
  int list;
  int newButton;
  int editButton;
  int deleteButton;
  int reference;
};

constexpr FontGroup kDecoGroup = {
    kDecorativeFont,           IDC_CREATE_FONT_DECO_LIST,   IDC_CREATE_FONT_DECO_NEW,
    IDC_CREATE_FONT_DECO_EDIT, IDC_CREATE_FONT_DECO_DELETE, IDC_CREATE_FONT_DECO_REFERENCE};
constexpr FontGroup kBarGroup = {kBarcodeFont,
                                 IDC_CREATE_FONT_BAR_LIST,
                                 IDC_CREATE_FONT_BAR_NEW,
                                 IDC_CREATE_FONT_BAR_EDIT,
                                 IDC_CREATE_FONT_BAR_DELETE,
                                 IDC_CREATE_FONT_BAR_REFERENCE};
constexpr const FontGroup* kGroups[] = {&kDecoGroup, &kBarGroup};

FontRecord* FontsOf(FontStore& store, const FontGroup& group) {
  return group.kind == kDecorativeFont ? store.DecoFonts : store.BarFonts;
}
int16_t& CountOf(FontStore& store, const FontGroup& group) {
  return group.kind == kDecorativeFont ? store.DecoFontNum : store.BarFontNum;
}
int OtherCountOf(const FontStore& store, const FontGroup& group) {
  return group.kind == kDecorativeFont ? store.BarFontNum : store.DecoFontNum;
}
bool& ReferenceOf(FontStore& store, const FontGroup& group) {
  return group.kind == kDecorativeFont ? store.DecoReference : store.BarReference;
}

const WCHAR* ListedName(const FontRecord& font, const FontGroup& group) {
  return group.kind == kDecorativeFont ? font.FontName : font.Bar.BarFontName;
}

// Enables or disables a control. Moves the focus from a disabled control to the group's list,
// because a disabled control with the focus blocks the keyboard.
void Enable(HWND page, const FontGroup& group, int control, bool on) {
  HWND window = GetDlgItem(page, control);
  if (!on && GetFocus() == window) MoveFocus(page, group.list);
  EnableWindow(window, on);
}

// Lists the group's fonts and selects the first one. Drops the fonts that exceed the limit of both
// kinds together.
void FillGroup(HWND page, FontStore& store, const FontGroup& group) {
  SendDlgItemMessageW(page, group.list, LB_RESETCONTENT, 0, 0);
  int16_t& count = CountOf(store, group);
  count = static_cast<int16_t>(
      std::min<int>(count, std::max(kFontCapacity - OtherCountOf(store, group), 0)));
  for (int i = 0; i < count; ++i) {
    WCHAR name[kFontNameLength + 1];
    CopyField(name, kFontNameLength + 1, ListedName(FontsOf(store, group)[i], group),
              kFontNameLength);
    SendDlgItemMessageW(page, group.list, LB_INSERTSTRING, static_cast<WPARAM>(i),
                        reinterpret_cast<LPARAM>(name));
  }
  const bool any = count >= 1;
  if (any) SendDlgItemMessageW(page, group.list, LB_SETCURSEL, 0, 0);
  Enable(page, group, group.reference, any);
  Enable(page, group, group.editButton, any);
  Enable(page, group, group.deleteButton, any);
}

void EnableNewButtons(HWND page, const FontStore& store) {
  for (const FontGroup* group : kGroups)
    Enable(page, *group, group->newButton, CanRegisterMore(store));
}

// Disables editing outside the user-default session, because registered fonts belong to the printer
// and not to a document.
void LockEditing(HWND page, const DriverUiData& session) {
  if (session.mode != kUserDefaultSession) {
    for (const FontGroup* group : kGroups) {
      Enable(page, *group, group->newButton, false);
      Enable(page, *group, group->editButton, false);
      Enable(page, *group, group->deleteButton, false);
    }
  }
  LockControls(page, IDD_CREATE_FONT, session.permission != FALSE);
}

void SetUpPage(HWND page, DriverUiData& session) {
  SetDlgItemTextW(page, IDC_HELP_TEXT, kFirstHelpFonts);
  WCHAR format[kMessageLength];
  LoadMessageText(IDS_FONT_LIMIT, format, kMessageLength);
  WCHAR text[kMessageLength + 16];
  wsprintfW(text, format, kFontCapacity);
  SetDlgItemTextW(page, IDC_CREATE_FONT_LIMIT_TEXT, text);
  EnableNewButtons(page, session.fonts);
  FillGroup(page, session.fonts, kDecoGroup);
  FillGroup(page, session.fonts, kBarGroup);
  LockEditing(page, session);
}

// Returns the index of the selected record. The group has at least one font.
int SelectedIndex(HWND page, FontStore& store, const FontGroup& group) {
  const auto selected = static_cast<int>(SendDlgItemMessageW(page, group.list, LB_GETCURSEL, 0, 0));
  return std::clamp(selected, 0, CountOf(store, group) - 1);
}

bool RunDialog(HWND page, DriverUiData& session, const FontGroup& group) {
  const uint16_t density = session.settings->Printer.HeadDensity;
  return group.kind == kDecorativeFont
             ? RunDecoDialog(page, session.fonts, density)
             : RunBarDialog(page, session.fonts, session.printer, session.printerName, density);
}

void CopyToWorkFont(FontStore& store, const FontGroup& group, int selected) {
  store.FontEditIndex = static_cast<int16_t>(selected);
  store.WorkFont = CopyForEditing(FontsOf(store, group)[selected]);
}

void OnListChanged(HWND page, DriverUiData& session, const FontGroup& group) {
  FillGroup(page, session.fonts, group);
  EnableNewButtons(page, session.fonts);
  MarkPageChanged(page);
}

void RegisterFont(HWND page, DriverUiData& session, const FontGroup& group) {
  FontStore& store = session.fonts;
  if (!store.Loaded || !CanRegisterMore(store)) return;
  store.FontEditMode = kRegisterFont;
  store.FontEditIndex = -1;
  std::memset(&store.WorkFont, 0, sizeof(store.WorkFont));
  // A checked reference box has no effect while the list is empty: the new font gets the defaults.
  bool& reference = ReferenceOf(store, group);
  const bool isChecked = reference;
  reference = isChecked && CountOf(store, group) >= 1;
  if (reference) CopyToWorkFont(store, group, SelectedIndex(page, store, group));
  const bool confirmed = RunDialog(page, session, group);
  reference = isChecked;
  if (confirmed) {
    int16_t& count = CountOf(store, group);
    FontsOf(store, group)[count] = store.WorkFont;
    ++count;
    OnListChanged(page, session, group);
  }
  SetUpPage(page, session);
}

void ChangeFont(HWND page, DriverUiData& session, const FontGroup& group) {
  FontStore& store = session.fonts;
  if (CountOf(store, group) < 1) return;
  store.FontEditMode = kChangeFont;
  CopyToWorkFont(store, group, SelectedIndex(page, store, group));
  if (RunDialog(page, session, group)) {
    FontsOf(store, group)[store.FontEditIndex] = store.WorkFont;
    OnListChanged(page, session, group);
  }
  SetUpPage(page, session);
}

bool ConfirmDelete(HWND page, const FontRecord& font) {
  WCHAR caption[128];
  GetWindowTextW(page, caption, 128);
  WCHAR text[kFontNameLength + 1 + kMessageLength];
  const int length = CopyField(text, kFontNameLength + 1, font.FontName, kFontNameLength);
  LoadMessageText(IDS_CONFIRM_DELETE, text + length, kMessageLength);
  return MessageBoxW(page, text, caption, MB_OKCANCEL | MB_ICONEXCLAMATION) == IDOK;
}

void DeleteFont(HWND page, DriverUiData& session, const FontGroup& group) {
  FontStore& store = session.fonts;
  int16_t& count = CountOf(store, group);
  if (count < 1) return;
  FontRecord* fonts = FontsOf(store, group);
  const int selected = SelectedIndex(page, store, group);
  if (ConfirmDelete(page, fonts[selected])) {
    const auto following = static_cast<size_t>(count - 1 - selected);
    std::memmove(fonts + selected, fonts + selected + 1, following * sizeof(FontRecord));
    std::memset(fonts + count - 1, 0, sizeof(FontRecord));
    --count;
    EnableNewButtons(page, store);
    MarkPageChanged(page);
  }
  FillGroup(page, store, group);
  LockEditing(page, session);
}

void OnCommand(HWND page, DriverUiData& session, int control, int notification) {
  if (control == kDecoGroup.list || control == kBarGroup.list || notification == BN_CLICKED) {
    ShowHelp(page, kHelp, control, IDC_HELP_TEXT, kPlain, session.settings->Printer.HeadDensity);
  }
  if (notification != BN_CLICKED) return;
  for (const FontGroup* group : kGroups) {
    if (control == group->newButton) RegisterFont(page, session, *group);
    if (control == group->editButton) ChangeFont(page, session, *group);
    if (control == group->deleteButton) DeleteFont(page, session, *group);
    if (control == group->reference) {
      ReferenceOf(session.fonts, *group) = IsDlgButtonChecked(page, control) == BST_CHECKED;
    }
  }
}

void CreatePage(HWND page, DriverUiData& session) {
  std::memset(&session.fonts.WorkFont, 0, sizeof(session.fonts.WorkFont));
  session.fonts.DecoReference = false;
  session.fonts.BarReference = false;
  SetUpPage(page, session);
}

constexpr PageHandlers kPage = {.create = CreatePage,
                                .activate = SetUpPage,
                                .command = OnCommand,
                                .apply = SaveFontsThenConfirm};

}  // namespace

INT_PTR CALLBACK CreateFontPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
  return HandlePageMessage(kPage, page, message, wParam, lParam);
}

}  // namespace kestrel
