// The windows there are: creation, destruction, lookup by handle.
#include <algorithm>
#include <atomic>
#include <utility>

#include "platform/desktop/windows/desktop.h"
#include "platform/machine.h"

namespace platform {

namespace {

// Process-wide, so that a handle of one machine never means a window of another.
HWND NextHandle() {
  static std::atomic<UINT_PTR> next{0x00010010};
  return reinterpret_cast<HWND>(next.fetch_add(2));
}

struct ClassEntry {
  WORD atom;  // in dialog templates
  std::u16string_view name;
  WindowClass windowClass;
  WNDPROC proc;
};

constexpr ClassEntry kClasses[] = {
    {0x0080, u"button", WindowClass::kButton, ButtonProc},
    {0x0081, u"edit", WindowClass::kEdit, EditProc},
    {0x0082, u"static", WindowClass::kStatic, StaticProc},
    {0x0083, u"listbox", WindowClass::kListBox, ListBoxProc},
    {0x0085, u"combobox", WindowClass::kComboBox, ComboBoxProc},
    {0, u"msctls_updown32", WindowClass::kUpDown, UpDownProc},
    {0, u"msctls_trackbar32", WindowClass::kTrackbar, TrackbarProc},
};

char16_t Lower(char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c; }

bool SameName(std::u16string_view a, std::u16string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char16_t x, char16_t y) { return Lower(x) == Lower(y); });
}

const ClassEntry* FindClass(const ControlRequest& request) {
  for (const ClassEntry& entry : kClasses) {
    if (request.classAtom != 0 ? entry.atom == request.classAtom
                               : SameName(entry.name, request.className)) {
      return &entry;
    }
  }
  return nullptr;
}

void Forget(DesktopState& desktop, const WindowPtr& window) {
  std::erase(desktop.tops, window->handle);
  if (WindowPtr parent = FindWindowOf(window->parent)) {
    std::erase(parent->children, window->handle);
  }
  if (desktop.focus == window->handle) desktop.focus = nullptr;
  if (desktop.active == window->handle) desktop.active = nullptr;
  std::erase_if(desktop.posted,
                [&](const PostedMessage& posted) { return posted.window == window->handle; });
  desktop.windows.erase(window->handle);
}

void DestroyTree(const WindowPtr& window) {
  if (std::exchange(window->destroying, true)) return;
  SendMessageW(window->handle, WM_DESTROY, 0, 0);
  const std::vector<HWND> children = window->children;
  for (HWND child : children) {
    if (WindowPtr one = FindWindowOf(child)) DestroyTree(one);
  }
  SendMessageW(window->handle, WM_NCDESTROY, 0, 0);
  Forget(TheDesktop(), window);
}

}  // namespace

std::shared_ptr<Window> FindWindowOf(HWND handle) {
  const DesktopState& desktop = TheDesktop();
  const auto found = desktop.windows.find(handle);
  return found == desktop.windows.end() ? nullptr : found->second;
}

WindowPtr AddWindow(WindowClass windowClass, WNDPROC proc) {
  if (Machine::Current().faults.Strike(Fault::kWindow)) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
  }
  auto window = std::make_shared<Window>();
  window->handle = NextHandle();
  window->windowClass = windowClass;
  window->proc = proc;
  TheDesktop().windows.emplace(window->handle, window);
  return window;
}

HWND CreateControl(const ControlRequest& request) {
  const ClassEntry* entry = FindClass(request);
  const WindowPtr parent = FindWindowOf(request.parent);
  if (entry == nullptr || !parent || parent->destroying) {
    SetLastError(entry == nullptr ? ERROR_INVALID_PARAMETER : ERROR_INVALID_WINDOW_HANDLE);
    return nullptr;
  }
  const WindowPtr window = AddWindow(entry->windowClass, entry->proc);
  if (!window) return nullptr;
  window->id = request.id;
  window->style = request.style | WS_CHILD;
  window->exStyle = request.exStyle;
  window->rect = request.rect;
  window->text = request.text;
  window->titleResource = request.titleResource;
  window->parent = request.parent;
  window->instance = request.instance;
  parent->children.push_back(window->handle);
  SendMessageW(window->handle, WM_CREATE, 0, 0);
  return window->handle;
}

}  // namespace platform

using platform::FindWindowOf;

extern "C" {

HWND WINAPI CreateWindowExW(DWORD exStyle, LPCWSTR className, LPCWSTR windowName, DWORD style,
                            int x, int y, int width, int height, HWND parent, HMENU menu,
                            HINSTANCE instance, LPVOID) {
  platform::ControlRequest request;
  if (className == nullptr) return nullptr;
  if (IS_INTRESOURCE(className)) {
    request.classAtom = LOWORD(reinterpret_cast<ULONG_PTR>(className));
  } else {
    request.className = className;
  }
  if (windowName != nullptr && !IS_INTRESOURCE(windowName)) request.text = windowName;
  request.id = static_cast<int>(reinterpret_cast<INT_PTR>(menu));
  request.style = style;
  request.exStyle = exStyle;
  request.rect = {x, y, x + width, y + height};
  request.parent = parent;
  request.instance = instance;
  return platform::CreateControl(request);
}

BOOL WINAPI DestroyWindow(HWND handle) {
  const auto window = FindWindowOf(handle);
  if (!window || window->destroying) return FALSE;
  ShowWindow(handle, SW_HIDE);
  platform::DestroyTree(window);
  return TRUE;
}

BOOL WINAPI IsWindow(HWND handle) { return FindWindowOf(handle) ? TRUE : FALSE; }

}  // extern "C"
