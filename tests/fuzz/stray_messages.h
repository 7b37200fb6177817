// Messages that neither controls nor managers send, but most of which any process of the desktop
// can send.
#pragma once

#include <windows.h>
#include <commctrl.h>
#include <prsht.h>

#include <array>

// Sends a window one unexpected message: a later WM_INITDIALOG with a forged pointer, a command or
// notification of a control that need not exist, or a notification of the sheet out of order.
// byte() returns the next choice.
template <typename Byte>
void SendStrayMessage(HWND window, Byte byte) {
  alignas(16) static std::array<unsigned char, 4096> forged;
  forged.fill(0);
  const int what = byte() % 4;
  const WPARAM id = static_cast<WPARAM>(1000 + byte());
  if (what == 0) {
    const bool none = byte() % 2 == 0;
    SendMessageW(window, WM_INITDIALOG, 0, none ? 0 : reinterpret_cast<LPARAM>(forged.data()));
  } else if (what == 1) {
    constexpr WORD kCodes[] = {BN_CLICKED,   EN_CHANGE,     EN_KILLFOCUS, EN_SETFOCUS,
                               CBN_DROPDOWN, CBN_SELCHANGE, CBN_CLOSEUP,  LBN_SELCHANGE};
    SendMessageW(window, WM_COMMAND, MAKEWPARAM(id, kCodes[byte() % std::size(kCodes)]), 0);
  } else {
    constexpr UINT kCodes[] = {PSN_SETACTIVE, PSN_KILLACTIVE, PSN_APPLY, PSN_RESET,
                               PSN_LAST,      UDN_DELTAPOS,   0,         UINT_MAX};
    auto* const header = reinterpret_cast<NMHDR*>(forged.data());
    header->code = kCodes[byte() % std::size(kCodes)];
    header->idFrom = what == 2 ? id : 0;
    SendMessageW(window, WM_NOTIFY, header->idFrom, reinterpret_cast<LPARAM>(header));
  }
}
