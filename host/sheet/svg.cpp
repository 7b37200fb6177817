#include "host/sheet/svg.h"

#include <cstdio>
#include <map>
#include <string_view>

#include "host/sheet/picture.h"
#include "host/sheet/snapshot.h"
#include "host/utf8.h"

namespace printhost {
namespace {

using platform::ControlKind;
using platform::ControlView;
using platform::DrawOp;
using platform::WindowView;

constexpr int kTitleHeight = 24, kTabHeight = 22, kFontHeight = 12;
// Dashes of the pen styles by number: solid, dash, dot, dash dot, dash dot dot.
constexpr const char* kDashes[] = {"", "6 3", "2 2", "6 3 2 3", "6 3 2 3 2 3"};

std::string Escaped(std::u16string_view text) {
  std::string escaped;
  for (const char c : ToUtf8(text)) {
    if (c == '<')
      escaped += "&lt;";
    else if (c == '&')
      escaped += "&amp;";
    else if (c == '"')
      escaped += "&quot;";
    else if (static_cast<unsigned char>(c) >= 0x20 || c == '\n')
      escaped += c;
  }
  return escaped;
}

// A text without the marks of its access keys: "&" goes, "&&" stands for one.
std::u16string Plain(std::u16string_view text) {
  std::u16string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'&' && i + 1 < text.size()) ++i;
    plain += text[i];
  }
  return plain;
}

std::string Base64(std::string_view bytes) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const auto at = [&](std::size_t n) -> unsigned {
      return i + n < bytes.size() ? static_cast<unsigned char>(bytes[i + n]) : 0;
    };
    const unsigned group = at(0) << 16 | at(1) << 8 | at(2);
    for (unsigned digit = 0; digit < 4; ++digit)
      text += i + digit <= bytes.size() ? kDigits[group >> (18 - 6 * digit) & 63] : '=';
  }
  return text;
}

class Picture {
 public:
  explicit Picture(HMODULE module) : module_(module) {}

  void Box(const RECT& rect, const std::string& fill, const std::string& stroke, int round = 0) {
    out_ += "<rect x=\"" + std::to_string(rect.left) + ".5\" y=\"" + std::to_string(rect.top) +
            ".5\" width=\"" + std::to_string(std::max<LONG>(rect.right - rect.left - 1, 0)) +
            "\" height=\"" + std::to_string(std::max<LONG>(rect.bottom - rect.top - 1, 0)) +
            "\" rx=\"" + std::to_string(round) + "\" fill=\"" + fill + "\" stroke=\"" + stroke +
            "\"/>\n";
  }
  void Write(LONG x, LONG baseline, std::u16string_view text, const std::string& more = {}) {
    out_ += "<text x=\"" + std::to_string(x) + "\" y=\"" + std::to_string(baseline) + "\"" + more +
            ">" + Escaped(text) + "</text>\n";
  }
  void Open(LONG x, LONG y) {
    out_ += "<g transform=\"translate(" + std::to_string(x) + " " + std::to_string(y) + ")\">\n";
  }
  void Close() { out_ += "</g>\n"; }
  void Add(const std::string& text) { out_ += text; }
  void Draw(const platform::DisplayList& list) {
    for (const DrawOp& op : list) Draw(op);
  }
  void Draw(const DrawOp& op);
  std::string Take() { return std::move(out_); }

 private:
  static std::string Place(const RECT& rect) {
    return " x=\"" + std::to_string(rect.left) + "\" y=\"" + std::to_string(rect.top) +
           "\" width=\"" + std::to_string(rect.right - rect.left) + "\" height=\"" +
           std::to_string(rect.bottom - rect.top) + "\"";
  }
  static std::string View(const RECT& rect) {
    return " viewBox=\"" + std::to_string(rect.left) + " " + std::to_string(rect.top) + " " +
           std::to_string(rect.right - rect.left) + " " + std::to_string(rect.bottom - rect.top) +
           "\"";
  }
  // A picture stands in the document once, however often it is shown.
  const std::string& Bitmap(int id) {
    auto [found, isNew] = bitmaps_.try_emplace(id);
    if (isNew) found->second = "data:image/bmp;base64," + Base64(BitmapFile(module_, id));
    return found->second;
  }

  HMODULE module_;
  std::string out_;
  std::map<int, std::string> bitmaps_;
};

std::string Stroke(const DrawOp& op) {
  std::string stroke = " stroke=\"" + Colour(op.pen) + "\" stroke-width=\"" +
                       std::to_string(std::max(op.penWidth, 1)) + "\"";
  if (op.penStyle > 0 && op.penStyle < 5 && op.penWidth <= 1)
    stroke.append(" stroke-dasharray=\"").append(kDashes[op.penStyle]).append("\"");
  return stroke;
}

void Picture::Draw(const DrawOp& op) {
  const bool clipped = op.clip.right > op.clip.left && op.clip.bottom > op.clip.top;
  if (clipped) out_ += "<svg" + Place(op.clip) + View(op.clip) + ">\n";
  switch (op.kind) {
    case DrawOp::Kind::kRectangle:
      out_ += "<rect x=\"" + std::to_string(op.rect.left) + ".5\" y=\"" +
              std::to_string(op.rect.top) + ".5\" width=\"" +
              std::to_string(std::max<LONG>(op.rect.right - op.rect.left - 1, 0)) + "\" height=\"" +
              std::to_string(std::max<LONG>(op.rect.bottom - op.rect.top - 1, 0)) + "\" fill=\"" +
              Colour(op.brush) + "\"" + Stroke(op) + "/>\n";
      break;
    case DrawOp::Kind::kFill:
      out_ += "<rect" + Place(op.rect) + " fill=\"" + Colour(op.brush) + "\"/>\n";
      break;
    case DrawOp::Kind::kLine:
      out_ += "<line x1=\"" + std::to_string(op.rect.left) + ".5\" y1=\"" +
              std::to_string(op.rect.top) + ".5\" x2=\"" + std::to_string(op.rect.right) +
              ".5\" y2=\"" + std::to_string(op.rect.bottom) + ".5\"" + Stroke(op) + "/>\n";
      break;
    case DrawOp::Kind::kImage:
      if (op.bitmap != 0)
        out_ += "<svg" + Place(op.rect) + View(op.source) +
                " preserveAspectRatio=\"none\"><image href=\"" + Bitmap(op.bitmap) + "\"/></svg>\n";
      break;
    case DrawOp::Kind::kText: {
      if (op.opaque)
        out_ += "<rect" + Place(op.rect) + " fill=\"" + Colour(op.background) + "\"/>\n";
      char stretch[32];
      std::snprintf(
          stretch, sizeof stretch, "%.3f",
          op.fontWidth > 0 && op.fontHeight > 0 ? 2.0 * op.fontWidth / op.fontHeight : 1.0);
      out_ += "<text transform=\"translate(" + std::to_string(op.at.x) + " " +
              std::to_string(op.at.y + op.fontAscent) + ") scale(" + stretch +
              " 1)\" font-size=\"" +
              std::to_string(op.fontHeight > 0 ? op.fontHeight : kFontHeight) + "\" fill=\"" +
              Colour(op.textColour) + "\">" + Escaped(op.text) + "</text>\n";
      break;
    }
  }
  if (clipped) out_ += "</svg>\n";
}

void DrawControl(Picture& picture, const ControlView& control) {
  const RECT& rect = control.rect;
  const LONG middle = (rect.top + rect.bottom) / 2 + 4;
  const std::u16string caption = control.prefix ? Plain(control.text) : control.text;
  const std::string ink = control.enabled ? "#000000" : "#808080";
  const std::string colour = " fill=\"" + ink + "\"";
  switch (control.kind) {
    case ControlKind::kButton:
      picture.Box(rect, "#e8e8e8", control.defaultButton ? "#000000" : "#808080");
      picture.Write((rect.left + rect.right) / 2, middle, caption,
                    colour + " text-anchor=\"middle\"");
      break;
    case ControlKind::kCheckBox:
    case ControlKind::kRadio: {
      const RECT mark = {rect.left, middle - 10, rect.left + 11, middle + 1};
      const int round = control.kind == ControlKind::kRadio ? 5 : 0;
      picture.Box(mark, "#ffffff", ink, round);
      if (control.checked)
        picture.Box({mark.left + 3, mark.top + 3, mark.right - 3, mark.bottom - 3}, ink, ink,
                    round);
      picture.Write(rect.left + 15, middle, caption, colour);
      break;
    }
    case ControlKind::kGroupBox:
      picture.Box({rect.left, rect.top + 6, rect.right, rect.bottom}, "none", "#b0b0b0");
      picture.Write(rect.left + 8, rect.top + 10, caption,
                    colour + " stroke=\"#f0f0f0\" stroke-width=\"4\" paint-order=\"stroke\"");
      break;
    case ControlKind::kComboBox:
    case ControlKind::kListBox: {
      picture.Box(rect, "#ffffff", "#808080");
      const bool list = control.kind == ControlKind::kListBox;
      const LONG rows = list ? (rect.bottom - rect.top) / (kFontHeight + 2) : 1;
      for (LONG row = 0; row < rows; ++row) {
        const std::size_t item =
            list ? static_cast<std::size_t>(row) : static_cast<std::size_t>(control.selection);
        if (item >= control.items.size()) break;
        const LONG top = list ? rect.top + 1 + row * (kFontHeight + 2) : middle - 11;
        if (list && control.selection == row)
          picture.Box({rect.left + 1, top, rect.right - 1, top + kFontHeight + 2}, "#cce0ff",
                      "none");
        picture.Write(rect.left + 4, top + 11, control.items[item], colour);
      }
      break;
    }
    case ControlKind::kEdit:
      picture.Box(rect, "#ffffff", "#808080");
      picture.Write(rect.left + 3, middle, control.text, colour);
      break;
    case ControlKind::kUpDown:
      picture.Box(rect, "#e8e8e8", "#808080");
      picture.Write((rect.left + rect.right) / 2, middle, u"↕", colour + " text-anchor=\"middle\"");
      break;
    case ControlKind::kStatic: {
      if (control.background != 0xFFFFFFFF) picture.Box(rect, Colour(control.background), "none");
      // Wrapped as a browser would wrap it: the texts have no breaks of their own to rely on.
      picture.Add("<foreignObject x=\"" + std::to_string(rect.left) + "\" y=\"" +
                  std::to_string(rect.top) + "\" width=\"" +
                  std::to_string(rect.right - rect.left) + "\" height=\"" +
                  std::to_string(rect.bottom - rect.top) +
                  "\"><div xmlns=\"http://www.w3.org/1999/xhtml\" "
                  "style=\"white-space:pre-wrap;line-height:1;color:" +
                  ink + (control.centred ? ";text-align:center" : "") + "\">" + Escaped(caption) +
                  "</div></foreignObject>\n");
      break;
    }
    default:
      break;
  }
  if (control.drawing.empty()) return;
  picture.Open(rect.left, rect.top);
  picture.Draw(control.drawing);
  picture.Close();
}

// A message box's icon, in the place that the box leaves for it.
void DrawIcon(Picture& picture, UINT style) {
  struct Icon {
    const char* fill;
    int round;
    const char16_t* sign;
  };
  // By the digit of the style that MB_ICON… sets: none, stop, question, exclamation, information.
  constexpr Icon kIcons[] = {{},
                             {"#c8323c", 15, u"✕"},
                             {"#2463a6", 15, u"?"},
                             {"#9a6b00", 6, u"!"},
                             {"#2463a6", 15, u"i"}};
  const std::size_t number = (style & MB_ICONMASK) >> 4;
  if (number == 0 || number >= std::size(kIcons)) return;
  picture.Box({12, 12, 44, 44}, kIcons[number].fill, "none", kIcons[number].round);
  picture.Write(28, 33, kIcons[number].sign,
                " fill=\"#ffffff\" font-size=\"20\" text-anchor=\"middle\"");
}

void DrawContents(Picture& picture, const WindowView& window) {
  for (const ControlView& control : window.controls) {
    if (control.visible) DrawControl(picture, control);
  }
  if (window.kind == WindowView::Kind::kMessageBox) DrawIcon(picture, window.messageStyle);
}

}  // namespace

std::string WindowSvg(const WindowView& window, HMODULE module) {
  Picture picture(module);
  const bool sheet = window.page != nullptr;
  const LONG width = sheet ? window.pageWidth : window.width;
  const LONG height = (sheet ? window.pageHeight + kTabHeight : window.height) + kTitleHeight;
  picture.Add("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + std::to_string(width) +
              "\" height=\"" + std::to_string(height) +
              "\" font-family=\"Noto Sans CJK JP, sans-serif\" font-size=\"" +
              std::to_string(kFontHeight) + "\">\n");
  picture.Box({0, 0, width, height}, "#f0f0f0", "#808080");
  picture.Write(6, kTitleHeight - 8, window.title, " font-weight=\"bold\"");
  LONG top = kTitleHeight;
  if (sheet) {
    LONG left = 0;
    for (std::size_t tab = 0; tab < window.tabs.size(); ++tab) {
      const LONG each = 9 * static_cast<LONG>(window.tabs[tab].size()) + 10;
      picture.Box({left, top, left + each, top + kTabHeight},
                  static_cast<int>(tab) == window.activeTab ? "#ffffff" : "#d8d8d8", "#b0b0b0");
      picture.Write(left + each / 2, top + 15, window.tabs[tab],
                    " font-size=\"9\" text-anchor=\"middle\"");
      left += each;
    }
    top += kTabHeight;
  }
  picture.Open(0, top);
  DrawContents(picture, sheet ? *window.page : window);
  picture.Close();
  picture.Add("</svg>\n");
  return picture.Take();
}

}  // namespace printhost
