// What the person at the desk sees and can do. A modal loop (dialog, message box, file dialog,
// property sheet) that has nothing left to do asks the attached User for the next action. Only what
// a person could do is possible: no action reaches a disabled or hidden control, or a window below
// a modal one.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/machine/display_list.h"

namespace platform {

enum class ControlKind {
  kButton,
  kCheckBox,
  kRadio,
  kGroupBox,
  kStatic,
  kEdit,
  kComboBox,
  kListBox,
  kUpDown,
  kOwnerDraw
};

// One control (or picture) of a window as it looks now. Rectangles are pixels in the window's
// client area, at 6 × 12 pixels for the base units of the dialog font (so 1 horizontal dialog unit
// = 1.5 pixels, 1 vertical = 1.5 pixels).
struct ControlView {
  HWND handle = nullptr;
  int id = 0;
  ControlKind kind = ControlKind::kStatic;
  RECT rect = {};
  std::u16string text;  // of buttons with "&" kept
  bool visible = false;
  bool enabled = false;
  bool focused = false;
  bool checked = false;  // check boxes and radio buttons
  bool defaultButton = false;
  bool tabStop = false;
  bool group = false;  // starts a group of controls (WS_GROUP)
  bool centred = false;
  bool readOnly = false;
  bool prefix = true;                          // "&" marks access keys (no SS_NOPREFIX)
  int textLimit = 0;                           // edits; 0: none
  int selection = -1;                          // combo and list boxes; -1: none
  bool open = false;                           // combo boxes: the drop-down list is shown
  int minimum = 0, maximum = 0, position = 0;  // up-downs
  int buddy = 0;                               // id of an up-down's edit
  std::vector<std::u16string> items;
  COLORREF background = 0xFFFFFFFF;  // statics whose dialog gave a brush; else 0xFFFFFFFF
  COLORREF textColour = 0;           // statics whose dialog gave a brush
  DisplayList drawing;               // owner-drawn controls and pictures
};

// One window: a dialog, a message box, a file dialog or the property sheet.
struct WindowView {
  HWND handle = nullptr;
  std::u16string title;
  int width = 0, height = 0;  // client area in pixels
  enum class Kind { kDialog, kMessageBox, kFileDialog, kSheet } kind = Kind::kDialog;
  bool enabled = true;                // false below a modal window
  UINT messageStyle = 0;              // message boxes: MB_ flags
  std::vector<ControlView> controls;  // of the window itself; texts that nobody asks for are -1
  // Property sheets:
  std::vector<std::u16string> tabs;
  int activeTab = -1;
  bool changed = false;               // some page has marked itself changed
  std::shared_ptr<WindowView> page;   // the shown page, its controls with rectangles in the page
  int pageWidth = 0, pageHeight = 0;  // the largest page, in pixels
};

// Buttons of a property sheet.
enum class SheetButton { kOk, kCancel };

// Which texts of its edit an up-down accepts as a number. The documentation leaves it open, so a
// module has to work with each.
enum class BuddyReading {
  kWholeText,       // blanks, a sign, digits
  kDigitsAndMinus,  // digits, perhaps behind "-"
  kLeadingNumber,   // any text: the number that it begins with, 0 without one
};

class Desk;

// Whoever sits at the desk. Act is called with every message handled; it does one thing and
// returns. Returning false means that nobody is there any more: every modal window then ends as
// cancelled. So it does after Act threw; RethrowKept (platform/machine/machine.h) throws it again.
class User {
 public:
  virtual ~User() = default;
  virtual bool Act(Desk& desk) = 0;
  // The wait cursor has been set: nobody will be asked for a while.
  virtual void Wait(Desk&) {}
};

class Desk {
 public:
  Desk();
  ~Desk();
  struct WindowManager& manager() {
    return *manager_;
  }

  // The user asked by modal loops; null: every modal call ends as cancelled at once.
  void Attach(User* user);
  void SetBuddyReading(BuddyReading reading);

  // ---- seeing ----
  int ModalDepth() const;
  // Every open window, the one on top last.
  std::vector<WindowView> Windows() const;
  // The window on top; for a property sheet the shown page's controls are found by the calls below
  // as well.
  HWND Top() const;
  std::u16string Title() const;  // of the window on top (the page's caption for a sheet)
  bool IsMessageBox() const;
  std::u16string MessageText() const;  // of the message box on top, else empty
  UINT MessageStyle() const;
  // Of the window on top; throws std::out_of_range when absent.
  ControlView Control(int id) const;
  bool Has(int id) const;
  std::u16string Text(int id) const { return Control(id).text; }
  int FocusedId() const;  // 0: none
  HCURSOR Cursor() const;
  // The last hundred message boxes: caption, text, style (kept after they close).
  struct Shown {
    std::u16string caption, text;
    UINT style;
  };
  const std::vector<Shown>& History() const;
  void ClearShown();

  // ---- doing: each answers whether the person could do it ----
  bool Focus(int id);  // by mouse or Tab
  bool Click(int id);  // buttons, check boxes, radio buttons
  // Focuses, appends character by character at the caret.
  bool Type(int id, std::u16string_view text);
  bool Replace(int id, std::u16string_view text);  // focuses, selects all, types over it
  // Focuses, selects all, pastes in one change: the first line, as into any edit of one line.
  bool Paste(int id, std::u16string_view text);
  bool Select(int id, int index);  // combo box (opens, picks, closes) or list box
  bool Select(int id, std::u16string_view item);
  bool Spin(int id, int steps);  // an up-down's arrows, up for positive steps; 10,000 at most
  // An arrow key (VK_UP, VK_DOWN), VK_DELETE or VK_BACK for the control in focus; VK_F4 opens or
  // closes the list of a combo box.
  bool Key(int virtualKey);
  bool Tab(bool back = false);
  bool Enter();   // in an open list: takes the selection shown
  bool Escape();  // in an open list: restores the selection it was opened with
  bool AccessKey(char16_t letter);
  bool Close();          // the window's close box
  bool Page(int index);  // a tab of the sheet
  bool Press(SheetButton button);

 private:
  std::unique_ptr<WindowManager> manager_;
};

// A user who does the given steps one after another. A step that throws, or a script that ends
// while a window is open, is kept as a problem and everything is cancelled, so that no test hangs.
class ScriptedUser : public User {
 public:
  using Step = std::function<void(Desk&)>;
  explicit ScriptedUser(std::vector<Step> steps = {}) : steps_(std::move(steps)) {}
  bool Act(Desk& desk) override;
  bool Finished() const { return next_ == steps_.size(); }
  const std::string& Problem() const { return problem_; }

 private:
  std::vector<Step> steps_;
  std::size_t next_ = 0;
  std::string problem_;
};

}  // namespace platform
