#include "host/sheet/svg.h"

#include <algorithm>
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
// stroke-dasharray by pen style: PS_SOLID, PS_DASH, PS_DOT, PS_DASHDOT, PS_DASHDOTDOT.
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

// Removes the marks of access keys from a text: "&" is removed, "&&" becomes "&".
std::u16string StripAccessKeys(std::u16string_view text) {
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

class SvgWriter {
 public:
  explicit SvgWriter(HMODULE module) : module_(module) {}

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
  static std::string PositionAttributes(const RECT& rect) {
    return " x=\"" + std::to_string(rect.left) + "\" y=\"" + std::to_string(rect.top) +
           "\" width=\"" + std::to_string(rect.right - rect.left) + "\" height=\"" +
           std::to_string(rect.bottom - rect.top) + "\"";
  }
  static std::string ViewBoxAttribute(const RECT& rect) {
    return " viewBox=\"" + std::to_string(rect.left) + " " + std::to_string(rect.top) + " " +
           std::to_string(rect.right - rect.left) + " " + std::to_string(rect.bottom - rect.top) +
           "\"";
  }
  // Returns the bitmap as a data URL; encodes each bitmap once.
  const std::string& BitmapUrl(int id) {
    auto [entry, isNew] = bitmaps_.try_emplace(id);
    if (isNew) entry->second = "data:image/bmp;base64," + Base64(BitmapFile(module_, id));
    return entry->second;
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

void SvgWriter::Draw(const DrawOp& op) {
  const bool isClipped = op.clip.right > op.clip.left && op.clip.bottom > op.clip.top;
  if (isClipped) out_ += "<svg" + PositionAttributes(op.clip) + ViewBoxAttribute(op.clip) + ">\n";
  switch (op.kind) {
    case DrawOp::Kind::kRectangle:
      out_ += "<rect x=\"" + std::to_string(op.rect.left) + ".5\" y=\"" +
              std::to_string(op.rect.top) + ".5\" width=\"" +
              std::to_string(std::max<LONG>(op.rect.right - op.rect.left - 1, 0)) + "\" height=\"" +
              std::to_string(std::max<LONG>(op.rect.bottom - op.rect.top - 1, 0)) + "\" fill=\"" +
              Colour(op.brush) + "\"" + Stroke(op) + "/>\n";
      break;
    case DrawOp::Kind::kFill:
      out_ += "<rect" + PositionAttributes(op.rect) + " fill=\"" + Colour(op.brush) + "\"/>\n";
      break;
    case DrawOp::Kind::kLine:
      out_ += "<line x1=\"" + std::to_string(op.rect.left) + ".5\" y1=\"" +
              std::to_string(op.rect.top) + ".5\" x2=\"" + std::to_string(op.rect.right) +
              ".5\" y2=\"" + std::to_string(op.rect.bottom) + ".5\"" + Stroke(op) + "/>\n";
      break;
    case DrawOp::Kind::kImage:
      if (op.bitmap != 0)
        out_ += "<svg" + PositionAttributes(op.rect) + ViewBoxAttribute(op.source) +
                " preserveAspectRatio=\"none\"><image href=\"" + BitmapUrl(op.bitmap) +
                "\"/></svg>\n";
      break;
    case DrawOp::Kind::kText: {
      if (op.opaque)
        out_ +=
            "<rect" + PositionAttributes(op.rect) + " fill=\"" + Colour(op.background) + "\"/>\n";
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
  if (isClipped) out_ += "</svg>\n";
}

void DrawControl(SvgWriter& svg, const ControlView& control) {
  const RECT& rect = control.rect;
  const LONG middle = (rect.top + rect.bottom) / 2 + 4;
  const std::u16string caption = control.prefix ? StripAccessKeys(control.text) : control.text;
  const std::string ink = control.enabled ? "#000000" : "#808080";
  const std::string colour = " fill=\"" + ink + "\"";
  switch (control.kind) {
    case ControlKind::kButton:
      svg.Box(rect, "#e8e8e8", control.defaultButton ? "#000000" : "#808080");
      svg.Write((rect.left + rect.right) / 2, middle, caption, colour + " text-anchor=\"middle\"");
      break;
    case ControlKind::kCheckBox:
    case ControlKind::kRadio: {
      const RECT mark = {rect.left, middle - 10, rect.left + 11, middle + 1};
      const int round = control.kind == ControlKind::kRadio ? 5 : 0;
      svg.Box(mark, "#ffffff", ink, round);
      if (control.checked)
        svg.Box({mark.left + 3, mark.top + 3, mark.right - 3, mark.bottom - 3}, ink, ink, round);
      svg.Write(rect.left + 15, middle, caption, colour);
      break;
    }
    case ControlKind::kGroupBox:
      svg.Box({rect.left, rect.top + 6, rect.right, rect.bottom}, "none", "#b0b0b0");
      svg.Write(rect.left + 8, rect.top + 10, caption,
                colour + " stroke=\"#f0f0f0\" stroke-width=\"4\" paint-order=\"stroke\"");
      break;
    case ControlKind::kComboBox:
    case ControlKind::kListBox: {
      svg.Box(rect, "#ffffff", "#808080");
      const bool isListBox = control.kind == ControlKind::kListBox;
      const LONG rows = isListBox ? (rect.bottom - rect.top) / (kFontHeight + 2) : 1;
      for (LONG row = 0; row < rows; ++row) {
        const std::size_t item =
            isListBox ? static_cast<std::size_t>(row) : static_cast<std::size_t>(control.selection);
        if (item >= control.items.size()) break;
        const LONG top = isListBox ? rect.top + 1 + row * (kFontHeight + 2) : middle - 11;
        if (isListBox && control.selection == row)
          svg.Box({rect.left + 1, top, rect.right - 1, top + kFontHeight + 2}, "#cce0ff", "none");
        svg.Write(rect.left + 4, top + 11, control.items[item], colour);
      }
      break;
    }
    case ControlKind::kEdit:
      svg.Box(rect, "#ffffff", "#808080");
      svg.Write(rect.left + 3, middle, control.text, colour);
      break;
    case ControlKind::kUpDown:
      svg.Box(rect, "#e8e8e8", "#808080");
      svg.Write((rect.left + rect.right) / 2, middle, u"↕", colour + " text-anchor=\"middle\"");
      break;
    case ControlKind::kStatic: {
      if (control.background != 0xFFFFFFFF) svg.Box(rect, Colour(control.background), "none");
      // HTML, because SVG text does not wrap.
      svg.Add("<foreignObject x=\"" + std::to_string(rect.left) + "\" y=\"" +
              std::to_string(rect.top) + "\" width=\"" + std::to_string(rect.right - rect.left) +
              "\" height=\"" + std::to_string(rect.bottom - rect.top) +
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
  svg.Open(rect.left, rect.top);
  svg.Draw(control.drawing);
  svg.Close();
}

// Draws the icon of a message box, at the place that the box reserves for it.
void DrawIcon(SvgWriter& svg, UINT style) {
  struct Icon {
    UINT style;
    const char* fill;
    int round;
    const char16_t* sign;
  };
  constexpr Icon kIcons[] = {{MB_ICONHAND, "#c8323c", 15, u"✕"},
                             {MB_ICONEXCLAMATION, "#9a6b00", 6, u"!"},
                             {MB_ICONASTERISK, "#2463a6", 15, u"i"}};
  const auto icon = std::ranges::find(kIcons, style & MB_ICONMASK, &Icon::style);
  if (icon == std::end(kIcons)) return;
  svg.Box({12, 12, 44, 44}, icon->fill, "none", icon->round);
  svg.Write(28, 33, icon->sign, " fill=\"#ffffff\" font-size=\"20\" text-anchor=\"middle\"");
}

void DrawContents(SvgWriter& svg, const WindowView& window) {
  for (const ControlView& control : window.controls) {
    if (control.visible) DrawControl(svg, control);
  }
  if (window.kind == WindowView::Kind::kMessageBox) DrawIcon(svg, window.messageStyle);
}

}  // namespace

std::string WindowSvg(const WindowView& window, HMODULE module) {
  SvgWriter svg(module);
  const bool isSheet = window.page != nullptr;
  const LONG width = isSheet ? window.pageWidth : window.width;
  const LONG height = (isSheet ? window.pageHeight + kTabHeight : window.height) + kTitleHeight;
  svg.Add("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + std::to_string(width) +
          "\" height=\"" + std::to_string(height) +
          "\" font-family=\"Noto Sans CJK JP, sans-serif\" font-size=\"" +
          std::to_string(kFontHeight) + "\">\n");
  svg.Box({0, 0, width, height}, "#f0f0f0", "#808080");
  svg.Write(6, kTitleHeight - 8, window.title, " font-weight=\"bold\"");
  LONG top = kTitleHeight;
  if (isSheet) {
    LONG left = 0;
    for (std::size_t tab = 0; tab < window.tabs.size(); ++tab) {
      const LONG tabWidth = 9 * static_cast<LONG>(window.tabs[tab].size()) + 10;
      svg.Box({left, top, left + tabWidth, top + kTabHeight},
              static_cast<int>(tab) == window.activeTab ? "#ffffff" : "#d8d8d8", "#b0b0b0");
      svg.Write(left + tabWidth / 2, top + 15, window.tabs[tab],
                " font-size=\"9\" text-anchor=\"middle\"");
      left += tabWidth;
    }
    top += kTabHeight;
  }
  svg.Open(0, top);
  DrawContents(svg, isSheet ? *window.page : window);
  svg.Close();
  svg.Add("</svg>\n");
  return svg.Take();
}

}  // namespace printhost
