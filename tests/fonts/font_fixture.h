// A printer with registered fonts, written and read as bytes at the offsets of the stored format.
#pragma once

#include <algorithm>
#include <array>
#include <cstring>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "resources/resource.h"
#include "tests/support/open_sheet.h"

namespace fonts {

using namespace support;

// One stored record.
struct Record {
  std::array<unsigned char, 232> bytes = {};

  int Word(size_t offset) const { return bytes[offset] | bytes[offset + 1] << 8; }
  std::u16string Text(size_t offset) const {
    std::u16string text;
    for (size_t end = offset + 64; offset < end && Word(offset) != 0; offset += 2) {
      text.push_back(static_cast<char16_t>(Word(offset)));
    }
    return text;
  }
  template <typename Words>
  Record& PutAll(size_t offset, const Words& words) {
    for (int word : words) {
      bytes[offset++] = static_cast<unsigned char>(word);
      bytes[offset++] = static_cast<unsigned char>(word >> 8);
    }
    return *this;
  }
  Record& Put(size_t offset, std::initializer_list<int> words) { return PutAll(offset, words); }
  Record& Put(size_t offset, int word) { return Put(offset, {word}); }
  Record& Put(size_t offset, std::u16string_view text) { return PutAll(offset, text); }
  Record& Name(std::u16string_view name) { return Put(0, name).Put(66, name); }
  bool operator==(const Record&) const = default;
  // Names and then the words behind them, of either kind.
  friend void PrintTo(const Record& record, std::ostream* out) {
    *out << testing::PrintToString(record.Text(0)) << " " << testing::PrintToString(record.Text(66))
         << " " << testing::PrintToString(record.Text(130)) << ", kind " << record.Word(64) << ":";
    for (size_t at = record.Word(64) == 1 ? 130 : 194; at < 232; at += 2) {
      *out << ' ' << static_cast<int16_t>(record.Word(at));
    }
  }
};

// A decorative font as a new one is stored: X20, 5*9 dots, serial numbering off.
inline Record Deco(std::u16string_view name) {
  Record record;
  record.Name(name).Put(130, u"X20");
  return record.Put(194, {1, 1, 5, 9, 1, 1, 2, 1, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 0});
}
// The same upon another resident font (of three letters or more) with one of its cells.
inline Record Deco(std::u16string_view name, std::u16string_view resident, int size, int width,
                   int height) {
  return Deco(name).Put(130, resident).Put(196, {size, width, height});
}
// A barcode font of a kind; the bytes of its parameters count up from 1.
inline Record Bar(std::u16string_view name, int kind = 100) {
  Record record;
  record.Name(name).Put(64, 1).Put(130, {0x2008, kind, 0, 0, 1, 1, 1, 0});
  for (size_t i = 0; i < 40; ++i) record.bytes[146 + i] = static_cast<unsigned char>(i + 1);
  return record;
}
// Every word of it holds the same.
inline Record Filled(int word, int kind) {
  Record record;
  for (size_t at = 0; at < sizeof(Record); at += 2) record.Put(at, word);
  return record.Put(64, kind);
}

using Records = std::vector<Record>;

// Fonts whose names end in their number, from 0.
inline Record Numbered(const char16_t* prefix, int number, bool barcode) {
  std::u16string name = prefix;
  for (char digit : std::to_string(number)) name.push_back(static_cast<char16_t>(digit));
  return barcode ? Bar(name) : Deco(name);
}
inline Records Many(int deco, int bar) {
  Records records;
  for (int i = 0; i < deco; ++i) records.push_back(Numbered(u"D", i, false));
  for (int i = 0; i < bar; ++i) records.push_back(Numbered(u"B", i, true));
  return records;
}

class FontTest : public SheetTest {
 protected:
  void SetUp() override {
    SheetTest::SetUp();
    machine().SetInstalledFontFamilies({u"Installed Face", u"ＭＳ ゴシック"});
  }
  void SetNumber(const std::vector<unsigned char>& bytes) {
    machine().SetData(kPrinter, u"CreateFont Number",
                      {REG_BINARY, BytesOf(bytes.data(), bytes.size())});
  }
  void SetRecords(const Records& records) {
    machine().SetData(kPrinter, u"CreateFont Data",
                      {REG_BINARY, BytesOf(records.data(), records.size() * sizeof(Record))});
  }
  void Store(const Records& records) {
    SetNumber({static_cast<unsigned char>(records.size()), 0, 1, 14, 0, 0});
    SetRecords(records);
  }
  std::vector<std::byte> Data(const char16_t* value) {
    const auto data = machine().Data(kPrinter, value);
    EXPECT_TRUE(data && data->type == REG_BINARY);
    return data ? data->bytes : std::vector<std::byte>();
  }
  bool HasFonts() {
    return machine().Data(kPrinter, u"CreateFont Number") ||
           machine().Data(kPrinter, u"CreateFont Data");
  }
  void ForgetFonts() {
    machine().RemoveData(kPrinter, u"CreateFont Number");
    machine().RemoveData(kPrinter, u"CreateFont Data");
  }
  // The stored records; their number must be that which is announced.
  Records Stored() {
    const std::vector<std::byte> number = Data(u"CreateFont Number");
    const std::vector<std::byte> data = Data(u"CreateFont Data");
    Records records(data.size() / sizeof(Record));
    EXPECT_EQ(data.size() % sizeof(Record), 0u);
    if (!records.empty()) std::memcpy(records.data(), data.data(), data.size());
    const unsigned char expected[] = {static_cast<unsigned char>(records.size()), 0, 1, 14, 0, 0};
    EXPECT_EQ(number, BytesOf(expected));
    return records;
  }
  void SetDensity(int density) {
    kestrel::DriverSettingsBlock block = DefaultBlock();
    block.Printer.HeadDensity = static_cast<uint16_t>(density);
    Keep(block);
  }
  // A control in use is described by a text of the string table, up to the range filled in.
  Step Helps(int id, UINT text) {
    return [=, this](Desk& desk) {
      const auto kind = desk.Control(id).kind;
      const bool focus =
          kind == platform::ControlKind::kEdit || kind == platform::ControlKind::kComboBox;
      EXPECT_TRUE(focus ? desk.Focus(id) : desk.Click(id)) << id;
      WCHAR loaded[512] = {};
      LoadStringW(module_, text, loaded, 512);
      const std::u16string start =
          std::u16string(loaded).substr(0, std::u16string(loaded).find(u'%'));
      EXPECT_EQ(desk.Text(IDC_HELP_TEXT).substr(0, start.size()), start) << id;
    };
  }
  // Opens the font page of the user's defaults, does the steps and presses OK. The fonts stored
  // then.
  Records Register(Steps steps) {
    Ok(kFontTab, std::move(steps));
    return Stored();
  }
};

// A text that a person could not type into a control.
inline Step Put(int id, std::u16string text) {
  return [=](Desk& desk) { SetDlgItemTextW(desk.Top(), id, text.c_str()); };
}
// OK is refused with a message, and the focus is on a field.
inline Steps Refused(std::u16string message, int field, std::u16string title) {
  return {Click(IDOK), CloseMessage(std::move(message), MB_ICONEXCLAMATION, std::move(title)),
          ExpectFocus(field)};
}

// The names that are refused beside the fonts "Deco" and "Bar"; what follows is typed over a good
// one that is longer than a name may be.
constexpr char16_t kFullName[] = u"1234567890123456789012345678901";
inline Steps NameWalk(int edit, const std::u16string& title) {
  constexpr char16_t kTaken[] =
      u"既に同一のフォント名が登録されています。\n別のフォント名に変更して下さい。";
  const std::pair<const char16_t*, const char16_t*> kCases[] = {
      {u"　", u"登録フォント名を入力して下さい。"},
      {u"Installed Face", u"このフォント名は、使用できません\n。別のフォント名を入力して下さい。"},
      {u"Deco", kTaken},
      {u"Bar", kTaken},
      {u"é", u"不正な文字が使用されています。"},
      {u"あいうえおかきくけこさしすせそた", u"文字数が多すぎます。"}};
  Steps steps;
  for (const auto& [name, message] : kCases) {
    steps += {Replace(edit, name), Tab(), Refused(message, edit, title)};
  }
  return {steps, Replace(edit, kFullName + std::u16string(u"2")), ExpectText(edit, kFullName)};
}

// ---- how a dialog looks, in words: what cannot be used stands in parentheses, what can be used in
// part in braces ----
inline std::string Usable(Desk& desk, const std::vector<int>& ids, const std::string& text) {
  const auto on = std::ranges::count_if(ids, [&](int id) { return desk.Control(id).enabled; });
  if (on == std::ssize(ids)) return text;
  return on == 0 ? "(" + text + ")" : "{" + text + "}";
}
// Which radio button is checked, from 0.
inline std::string Radios(Desk& desk, const std::vector<int>& ids) {
  std::string checked;
  for (size_t i = 0; i < ids.size(); ++i) {
    if (desk.Control(ids[i]).checked) checked += std::to_string(i);
  }
  return Usable(desk, ids, checked);
}
// The text and the range of a number.
inline std::string Number(Desk& desk, int edit, int spin) {
  std::string text;
  for (char16_t unit : desk.Text(edit)) text.push_back(static_cast<char>(unit));
  const auto view = desk.Control(spin);
  text += "/" + std::to_string(view.minimum) + ".." + std::to_string(view.maximum);
  return Usable(desk, {edit, spin}, text);
}

// The serial-numbering group of a dialog.
struct SerialIds {
  std::vector<int> switches, modes;  // off and on, decimal and hexadecimal
  int edits[4], spins[4];
};
inline std::string SerialLook(Desk& desk, const SerialIds& ids) {
  std::string look = Radios(desk, ids.switches) + " " + Radios(desk, ids.modes);
  for (int i = 0; i < 4; ++i) look += " " + Number(desk, ids.edits[i], ids.spins[i]);
  return look;
}
constexpr char kSerialOff[] = "0 (0) (1/1..9999) (1/-9999..9999) (1/1..99) (0/0..99)";

// What is refused of serial numbers, on or off, and what is made of odd texts. Leaves numbering on,
// with 5, 0, 12 and 8.
inline Steps SerialWalk(const SerialIds& ids, const std::u16string& title) {
  const struct {
    int field;
    const char16_t *wrong, *message;
  } kCases[] = {
      {0, u"0", u"同一発行枚数は 1 枚以上にして下さい。"},
      {0, u"4294967301", u"同一発行枚数は 9999 枚以下にして下さい。"},
      {1, u"-10000", u"増減値は -9999 以上にして下さい。"},
      {1, u"10000", u"増減値は 9999 以下にして下さい。"},
      {2, u"0", u"連番有効桁数は 1 枚以上にして下さい。"},
      {2, u"100", u"連番有効桁数は 99 枚以下にして下さい。"},
      {3, u"-1", u"下位無効桁数は 0 枚以上にして下さい。"},
      {3, u"100", u"下位無効桁数は 99 枚以下にして下さい。"},
  };
  Steps steps = {Click(ids.switches[1])};
  for (const auto& c : kCases) steps += Put(ids.edits[c.field], c.wrong);
  for (const auto& c : kCases) {
    const int edit = ids.edits[c.field];
    steps += {Put(edit, c.wrong), Refused(std::u16string(u"連番設定\n") + c.message, edit, title),
              Replace(edit, u"12"), Type(edit, u"x"), ExpectText(edit, u"12")};
  }
  steps +=
      {Replace(ids.edits[0], u"0"), Click(ids.switches[0]), Click(IDOK),
       CloseMessage(std::u16string(u"連番設定\n") + kCases[0].message, MB_ICONEXCLAMATION, title),
       Click(ids.switches[1])};
  return {steps, Put(ids.edits[0], u"5-3"), Replace(ids.edits[1], u""), Replace(ids.edits[3], u"7"),
          Spin(ids.spins[3], 1)};
}

}  // namespace fonts
