// Dialog templates as the resource compiler writes them, read into plain data.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace platform {

// A name or an ordinal.
struct TemplateName {
  std::u16string text;
  WORD ordinal = 0;
};

struct TemplateItem {
  DWORD style = 0;
  DWORD exStyle = 0;
  SHORT x = 0, y = 0, cx = 0, cy = 0;  // dialog units
  int id = 0;
  TemplateName windowClass;
  TemplateName title;
};

struct DialogTemplate {
  DWORD style = 0;
  DWORD exStyle = 0;
  SHORT x = 0, y = 0, cx = 0, cy = 0;  // dialog units
  std::u16string caption;
  std::vector<TemplateItem> items;
};

// Reads an extended or a plain template of size bytes; false when it is damaged or ends early.
bool ParseDialogTemplate(const void* data, size_t size, DialogTemplate& out);

}  // namespace platform
