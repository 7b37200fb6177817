// The screen, mouse and keyboard of the simulated computer. A modal loop (dialog, message box, file
// dialog, property sheet) that has nothing left to do calls the attached User for the next action.
// Only actions that a user could perform are possible: none reaches a disabled or hidden control,
// or a window below a modal one.
#pragma once

#include <windef.h>

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

// A control (or picture) of a window as it looks now. Rectangles are pixels in the client area of
// the window. The base units of the dialog font are 6 × 12 pixels, so that a dialog unit is 1.5
// pixels in both directions.
struct ControlView {
  HWND handle = nullptr;
  int id = 0;
  ControlKind kind = ControlKind::kStatic;
  RECT rect = {};
  std::u16string text;  // of buttons including "&"
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
  COLORREF background = 0xFFFFFFFF;  // statics whose dialog returned a brush; else 0xFFFFFFFF
  COLORREF textColour = 0;           // statics whose dialog returned a brush
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
  std::vector<ControlView> controls;  // of the window itself; plain texts have the id -1
  // Property sheets:
  std::vector<std::u16string> tabs;
  int activeTab = -1;
  bool changed = false;               // some page sent PSM_CHANGED
  std::shared_ptr<WindowView> page;   // the shown page, its controls with rectangles in the page
  int pageWidth = 0, pageHeight = 0;  // the largest page, in pixels
};

// Buttons of a property sheet.
enum class SheetButton { kOk, kCancel };

// The texts that an up-down accepts as the number of its edit. The documentation leaves this open,
// so that a module has to work with each.
enum class BuddyReading {
  kWholeText,       // blanks, a sign, digits
  kDigitsAndMinus,  // digits, optionally after "-"
  kLeadingNumber,   // any text: its leading number, or 0
};

class Desk;

// A user of the desk. A modal loop calls Act whenever it has handled all messages; Act performs one
// action and returns. After Act returns false or throws, every modal window ends as cancelled.
// RethrowPendingException (platform/machine/guard.h) throws the exception again.
class User {
 public:
  virtual ~User() = default;
  virtual bool Act(Desk& desk) = 0;
  // Called when the wait cursor is set: Act is not called for a while.
  virtual void Wait(Desk&) {}
};

class Desk {
 public:
  Desk();
  ~Desk();
  struct WindowManager& manager() {
    return *manager_;
  }

  // Attaches the user whom modal loops call. Without one (null) every modal call ends as cancelled
  // at once.
  void Attach(User* user);
  void SetBuddyReading(BuddyReading reading);

  // ---- what the user sees ----
  int ModalDepth() const;
  // Returns every open window, the topmost last.
  std::vector<WindowView> Windows() const;
  // Returns the topmost window. For a property sheet, the calls below also find the controls of the
  // shown page.
  HWND Top() const;
  std::u16string Title() const;  // of the topmost window; for a sheet, the caption of the page
  bool IsMessageBox() const;
  std::u16string MessageText() const;  // of the topmost message box; else empty
  UINT MessageStyle() const;
  // Returns a control of the topmost window; throws std::out_of_range when it is missing.
  ControlView Control(int id) const;
  bool Has(int id) const;
  std::u16string Text(int id) const { return Control(id).text; }
  int FocusedId() const;  // 0: none
  HCURSOR Cursor() const;
  // The last hundred message boxes, closed ones included.
  struct Shown {
    std::u16string caption, text;
    UINT style;
  };
  const std::vector<Shown>& History() const;
  void ClearShown();

  // ---- actions; each returns whether the user could perform it ----
  bool Focus(int id);  // by mouse or Tab
  bool Click(int id);  // buttons, check boxes, radio buttons
  // Focuses the edit and types at the end of its text, character by character.
  bool Type(int id, std::u16string_view text);
  bool Replace(int id, std::u16string_view text);  // focuses, selects all, types
  // Focuses the edit, selects all and pastes the first line in one change, as an edit of one line
  // does.
  bool Paste(int id, std::u16string_view text);
  bool Select(int id, int index);  // combo box (opens, picks, closes) or list box
  bool Select(int id, std::u16string_view item);
  bool Spin(int id, int steps);  // an up-down's arrows, up for positive steps; 10,000 at most
  // An arrow key (VK_UP, VK_DOWN), VK_DELETE or VK_BACK for the focused control; VK_F4 opens or
  // closes the list of a combo box.
  bool Key(int virtualKey);
  bool Tab(bool back = false);
  bool Enter();   // in an open list: accepts the shown selection
  bool Escape();  // in an open list: restores the selection it was opened with
  bool AccessKey(char16_t letter);
  bool Close();          // the window's close box
  bool Page(int index);  // a tab of the sheet
  bool Press(SheetButton button);

 private:
  std::unique_ptr<WindowManager> manager_;
};

// A user who performs the given steps in order. When a step throws, or the script ends while a
// window is open, the user records the problem and everything is cancelled, so that no test hangs.
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
