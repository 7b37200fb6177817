// The entries of a list box and of the list of a combo box.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "platform/desktop/windows/window.h"

namespace platform {

struct ItemList : WindowState {
  std::vector<std::u16string> texts;
  std::vector<ULONG_PTR> data;
  int selected = -1;
  bool sorted = false;
  bool dropped = false;   // combo boxes
  int chosenBefore = -1;  // combo boxes: the selection when the list was opened

  int count() const { return static_cast<int>(texts.size()); }
  bool Holds(WPARAM index) const { return index < texts.size(); }

  // Where a text goes: before an index, -1 for the end; a new text behind its place when sorted.
  // Answers the index.
  int Insert(INT_PTR index, LPCWSTR text);
  void Remove(size_t index);
  void Clear();
  // The first entry behind an index, around the end, that begins with (is) a text, letter case
  // ignored; -1 for none.
  int Find(INT_PTR after, LPCWSTR text, bool whole) const;
};

}  // namespace platform
