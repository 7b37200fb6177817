// A printer with registered fonts, a fake barcode library, and steps for the font page and its two
// dialogs.
#pragma once

#include <algorithm>
#include <array>
#include <cstring>

#include "driver/instance.h"
#include "fonts/barcode_kinds.h"
#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace fonts {

using namespace support;

// A stored record as 16-bit words. Offsets are in bytes.
struct Record : std::array<uint16_t, 116> {
  template <typename Values = std::initializer_list<int>>
  Record& Put(size_t offset, const Values& values) {
    std::ranges::copy(values, data() + offset / 2);
    return *this;
  }
  Record& Name(std::u16string name) {
    name.resize(32);
    return Put(0, name).Put(66, name);
  }
  friend void PrintTo(const Record& record, std::ostream* out) {
    for (uint16_t word : record) *out << static_cast<int16_t>(word) << ' ';
  }
};
using Records = std::vector<Record>;

// Returns a new decorative font as the dialog stores it; width and height are those of the cell in
// dots.
inline Record Deco(std::u16string name, std::u16string_view resident = u"X20", int size = 1,
                   int width = 5, int height = 9) {
  return Record()
      .Name(name)
      .Put(130, resident)
      .Put(194, {1, size, width, height, 1, 1, 2, 1, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 0});
}
// Returns a barcode font. The words of its parameters count up from 1, or all equal parameters.
inline Record Bar(std::u16string name, int kind = 100, int parameters = -1) {
  Record record = Record().Name(name).Put(64, {1}).Put(130, {0x2008, kind, 0, 0, 1, 1, 1, 0});
  for (int i = 0; i < 20; ++i) record.Put(146 + 2u * i, {parameters < 0 ? i + 1 : parameters});
  return record;
}
constexpr int kInitial = 0x4040;  // each word of the parameters after the fake library's Init
// Returns fonts named D00, D01… and B00, B01….
inline Records Many(int deco, int bar) {
  Records records;
  const auto name = [](char16_t kind, int i) {
    return std::u16string{kind, static_cast<char16_t>(u'0' + i / 10),
                          static_cast<char16_t>(u'0' + i % 10)};
  };
  for (int i = 0; i < deco; ++i) records.push_back(Deco(name(u'D', i)));
  for (int i = 0; i < bar; ++i) records.push_back(Bar(name(u'B', i)));
  return records;
}

// A barcode detail library in which all kinds behave alike; one entry point may be missing. calls
// records each call as "I" for Init or "S" for ShowDlg, then the last word of the block, then "@"
// and the density unless it is 203.
struct FakeLibrary {
  static inline std::string calls;
  static inline int16_t initResult, showResult;

  static void Install(platform::Machine& machine, const char* missing = "", int16_t init = 0,
                      int16_t show = 1) {
    calls.clear();
    initResult = init;
    showResult = show;
    const auto entry = [](auto* f) {
      return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(f));
    };
    platform::Machine::EntryPoints entries;
    for (const kestrel::BarcodeKindRow& kind : kestrel::kBarcodeKinds) {
      entries[kind.getName] = entry(&Name);
      entries[kind.init] = entry(&EditBlock<'I'>);
      entries[kind.showDialog] = entry(&EditBlock<'S'>);
    }
    entries.erase(missing);
    machine.RegisterModule(u"QM610rBAR.DLL", entries);
  }

  // Writes "種" in code page 932 and digits, 32 bytes without a terminator.
  static void WINAPI Name(char* name) {
    std::memcpy(name, "\216\355456789012345678901234567890123", 32);
  }
  template <char kEntry>
  static int16_t WINAPI EditBlock(uint16_t* block, const uint16_t* words, HWND dialog) {
    calls += kEntry + std::to_string(block[19]);
    if (words[0] != 203) calls += "@" + std::to_string(words[0]);
    EXPECT_EQ(std::tuple(words[1], words[2], words[3]), std::tuple(words[0], 0, 0));
    EXPECT_NE(GetDlgItem(dialog, IDC_BAR_FONT_KIND), nullptr);
    if (kEntry == 'I') std::fill_n(block, 20, kInitial);
    if (kEntry == 'S') block[7] = 9;
    return kEntry == 'I' ? initResult : showResult;
  }
};

class FontTest : public SheetTest {
 protected:
  void SetUp() override {
    SheetTest::SetUp();
    machine().SetInstalledFontFamilies({u"Installed Face", std::u16string(31, u'F')});
    FakeLibrary::Install(machine());
  }
  void SetDensity(int density) {
    kestrel::DriverSettingsBlock block = DefaultBlock();
    block.Printer.HeadDensity = static_cast<uint16_t>(density);
    StoreDefaults(block);
  }
  void Set(const char16_t* value, std::string_view bytes) {
    machine().SetData(kPrinter, value, {REG_BINARY, BytesOf(bytes.data(), bytes.size())});
  }
  std::string Get(const char16_t* value) {
    const auto data = machine().Data(kPrinter, value).value();
    EXPECT_EQ(data.type, REG_BINARY);
    return {reinterpret_cast<const char*>(data.bytes.data()), data.bytes.size()};
  }
  static std::string Number(size_t count) { return {static_cast<char>(count), 0, 1, 14, 0, 0}; }
  void Store(const Records& records) {
    Set(u"CreateFont Number", Number(records.size()));
    Set(u"CreateFont Data",
        {reinterpret_cast<const char*>(records.data()), records.size() * sizeof(Record)});
  }
  Records Stored() {
    const std::string data = Get(u"CreateFont Data");
    Records records(data.size() / sizeof(Record));
    data.copy(reinterpret_cast<char*>(records.data()), records.size() * sizeof(Record));
    EXPECT_EQ(Get(u"CreateFont Number"), Number(records.size()));
    EXPECT_EQ(data.size() % sizeof(Record), 0u);
    return records;
  }
  // Expects the stored records after the steps on the font page of the user-default sheet and OK.
  void ExpectStored(const Records& expected, Steps steps) {
    Ok(kFontTab, std::move(steps));
    EXPECT_EQ(Stored(), expected);
  }
};

// Expects that each control, once used, shows its help text. The texts have consecutive string ids
// from first; arguments replace their "%s" in order. Clicks the enablers before each control.
inline Step ExpectHelp(UINT first, std::vector<int> ids, std::vector<int> enablers,
                       std::vector<std::u16string> arguments) {
  return [=](Desk& desk) {
    auto argument = arguments.begin();
    for (UINT text = first; int control : ids) {
      for (int id : enablers) desk.Click(id);
      EXPECT_TRUE(desk.Click(control) || desk.Focus(control)) << control;
      std::u16string help(512, 0);
      help.resize(
          static_cast<size_t>(LoadStringW(kestrel::ModuleInstance(), text++, help.data(), 512)));
      for (size_t at; (at = help.find(u"%s")) < help.size();) help.replace(at, 2, *argument++);
      EXPECT_EQ(desk.Text(IDC_HELP_TEXT), help) << control;
    }
  };
}

// A kind of fonts: its controls on the page, the name field of its dialog and its label.
struct Kind {
  int list, create, change, remove, reference, name;
  const char16_t* text;
};
constexpr Kind kDeco = {1131, 1133, 1047, 1048, 1179, IDC_DECO_FONT_NAME, u"装飾フォント"};
constexpr Kind kBar = {1132, 1049, 1050, 1051, 1178, IDC_BAR_FONT_NAME, u"バーコードフォント"};
inline std::u16string RegisterTitle(const Kind& kind) {
  return std::u16string(kind.text) + u"の登録";
}
inline std::u16string ChangeTitle(const Kind& kind) {
  return std::u16string(kind.text) + u"の変更";
}
constexpr char16_t kPage[] = u"クリエイトフォント";

// RegisterTitle a font with the steps in its dialog. OK has to succeed.
inline Steps New(const Kind& kind, std::u16string name, const Steps& steps = {}) {
  return {Click(kind.create), steps, Replace(kind.name, name), Click(IDOK), ExpectTitle(kPage)};
}
// ChangeTitle the selected font with the steps in its dialog. atOk closes messages after OK.
inline Steps Change(const Kind& kind, const Steps& steps = {}, const Steps& atOk = {}) {
  return {Click(kind.change), steps, Click(IDOK), atOk, ExpectTitle(kPage)};
}
// Sets a control's text directly, also to a text that a user could not type.
inline Step Put(int id, std::u16string text) {
  return [=](Desk& desk) { SetDlgItemTextW(desk.Top(), id, text.c_str()); };
}
// The limits of a numeric field: texts below and above them, a valid one, and the words of the
// messages.
struct Bounds {
  int field;
  const char16_t *what, *unit, *below, *least, *most, *above, *good;
};
// Expects that OK rejects numbers below and above the limits, and that the field rejects a letter
// and a plus sign at once. Of several invalid fields the message names the first one, which gets
// the focus.
inline Steps ExpectRejected(const std::u16string& title, const std::u16string& group,
                            const std::vector<Bounds>& fields) {
  Steps steps;
  for (const Bounds& f : fields) steps += Put(f.field, f.above);
  for (const Bounds& f : fields) {
    const std::u16string is = group + f.what + u"は ", unit = std::u16string(u" ") + f.unit;
    const auto rejected = [&](const char16_t* number, const char16_t* bound, const char16_t* end) {
      return Steps{Put(f.field, number), Click(IDOK),
                   CloseMessage(is + bound + unit + end, MB_ICONEXCLAMATION, title),
                   ExpectFocus(f.field)};
    };
    steps += {rejected(f.below, f.least, u"以上にして下さい。"),
              rejected(f.above, f.most, u"以下にして下さい。"),
              Replace(f.field, f.good),
              Type(f.field, u"x"),
              ExpectText(f.field, f.good),
              Paste(f.field, u"+1"),
              ExpectText(f.field, f.good)};
  }
  return steps;
}

// Expects the state of groups of controls, separated by spaces: the index of the checked radio
// button, "value/minimum..maximum" of an edit with its up-down, or a list's entries and the index
// of the selected one. A group in parentheses is disabled, a group in braces is disabled in part.
using Groups = std::vector<std::vector<int>>;
inline Step ExpectGroups(Groups groups, std::string expected) {
  return [=](Desk& desk) {
    std::string state;
    for (const auto& ids : groups) {
      std::string text;
      size_t enabled = 0;
      for (size_t i = 0; i < ids.size(); ++i) {
        const auto view = desk.Control(ids[i]);
        enabled += view.enabled;
        for (const auto& item : view.items) text.append(item.begin(), item.end()) += ' ';
        if (view.kind == platform::ControlKind::kEdit) {
          text.append(view.text.begin(), view.text.end());
        } else if (view.kind == platform::ControlKind::kUpDown) {
          text += "/" + std::to_string(view.minimum) + ".." + std::to_string(view.maximum);
          EXPECT_EQ(view.buddy, ids[0]);
        } else if (view.checked || !view.items.empty()) {
          text += std::to_string(view.checked ? static_cast<int>(i) : view.selection);
        }
      }
      const bool all = enabled == ids.size();
      state += all ? text + " " : enabled == 0 ? "(" + text + ") " : "{" + text + "} ";
    }
    EXPECT_EQ(state, expected + " ");
  };
}

// The controls of serial numbering: off and on, decimal and hexadecimal, the four numbers.
const Groups kDecoSerial = {{1148, 1147}, {1146, 1145}, {1149, 1150},
                            {1151, 1152}, {1153, 1154}, {1155, 1156}};
const Groups kBarSerial = {{1030, 1029}, {1032, 1031}, {1103, 1163},
                           {1105, 1164}, {1111, 1112}, {1113, 1114}};
constexpr char kSerialOff[] = "0 (0) (1/1..9999) (1/-9999..9999) (1/1..99) (0/0..99)";

// Turns serial numbering on and tests each number with valid and invalid texts. Leaves the numbers
// 5, 0, 12 and 8.
inline Steps TestSerialNumbers(const Groups& ids, const std::u16string& title) {
  const int same = ids[2][0], step = ids[3][0], digits = ids[4][0], low = ids[5][0];
  const std::vector<Bounds> bounds = {
      {same, u"同一発行枚数", u"枚", u"0", u"1", u"9999", u"4294967301", u"12"},
      {step, u"増減値", u"", u"-10000", u"-9999", u"9999", u"10000", u"-12"},
      {digits, u"連番有効桁数", u"枚", u"0", u"1", u"99", u"100", u"12"},
      {low, u"下位無効桁数", u"枚", u"-1", u"0", u"99", u"100", u"7"}};
  // The result does not depend on which texts an up-down accepts.
  Steps pasted;
  for (const platform::BuddyReading reading :
       {platform::BuddyReading::kDigitsAndMinus, platform::BuddyReading::kLeadingNumber,
        platform::BuddyReading::kWholeText}) {
    pasted += [reading](Desk& desk) { desk.SetBuddyReading(reading); };
    for (const char16_t* text : {u"+3", u" 9", u"9x"})
      pasted += {Paste(low, text), ExpectText(low, u"7")};
  }
  return {Click(ids[0][1]),
          ExpectRejected(title, u"連番設定\n", bounds),
          pasted,
          Put(same, u"5-3"),
          Replace(step, u""),
          Spin(ids[5][1], 1)};
}

}  // namespace fonts
