#include "sheets/messages.h"

#include "driver/instance.h"
#include "driver/text.h"
#include "resources/resource.h"

namespace kestrel {
namespace {

struct MessageText {
  UINT id;
  const WCHAR* text;
};

// Texts that replace those of the string table with the same ids, which are never shown. To change
// one of these texts, change it here. Ends with id 0.
constexpr MessageText MessageOverrideTable[] = {
    {IDS_PRINTABLE_WIDTH_WRONG, TEXT("用紙幅の設定が間違っています。\n《印字可能領域のラベル左端と"
                                     "幅を加算した値がラベル幅より\n"
                                     "大きいです。》")},
    {IDS_PRINTABLE_HEIGHT_WRONG, TEXT("用紙長さの設定が間違っています。\n《印字可能領域のラベル上端"
                                      "と長さを加算した値がラベル長さ"
                                      "より大きいです。》")},
    {IDS_DENSITY_CHANGED, TEXT("解像度が変更されました。設定されたデータが現在の\n"
                               "解像度で不正な値になる可能性があります。\n")},
    {IDS_DENSITY_CHANGED_CHECK,
     TEXT("特に以下のデータについて、現在の解像度で\n正当なデータかどうかを確認してください。\n"
          "\t・用紙サイズ\n\t・フォントサイズ")},
    {IDS_MODE_CHANGED, TEXT("機種が変更されました。設定されたデータが現在の\n"
                            "機種では不正な値になる可能性があります。\n")},
    {IDS_MODE_CHANGED_CHECK,
     TEXT("特に以下のデータについて現在の機種で、\n正当なデータかどうかを確認してください。\n"
          "\t・印字基点補正\n\t・ﾒｶﾆｽﾞﾑ寸法補正\n")},
    {IDS_LOADED_FONTS_WARNING, TEXT("読み込んだクリエイトフォント名が現在の環境で\n使用されているフ"
                                    "ォント名と重複する可能性があ\n"
                                    "ります。\n重複していないことを確認してください。")},
    {0, nullptr},
};

constexpr int kCaptionLength = 260;

}  // namespace

int LoadMessageText(UINT id, WCHAR* text, size_t n) {
  if (n == 0) return 0;
  for (const MessageText* entry = MessageOverrideTable; entry->id != 0; ++entry) {
    if (entry->id == id) return CopyText(text, n, entry->text);
  }
  const int length = LoadStringW(ModuleInstance(), id, text, static_cast<int>(n));
  if (length > 0) return length;
  text[0] = 0;
  return 0;
}

void ShowMessage(HWND owner, UINT id, UINT style) {
  WCHAR text[kMessageLength];
  LoadMessageText(id, text, kMessageLength);
  ShowText(owner, text, style);
}

void ShowText(HWND owner, const WCHAR* text, UINT style) {
  WCHAR caption[kCaptionLength] = {};
  GetWindowTextW(owner, caption, kCaptionLength);
  MessageBoxW(owner, text, caption, style);
}

bool IsBlankText(const WCHAR* text) {
  if (text == nullptr) return true;
  while (*text == TEXT(' ') || *text == TEXT('\u3000')) ++text;
  return *text == 0;
}

void SetWaitCursor(bool on) { SetCursor(LoadCursorW(nullptr, on ? IDC_WAIT : IDC_ARROW)); }

}  // namespace kestrel
