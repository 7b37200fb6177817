// The table of windows: creation, destruction, lookup and the tree of parents and children.
#include <winbase.h>

#include <algorithm>
#include <atomic>
#include <utility>

#include "platform/machine/machine.h"
#include "platform/machine/text.h"
#include "platform/user32/manager.h"

namespace platform {

namespace {

// Unique in the process, so that a handle of one computer never names a window of another.
HWND NextHandle() {
  static std::atomic<UINT_PTR> next{0x00010010};
  return reinterpret_cast<HWND>(next.fetch_add(2));
}

// The font determines the height of a closed combo box; the given height is that of its open list.
constexpr LONG kClosedComboHeight = 20;

struct ClassEntry {
  WORD atom;  // in dialog templates
  std::u16string_view name;
  WindowClass windowClass;
  WindowProc proc;
};

constexpr ClassEntry kClasses[] = {
    {0x0080, u"button", WindowClass::kButton, DefaultProc},
    {0x0081, u"edit", WindowClass::kEdit, EditProc},
    {0x0082, u"static", WindowClass::kStatic, DefaultProc},
    {0x0083, u"listbox", WindowClass::kListBox, ListBoxProc},
    {0x0085, u"combobox", WindowClass::kComboBox, ComboBoxProc},
    {0, u"msctls_updown32", WindowClass::kUpDown, UpDownProc},
};

const ClassEntry* FindClass(const ControlRequest& request) {
  for (const ClassEntry& entry : kClasses) {
    if (request.classAtom != 0 ? entry.atom == request.classAtom
                               : EqualIgnoringCase(entry.name, request.className)) {
      return &entry;
    }
  }
  return nullptr;
}

void RemoveFromTable(WindowManager& manager, const WindowPtr& window) {
  std::erase(manager.tops, window->handle);
  if (WindowPtr parent = FindWindowOf(window->parent)) {
    std::erase(parent->children, window->handle);
  }
  if (manager.focus == window->handle) manager.focus = nullptr;
  if (manager.active == window->handle) manager.active = nullptr;
  manager.windows.erase(window->handle);
}

void DestroyTree(const WindowPtr& window) {
  const std::vector<HWND> children = window->children;
  for (HWND child : children) {
    if (WindowPtr one = FindWindowOf(child)) DestroyTree(one);
  }
  RemoveFromTable(Manager(), window);
}

}  // namespace

WindowPtr FindWindowOf(HWND handle) {
  const WindowManager& manager = Manager();
  const auto found = manager.windows.find(handle);
  return found == manager.windows.end() ? nullptr : found->second;
}

WindowPtr AddWindow(WindowClass windowClass, WindowProc proc) {
  if (Machine::Current().faults.ShouldFail(Fault::kWindow)) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
  }
  auto window = std::make_shared<Window>();
  window->handle = NextHandle();
  window->windowClass = windowClass;
  window->proc = proc;
  Manager().windows.emplace(window->handle, window);
  return window;
}

bool CreateControls(Window& dialog, const std::vector<ControlRequest>& controls) {
  for (const ControlRequest& request : controls) {
    const ClassEntry* entry = FindClass(request);
    const WindowPtr window =
        entry != nullptr ? AddWindow(entry->windowClass, entry->proc) : nullptr;
    if (!window) return false;
    window->id = request.id;
    window->style = request.style | WS_CHILD;
    window->rect = request.rect;
    window->text = request.text;
    window->parent = dialog.handle;
    dialog.children.push_back(window->handle);
    if (window->windowClass == WindowClass::kComboBox)
      window->rect.bottom = std::min(window->rect.bottom, window->rect.top + kClosedComboHeight);
    if (IsDefaultButton(*window)) dialog.dialog->defaultId = request.id;
  }
  return true;
}

ControlRequest MakeControl(std::u16string className, int id, std::u16string text, DWORD style,
                           int x, int y, int width, int height) {
  return {std::move(className),         0, id, std::move(text), style | WS_VISIBLE,
          {x, y, x + width, y + height}};
}

void Destroy(HWND handle) {
  const WindowPtr window = FindWindowOf(handle);
  if (!window) return;
  SetVisible(handle, false);
  DestroyTree(window);
}

HWND ChildWithId(const Window& parent, int id) {
  for (HWND child : parent.children) {
    const WindowPtr window = FindWindowOf(child);
    if (window && window->id == id) return child;
  }
  return nullptr;
}

HWND TopLevelOf(HWND handle) {
  HWND top = nullptr;
  for (WindowPtr window = FindWindowOf(handle); window; window = FindWindowOf(window->parent)) {
    top = window->handle;
  }
  return top;
}

bool IsDescendant(HWND ancestor, HWND handle) {
  for (WindowPtr window = FindWindowOf(handle); window; window = FindWindowOf(window->parent)) {
    if (window->handle == ancestor) return true;
  }
  return false;
}

static bool AllAbove(HWND handle, bool (Window::*holds)() const) {
  WindowPtr window = FindWindowOf(handle);
  if (!window) return false;
  for (; window; window = FindWindowOf(window->parent)) {
    if (!(*window.*holds)()) return false;
  }
  return true;
}

bool IsShown(HWND handle) { return AllAbove(handle, &Window::visible); }
bool IsReachable(HWND handle) { return AllAbove(handle, &Window::enabled); }

}  // namespace platform
