// Somebody who uses every control of every page and dialog once, in whatever order they come up.
#include <algorithm>
#include <map>
#include <set>

#include "resources/resource.h"
#include "tests/road/road_fixture.h"

namespace kestrel {
namespace {

using platform::ControlKind;
using platform::ControlView;
using platform::Desk;
using platform::WindowView;

class ThoroughUser : public platform::User {
 public:
  bool Act(Desk& desk) override {
    if (++actions_ > kMostActions) return false;
    const WindowView top = desk.Windows().back();
    const bool sheet = top.kind == WindowView::Kind::kSheet;
    const WindowView& shown = sheet && top.page ? *top.page : top;
    seen_.insert(shown.title);
    if (top.kind == WindowView::Kind::kMessageBox) return Answer(desk, top);
    if (const ControlView* control = NextControl(shown)) {
      Use(desk, shown, *control);
      return true;
    }
    if (sheet) return LeavePage(desk, top);
    // What is left of a dialog are its OK and its ways out.
    if (used_[shown.title].insert(IDOK).second && desk.Click(IDOK)) return true;
    return desk.Click(IDCANCEL) || desk.Close();
  }

  int Actions() const { return actions_; }
  const std::set<std::u16string>& Seen() const { return seen_; }

 private:
  static constexpr int kMostActions = 5000;

  bool Answer(Desk& desk, const WindowView& box) {
    for (const ControlView& control : box.controls) {
      if (control.kind == ControlKind::kButton && desk.Click(control.id)) return true;
    }
    return desk.Close();
  }

  const ControlView* NextControl(const WindowView& window) {
    std::set<int>& used = used_[window.title];
    for (const ControlView& control : window.controls) {
      if (!control.enabled || !control.visible || control.id == IDOK || control.id == IDCANCEL)
        continue;
      if (control.kind == ControlKind::kStatic || control.kind == ControlKind::kGroupBox) continue;
      // A list that grew is another list.
      const int items = static_cast<int>(control.items.size());
      if (used.insert(control.id + 0x10000 * items).second) return &control;
    }
    return nullptr;
  }

  static std::u16string TextFor(const WindowView& window, int id) {
    if (window.title == u"ユーティリティ") return u"C:\\BACKUP\\t.ini";
    const bool name =
        id == IDC_PAPER_REGISTER_NAME || id == IDC_DECO_FONT_NAME || id == IDC_BAR_FONT_NAME;
    return name ? u"名" + window.title.substr(0, 6) : u"7";
  }

  static void Use(Desk& desk, const WindowView& window, const ControlView& control) {
    switch (control.kind) {
      case ControlKind::kEdit:
        desk.Replace(control.id, TextFor(window, control.id));
        break;
      case ControlKind::kComboBox:
      case ControlKind::kListBox:
        desk.Select(control.id, std::max(static_cast<int>(control.items.size()) - 2, 0));
        break;
      case ControlKind::kUpDown:
        desk.Spin(control.id, 1);
        break;
      default:
        desk.Click(control.id);
    }
  }

  // A page that came to its end is left for the next; when all are used up, for good.
  bool LeavePage(Desk& desk, const WindowView& sheet) {
    const int next = (sheet.activeTab + 1) % static_cast<int>(sheet.tabs.size());
    const int used = CountUsed();
    if (next == 0 && used == usedBefore_) return desk.Press(platform::SheetButton::kOk);
    if (next == 0) usedBefore_ = used;
    return desk.Page(next);
  }

  int CountUsed() const {
    int count = 0;
    for (const auto& [title, ids] : used_) count += static_cast<int>(ids.size());
    return count;
  }

  std::map<std::u16string, std::set<int>> used_;
  std::set<std::u16string> seen_;
  int usedBefore_ = -1;
  int actions_ = 0;
};

TEST_F(Road, EveryControlOfEveryPageAndDialogCanBeUsed) {
  machine().WriteFile(u"C:\\BACKUP\\readme.txt", "");
  ThoroughUser user;
  const support::Seat seat(user);
  const support::SheetAnswer answer =
      AskForSheet(exports_, {.kind = support::SheetKind::kUserDefault});
  EXPECT_EQ(answer.result, CPSUI_OK);
  EXPECT_GE(user.Actions(), 200);
  for (const char16_t* title :
       {u"バージョン情報", u"用紙", u"動作モード", u"デバイスの設定", u"クリエイトフォント",
        u"ユーティリティ", u"用紙登録", u"用紙編集", u"フリーサイズ用紙編集", u"参照用紙選択　",
        u"装飾フォントの登録", u"装飾フォントの変更", u"バーコードフォントの登録",
        u"バーコードフォントの変更", u"用紙削除の確認"}) {
    EXPECT_EQ(user.Seen().count(title), 1U) << testing::PrintToString(std::u16string(title));
  }
}

}  // namespace
}  // namespace kestrel
