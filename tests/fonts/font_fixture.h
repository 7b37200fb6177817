// A printer with registered fonts, the page and the two dialogs over them, a barcode library.
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

// One stored record as words, at the offsets of its bytes.
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

// A decorative font as a new one is stored, of a resident font and its cell in dots.
inline Record Deco(std::u16string name, std::u16string_view resident = u"X20", int size = 1,
                   int width = 5, int height = 9) {
  return Record()
      .Name(name)
      .Put(130, resident)
      .Put(194, {1, size, width, height, 1, 1, 2, 1, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 0});
}
// A barcode font of a kind; the words of its parameters count up from 1, or are all the same.
inline Record Bar(std::u16string name, int kind = 100, int parameters = -1) {
  Record record = Record().Name(name).Put(64, {1}).Put(130, {0x2008, kind, 0, 0, 1, 1, 1, 0});
  for (int i = 0; i < 20; ++i) record.Put(146 + 2u * i, {parameters < 0 ? i + 1 : parameters});
  return record;
}
constexpr int kInitial = 0x4040;  // parameters as the library's Init leaves them
// Fonts whose names end in their number, from 0.
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

// A barcode detail library whose kinds all do the same; an entry point may be missing. Its calls:
// "I" and "S" for Init and ShowDlg, the block's last word, the density if it is not 203.
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
      entries[kind.init] = entry(&Answer<'I'>);
      entries[kind.showDialog] = entry(&Answer<'S'>);
    }
    entries.erase(missing);
    machine.RegisterModule(u"QM610rBAR.DLL", entries);
  }

  // "種" in code page 932, and more than a name may have.
  static void WINAPI Name(char* name) {
    std::memcpy(name, "\216\355456789012345678901234567890123", 32);
  }
  template <char kEntry>
  static int16_t WINAPI Answer(uint16_t* block, const uint16_t* words, HWND dialog) {
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
    Keep(block);
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
  // What is stored after the steps on the font page of the user's defaults, and OK.
  void Gives(const Records& expected, Steps steps) {
    Ok(kFontTab, std::move(steps));
    EXPECT_EQ(Stored(), expected);
  }
};

// While some are switched on, each control describes itself in the help text of its place, counted
// from the first one's; what is filled in, text after text.
inline Step Describes(UINT first, std::vector<int> ids, std::vector<int> on,
                      std::vector<std::u16string> fillings) {
  return [=](Desk& desk) {
    auto filling = fillings.begin();
    for (UINT text = first; int control : ids) {
      for (int id : on) desk.Click(id);
      EXPECT_TRUE(desk.Click(control) || desk.Focus(control)) << control;
      std::u16string help(512, 0);
      help.resize(
          static_cast<size_t>(LoadStringW(kestrel::ModuleInstance(), text++, help.data(), 512)));
      for (size_t at; (at = help.find(u"%s")) < help.size();) help.replace(at, 2, *filling++);
      EXPECT_EQ(desk.Text(IDC_HELP_TEXT), help) << control;
    }
  };
}

// The two kinds of fonts: their controls on the page, their dialogs.
struct Kind {
  int list, create, change, remove, reference, name;
  const char16_t* text;
};
constexpr Kind kDeco = {1131, 1133, 1047, 1048, 1179, IDC_DECO_FONT_NAME, u"装飾フォント"};
constexpr Kind kBar = {1132, 1049, 1050, 1051, 1178, IDC_BAR_FONT_NAME, u"バーコードフォント"};
inline std::u16string Registers(const Kind& kind) { return std::u16string(kind.text) + u"の登録"; }
inline std::u16string Changes(const Kind& kind) { return std::u16string(kind.text) + u"の変更"; }
constexpr char16_t kPage[] = u"クリエイトフォント";

// A new font: what is done in the dialog, and its name. OK must be taken.
inline Steps New(const Kind& kind, std::u16string name, const Steps& steps = {}) {
  return {Click(kind.create), steps, Replace(kind.name, name), Click(IDOK), ExpectTitle(kPage)};
}
// The selected font changed. Messages may follow OK.
inline Steps Change(const Kind& kind, const Steps& steps = {}, const Steps& atOk = {}) {
  return {Click(kind.change), steps, Click(IDOK), atOk, ExpectTitle(kPage)};
}
// A text that a person could not type into a control.
inline Step Put(int id, std::u16string text) {
  return [=](Desk& desk) { SetDlgItemTextW(desk.Top(), id, text.c_str()); };
}
// What a field takes: a number below and one above are refused at OK, a letter behind a good one
// and a plus sign at once. Of several wrong fields the first is told and gets the focus.
struct Bounds {
  int field;
  const char16_t *what, *unit, *below, *least, *most, *above, *good;
};
inline Steps Refuses(const std::u16string& title, const std::u16string& group,
                     const std::vector<Bounds>& fields) {
  Steps steps;
  for (const Bounds& f : fields) steps += Put(f.field, f.above);
  for (const Bounds& f : fields) {
    const std::u16string is = group + f.what + u"は ", unit = std::u16string(u" ") + f.unit;
    const auto refused = [&](const char16_t* number, const char16_t* bound, const char16_t* end) {
      return Steps{Put(f.field, number), Click(IDOK),
                   CloseMessage(is + bound + unit + end, MB_ICONEXCLAMATION, title),
                   ExpectFocus(f.field)};
    };
    steps += {refused(f.below, f.least, u"以上にして下さい。"),
              refused(f.above, f.most, u"以下にして下さい。"),
              Replace(f.field, f.good),
              Type(f.field, u"x"),
              ExpectText(f.field, f.good),
              Paste(f.field, u"+1"),
              ExpectText(f.field, f.good)};
  }
  return steps;
}

// How groups of controls look: which radio button is checked, a number and its range, a list's
// entries and the selected one; what cannot be used stands in parentheses, in part in braces.
using Groups = std::vector<std::vector<int>>;
inline Step Looks(Groups groups, std::string expected) {
  return [=](Desk& desk) {
    std::string look;
    for (const auto& ids : groups) {
      std::string text;
      size_t usable = 0;
      for (size_t i = 0; i < ids.size(); ++i) {
        const auto view = desk.Control(ids[i]);
        usable += view.enabled;
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
      const bool all = usable == ids.size();
      look += all ? text + " " : usable == 0 ? "(" + text + ") " : "{" + text + "} ";
    }
    EXPECT_EQ(look, expected + " ");
  };
}

// Serial numbering: off and on, decimal and hexadecimal, the four numbers.
const Groups kDecoSerial = {{1148, 1147}, {1146, 1145}, {1149, 1150},
                            {1151, 1152}, {1153, 1154}, {1155, 1156}};
const Groups kBarSerial = {{1030, 1029}, {1032, 1031}, {1103, 1163},
                           {1105, 1164}, {1111, 1112}, {1113, 1114}};
constexpr char kSerialOff[] = "0 (0) (1/1..9999) (1/-9999..9999) (1/1..99) (0/0..99)";

// Switches numbering on; what is refused of it, and what is made of odd texts. Leaves 5, 0, 12, 8.
inline Steps SerialWalk(const Groups& ids, const std::u16string& title) {
  const int same = ids[2][0], step = ids[3][0], digits = ids[4][0], low = ids[5][0];
  const std::vector<Bounds> bounds = {
      {same, u"同一発行枚数", u"枚", u"0", u"1", u"9999", u"4294967301", u"12"},
      {step, u"増減値", u"", u"-10000", u"-9999", u"9999", u"10000", u"-12"},
      {digits, u"連番有効桁数", u"枚", u"0", u"1", u"99", u"100", u"12"},
      {low, u"下位無効桁数", u"枚", u"-1", u"0", u"99", u"100", u"7"}};
  // An up-down that accepts more texts or fewer changes nothing.
  Steps pasted;
  for (const platform::BuddyReading reading :
       {platform::BuddyReading::kDigitsAndMinus, platform::BuddyReading::kLeadingNumber,
        platform::BuddyReading::kWholeText}) {
    pasted += [reading](Desk& desk) { desk.SetBuddyReading(reading); };
    for (const char16_t* text : {u"+3", u" 9", u"9x"})
      pasted += {Paste(low, text), ExpectText(low, u"7")};
  }
  return {Click(ids[0][1]),
          Refuses(title, u"連番設定\n", bounds),
          pasted,
          Put(same, u"5-3"),
          Replace(step, u""),
          Spin(ids[5][1], 1)};
}

}  // namespace fonts
