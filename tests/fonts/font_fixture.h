// A printer with registered fonts, a fake barcode library, and steps for the font page and its two
// dialogs.
#pragma once

#include <array>
#include <cstring>

#include "fonts/barcode_kinds.h"
#include "fonts/font_record.h"
#include "paper/paper_info.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace fonts {

using namespace kestrel;
using namespace support;

// A stored record. Equal records have equal bytes.
struct Font : FontRecord {
  Font& Name(std::u16string name) {
    name.resize(kFontNameLength);
    name.copy(FontName, kFontNameLength);
    name.copy(Deco.DecoFontName, kFontNameLength);  // the same bytes as BarFontName
    return *this;
  }
  template <typename Value>
  Font& With(Value DecoFontInfo::*field, int value) {
    Deco.*field = static_cast<Value>(value);
    return *this;
  }
  Font& Magnified(int x, int y) {
    return With(&DecoFontInfo::ExpandX, x).With(&DecoFontInfo::ExpandY, y);
  }
  // Sets the serial numbering, which both kinds store in this order.
  Font& Numbered(bool on, bool hexadecimal, const std::array<int16_t, 4>& numbers) {
    const size_t range =
        offsetof(FontRecord, Deco) +
        (FontKind == kBarcodeFont ? offsetof(BarFontInfo, Range) : offsetof(DecoFontInfo, Range));
    Put(this, range, uint16_t{on});
    Put(this, range + 2, uint16_t{hexadecimal});
    Put(this, range + 4, numbers);
    return *this;
  }
  Font& Parameter(size_t index, int word) {
    Put(Bar.BarcodeParam, 2 * index, static_cast<int16_t>(word));
    return *this;
  }
  friend bool operator==(const Font& a, const Font& b) {
    return std::memcmp(&a, &b, sizeof(Font)) == 0;
  }
};
using Fonts = std::vector<Font>;

// A barcode detail library in which all kinds behave alike. Init fills the block with kInitial;
// ShowDlg sets the parameter kEdited to 9. Both log their names.
constexpr int kInitial = 0x4040;
constexpr int kEdited = 7;
struct FakeLibrary {
  static inline std::vector<std::string> calls;
  static inline int16_t initResult, showResult;  // 1: confirmed
  static inline uint16_t density;                // that the calls have to pass

  static void Register(platform::Machine& machine, const std::string& missing = "") {
    calls.clear();
    const auto entry = [](auto* f) {
      return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(f));
    };
    platform::Machine::EntryPoints entries;
    for (const BarcodeKindRow& kind : kBarcodeKinds) {
      entries[kind.getName] = entry(&GetBarName);
      entries[kind.init] = entry(&Init);
      entries[kind.showDialog] = entry(&ShowDlg);
    }
    entries.erase(missing);
    machine.RegisterModule(u"QM610rBAR.DLL", entries);
  }
  static void WINAPI GetBarName(char* name) {
    std::memcpy(name, "\216\355456789012345678901234567890123", 32);
  }
  static void Log(const char* name, const uint16_t* info, HWND dialog) {
    calls.push_back(name);
    EXPECT_EQ(std::vector(info, info + 4), (std::vector<uint16_t>{density, density, 0, 0}));
    EXPECT_NE(GetDlgItem(dialog, IDC_BAR_FONT_KIND), nullptr);
  }
  static int16_t WINAPI Init(uint16_t* block, const uint16_t* info, HWND dialog) {
    Log("Init", info, dialog);
    std::fill_n(block, kBarcodeLibrarySize / 2, kInitial);
    return initResult;
  }
  static int16_t WINAPI ShowDlg(uint16_t* block, const uint16_t* info, HWND dialog) {
    Log("ShowDlg", info, dialog);
    block[kEdited] = 9;
    return showResult;
  }
};

// The four numbers of a new font: same-issue count, step, active digits, low digits left out.
constexpr std::array<int16_t, 4> kNewNumbers = {1, 1, 1, 0};

// Returns a new decorative font. width and height are those of the cell in dots.
inline Font Deco(const std::u16string& name, std::u16string_view resident = u"X20",
                 int size = kSize5x9, int width = 5, int height = 9) {
  Font font = {};
  font.FontKind = kDecorativeFont;
  resident.copy(font.Deco.ResiFontName, kFontNameLength);
  font.Deco.Size = static_cast<uint16_t>(size);
  font.Deco.SizeX = static_cast<int16_t>(width);
  font.Deco.SizeY = static_cast<int16_t>(height);
  font.Deco.Decorate = font.Deco.Pitch = 1;
  font.Deco.Unit = kDot;
  return font.Name(name).Magnified(1, 1).Numbered(false, false, kNewNumbers);
}
inline Font Bar(const std::u16string& name, int kind = 100, int parameters = kInitial) {
  Font font = {};
  font.FontKind = kBarcodeFont;
  for (size_t i = 0; i < kBarcodeLibrarySize / 2; ++i) font.Parameter(i, parameters);
  font.Bar.FontCategory = kBarcodeStringFont;
  font.Bar.BarcodeKind = static_cast<uint16_t>(kind);
  return font.Name(name).Numbered(false, false, kNewNumbers);
}
inline Fonts Many(int deco, int bar) {
  const auto name = [](char kind, int i) {
    const std::string text = kind + std::to_string(i);
    return std::u16string(text.begin(), text.end());
  };
  Fonts fonts;
  for (int i = 0; i < deco; ++i) fonts.push_back(Deco(name('D', i)));
  for (int i = 0; i < bar; ++i) fonts.push_back(Bar(name('B', i)));
  return fonts;
}

// A kind of fonts: its controls on the page and in its dialog, and its label.
struct KindControls {
  int list, create, change, remove, reference;
  int name, serialOn, serialOff, hexadecimal, decimal;
  int sameIssue, step, activeDigits, lowDigits;
  const char16_t* label;

  std::u16string RegisterTitle() const { return std::u16string(label) + u"の登録"; }
  std::u16string ChangeTitle() const { return std::u16string(label) + u"の変更"; }
};
constexpr KindControls kDeco = {
    IDC_CREATE_FONT_DECO_LIST,   IDC_CREATE_FONT_DECO_NEW,       IDC_CREATE_FONT_DECO_EDIT,
    IDC_CREATE_FONT_DECO_DELETE, IDC_CREATE_FONT_DECO_REFERENCE, IDC_DECO_FONT_NAME,
    IDC_DECO_FONT_SERIAL_ON,     IDC_DECO_FONT_SERIAL_OFF,       IDC_DECO_FONT_HEXADECIMAL,
    IDC_DECO_FONT_DECIMAL,       IDC_DECO_FONT_PRINT_NUM,        IDC_DECO_FONT_INCREMENT,
    IDC_DECO_FONT_ACTIVE_DIGITS, IDC_DECO_FONT_LOW_DIGITS,       u"装飾フォント"};
constexpr KindControls kBar = {
    IDC_CREATE_FONT_BAR_LIST,   IDC_CREATE_FONT_BAR_NEW,       IDC_CREATE_FONT_BAR_EDIT,
    IDC_CREATE_FONT_BAR_DELETE, IDC_CREATE_FONT_BAR_REFERENCE, IDC_BAR_FONT_NAME,
    IDC_BAR_FONT_SERIAL_ON,     IDC_BAR_FONT_SERIAL_OFF,       IDC_BAR_FONT_HEXADECIMAL,
    IDC_BAR_FONT_DECIMAL,       IDC_BAR_FONT_PRINT_NUM,        IDC_BAR_FONT_INCREMENT,
    IDC_BAR_FONT_ACTIVE_DIGITS, IDC_BAR_FONT_LOW_DIGITS,       u"バーコードフォント"};
constexpr char16_t kPageTitle[] = u"クリエイトフォント";

// Registers a font with the steps in its dialog. OK has to succeed.
inline Steps New(const KindControls& kind, std::u16string name, const Steps& steps = {}) {
  return {Click(kind.create), steps, Replace(kind.name, name), Click(IDOK),
          ExpectTitle(kPageTitle)};
}
// Changes the selected font with the steps in its dialog. atOk closes messages after OK.
inline Steps Change(const KindControls& kind, const Steps& steps = {}, const Steps& atOk = {}) {
  return {Click(kind.change), steps, Click(IDOK), atOk, ExpectTitle(kPageTitle)};
}
// Sets a control's text directly, also to a text that a user could not type.
inline Step SetText(int id, std::u16string text) {
  return [=](Desk& desk) { SetDlgItemTextW(desk.Top(), id, text.c_str()); };
}

// A numeric field, the words of its messages, its limits and the nearest numbers outside.
struct FieldLimits {
  int field;
  const char16_t *label, *unit, *below, *minimum, *maximum, *above;
};
// Expects that OK rejects numbers outside the limits of each field, whatever the later fields have.
inline Steps ExpectRejected(const std::u16string& title, const std::u16string& group,
                            const std::vector<FieldLimits>& fields) {
  Steps steps;
  for (const FieldLimits& limits : fields) steps += SetText(limits.field, limits.above);
  for (const FieldLimits& limits : fields) {
    const auto rejected = [&](const std::u16string& bound, const std::u16string& end) {
      const auto text = group + limits.label + u"は " + bound + u" " + limits.unit + end;
      return Steps{Click(IDOK), CloseMessage(text, MB_ICONEXCLAMATION, title),
                   ExpectFocus(limits.field)};
    };
    steps +=
        {rejected(limits.maximum, u"以下にして下さい。"), SetText(limits.field, limits.below),
         rejected(limits.minimum, u"以上にして下さい。"), SetText(limits.field, limits.maximum)};
  }
  return steps;
}

class FontTest : public SheetTest {
 protected:
  void SetUp() override {
    SheetTest::SetUp();
    FakeLibrary::initResult = 0;
    FakeLibrary::showResult = 1;
    FakeLibrary::density = 203;
    FakeLibrary::Register(machine());
  }
  void SetDensity(int density) {
    FakeLibrary::density = static_cast<uint16_t>(density);
    DriverSettingsBlock block = DefaultBlock();
    block.Printer.HeadDensity = static_cast<uint16_t>(density);
    StoreDefaults(block);
  }
  void Set(const char16_t* value, const std::vector<std::byte>& bytes) {
    machine().SetData(kPrinter, value, {REG_BINARY, bytes});
  }
  std::vector<std::byte> Get(const char16_t* value) {
    const auto data = machine().Data(kPrinter, value).value();
    EXPECT_EQ(data.type, REG_BINARY);
    return data.bytes;
  }
  static std::vector<std::byte> Number(size_t count) {
    return BytesOf(FontNumber{static_cast<uint16_t>(count), 0x0E01, 0});
  }
  void Store(const Fonts& fonts) {
    Set(u"CreateFont Number", Number(fonts.size()));
    Set(u"CreateFont Data", BytesOf(fonts.data(), fonts.size() * sizeof(Font)));
  }
  Fonts Stored() {
    const auto data = Get(u"CreateFont Data");
    Fonts fonts(data.size() / sizeof(Font));
    if (!fonts.empty()) std::memcpy(fonts.data(), data.data(), fonts.size() * sizeof(Font));
    EXPECT_EQ(Get(u"CreateFont Number"), Number(fonts.size()));
    EXPECT_EQ(data.size() % sizeof(Font), 0u);
    return fonts;
  }
  // Expects the stored fonts after the steps on the font page of the user-default sheet and OK.
  void ExpectStored(const Fonts& expected, Steps steps) {
    Ok(kFontTab, std::move(steps));
    EXPECT_EQ(Stored(), expected);
  }
  // Expects that the steps in the dialog and OK change a stored font to another.
  void ExpectChange(const KindControls& kind, const Font& stored, const Font& expected,
                    const Steps& steps = {}, const Steps& atOk = {}) {
    Store({stored});
    ExpectStored({expected}, Change(kind, steps, atOk));
  }
};

}  // namespace fonts
