#include "host/sheet/snapshot.h"

#include <cstdint>
#include <cstdio>

#include "host/utf8.h"

namespace printhost {
namespace {

using platform::ControlKind;
using platform::ControlView;
using platform::DisplayList;
using platform::DrawOp;
using platform::WindowView;

// Names in the order of ControlKind, WindowView::Kind and DrawOp::Kind.
constexpr const char* kControls[] = {"button", "check", "radio", "group",  "static",
                                     "edit",   "combo", "list",  "updown", "drawn"};
constexpr const char* kWindows[] = {"dialog", "message", "file", "sheet"};
constexpr const char* kOps[] = {"rectangle", "fill", "line", "image", "text"};

Json RectJson(const RECT& rect) {
  return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

Json OpJson(const DrawOp& op) {
  Json json = {{"kind", kOps[static_cast<int>(op.kind)]}, {"rect", RectJson(op.rect)}};
  if (op.clip.right > op.clip.left && op.clip.bottom > op.clip.top)
    json["clip"] = RectJson(op.clip);
  switch (op.kind) {
    case DrawOp::Kind::kRectangle:
    case DrawOp::Kind::kFill:
    case DrawOp::Kind::kLine:
      json["pen"] = Colour(op.pen);
      json["style"] = op.penStyle;
      json["width"] = op.penWidth;
      json["brush"] = Colour(op.brush);
      break;
    case DrawOp::Kind::kImage:
      json["bitmap"] = op.bitmap;
      json["source"] = RectJson(op.source);
      break;
    case DrawOp::Kind::kText:
      json["text"] = ToUtf8(op.text);
      json["at"] = {op.at.x, op.at.y};
      json["colour"] = Colour(op.textColour);
      if (op.opaque) json["background"] = Colour(op.background);
      json["fontHeight"] = op.fontHeight;
      json["fontAscent"] = op.fontAscent;
      json["fontWidth"] = op.fontWidth;
      json["face"] = ToUtf8(op.face);
      break;
  }
  return json;
}

Json DrawingJson(const DisplayList& list) {
  Json json = Json::array();
  for (const DrawOp& op : list) json.push_back(OpJson(op));
  return json;
}

Json ControlJson(const ControlView& control) {
  Json json = {{"handle", HandleText(control.handle)},
               {"id", control.id},
               {"kind", kControls[static_cast<int>(control.kind)]},
               {"rect", RectJson(control.rect)},
               {"text", ToUtf8(control.text)},
               {"enabled", control.enabled},
               {"focused", control.focused},
               {"tabStop", control.tabStop},
               {"group", control.group}};
  switch (control.kind) {
    case ControlKind::kButton:
      json["default"] = control.defaultButton;
      break;
    case ControlKind::kCheckBox:
    case ControlKind::kRadio:
      json["checked"] = control.checked;
      break;
    case ControlKind::kEdit:
      json["limit"] = control.textLimit;
      json["readOnly"] = control.readOnly;
      break;
    case ControlKind::kComboBox:
    case ControlKind::kListBox: {
      json["selection"] = control.selection;
      json["open"] = control.open;
      Json& items = json["items"] = Json::array();
      for (const std::u16string& item : control.items) items.push_back(ToUtf8(item));
      break;
    }
    case ControlKind::kUpDown:
      json["minimum"] = control.minimum;
      json["maximum"] = control.maximum;
      json["position"] = control.position;
      json["buddy"] = control.buddy;
      break;
    case ControlKind::kStatic:
      json["centred"] = control.centred;
      json["prefix"] = control.prefix;
      if (control.background != 0xFFFFFFFF) {
        json["background"] = Colour(control.background);
        json["colour"] = Colour(control.textColour);
      }
      break;
    case ControlKind::kGroupBox:
    case ControlKind::kOwnerDraw:
      break;
  }
  if (!control.drawing.empty()) json["drawing"] = DrawingJson(control.drawing);
  return json;
}

Json WindowJson(const WindowView& window) {
  Json json = {{"handle", HandleText(window.handle)},
               {"title", ToUtf8(window.title)},
               {"kind", kWindows[static_cast<int>(window.kind)]},
               {"width", window.width},
               {"height", window.height},
               {"enabled", window.enabled},
               {"style", window.messageStyle}};
  Json& controls = json["controls"] = Json::array();
  for (const ControlView& control : window.controls) {
    if (control.visible) controls.push_back(ControlJson(control));
  }
  if (window.kind != WindowView::Kind::kSheet) return json;
  Json& tabs = json["tabs"] = Json::array();
  for (const std::u16string& tab : window.tabs) tabs.push_back(ToUtf8(tab));
  json["activeTab"] = window.activeTab;
  json["changed"] = window.changed;
  json["pageWidth"] = window.pageWidth;
  json["pageHeight"] = window.pageHeight;
  json["page"] = window.page ? WindowJson(*window.page) : Json();
  return json;
}

}  // namespace

std::string Colour(COLORREF colour) {
  char text[8];
  std::snprintf(text, sizeof text, "#%02x%02x%02x", static_cast<unsigned>(colour & 0xFF),
                static_cast<unsigned>(colour >> 8 & 0xFF),
                static_cast<unsigned>(colour >> 16 & 0xFF));
  return text;
}

std::string HandleText(HWND window) {
  char text[20];
  std::snprintf(text, sizeof text, "%llx",
                static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(window)));
  return text;
}

Json WindowsJson(platform::Desk& desk) {
  Json windows = Json::array();
  for (const WindowView& window : desk.Windows()) windows.push_back(WindowJson(window));
  return windows;
}

}  // namespace printhost
