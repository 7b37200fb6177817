// A printer with registered fonts, written and read as bytes at the offsets of the stored format.
#pragma once

#include <array>
#include <cstring>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "resources/resource.h"
#include "tests/support/open_sheet.h"
#include "tests/support/settings.h"
#include "tests/support/test_machine.h"

namespace fonts {

// One stored record.
struct Record {
  std::array<unsigned char, 232> bytes = {};

  int Word(size_t offset) const { return bytes[offset] | bytes[offset + 1] << 8; }
  int Signed(size_t offset) const { return static_cast<int16_t>(Word(offset)); }
  std::u16string Text(size_t offset) const {
    std::u16string text;
    for (size_t i = 0; i < 32 && Word(offset + 2 * i) != 0; ++i) {
      text.push_back(static_cast<char16_t>(Word(offset + 2 * i)));
    }
    return text;
  }
  Record& Put(size_t offset, int word) {
    bytes[offset] = static_cast<unsigned char>(word);
    bytes[offset + 1] = static_cast<unsigned char>(word >> 8);
    return *this;
  }
  Record& Put(size_t offset, std::initializer_list<int> words) {
    for (int word : words) {
      Put(offset, word);
      offset += 2;
    }
    return *this;
  }
  Record& Put(size_t offset, std::u16string_view text) {
    for (char16_t unit : text) {
      Put(offset, unit);
      offset += 2;
    }
    return *this;
  }
  bool operator==(const Record&) const = default;
  // Names and then the words behind them, of either kind.
  friend void PrintTo(const Record& record, std::ostream* out) {
    *out << testing::PrintToString(record.Text(0)) << " " << testing::PrintToString(record.Text(66))
         << " " << testing::PrintToString(record.Text(130)) << ", kind " << record.Word(64) << ":";
    for (size_t at = record.Word(64) == 1 ? 130 : 194; at < 232; at += 2) {
      *out << ' ' << record.Signed(at);
    }
  }
};

// A decorative font as a new one is stored: X20, 5*9 dots, serial numbering off.
inline Record Deco(std::u16string_view name) {
  Record record;
  record.Put(0, name).Put(64, 0).Put(66, name).Put(130, u"X20");
  record.Put(194, {1, 1, 5, 9, 1, 1, 2, 1, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 0});
  return record;
}
// The same upon another resident font (of three letters or more) with one of its cells.
inline Record Deco(std::u16string_view name, std::u16string_view resident, int size, int width,
                   int height) {
  Record record = Deco(name);
  record.Put(130, resident).Put(196, {size, width, height});
  return record;
}
// A barcode font of a kind; the bytes of its parameters count up from 1.
inline Record Bar(std::u16string_view name, int kind = 100) {
  Record record;
  record.Put(0, name).Put(64, 1).Put(66, name).Put(130, {0x2008, kind, 0, 0, 1, 1, 1, 0});
  for (size_t i = 0; i < 40; ++i) record.bytes[146 + i] = static_cast<unsigned char>(i + 1);
  return record;
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

using support::Steps;

class FontTest : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    machine().SetInstalledFontFamilies({u"Installed Face", u"ＭＳ ゴシック"});
  }

  void SetNumber(std::initializer_list<int> words) {
    std::vector<std::byte> bytes;
    for (int word : words) {
      bytes.push_back(static_cast<std::byte>(word & 255));
      bytes.push_back(static_cast<std::byte>(word >> 8 & 255));
    }
    machine().SetData(support::kPrinter, u"CreateFont Number", {REG_BINARY, bytes});
  }
  void SetRecords(const Records& records) {
    std::vector<std::byte> bytes(records.size() * sizeof(Record));
    if (!records.empty()) std::memcpy(bytes.data(), records.data(), bytes.size());
    machine().SetData(support::kPrinter, u"CreateFont Data", {REG_BINARY, bytes});
  }
  void Store(const Records& records) {
    SetNumber({static_cast<int>(records.size()), 0x0E01, 0});
    SetRecords(records);
  }
  std::vector<std::byte> Data(const char16_t* value) {
    const auto data = machine().Data(support::kPrinter, value);
    EXPECT_TRUE(data && data->type == REG_BINARY);
    return data ? data->bytes : std::vector<std::byte>();
  }
  bool HasFonts() {
    return machine().Data(support::kPrinter, u"CreateFont Number").has_value() ||
           machine().Data(support::kPrinter, u"CreateFont Data").has_value();
  }
  void ForgetFonts() {
    machine().RemoveData(support::kPrinter, u"CreateFont Number");
    machine().RemoveData(support::kPrinter, u"CreateFont Data");
  }
  // The stored records; their number must be that which is announced.
  Records Stored() {
    const std::vector<std::byte> number = Data(u"CreateFont Number");
    const std::vector<std::byte> data = Data(u"CreateFont Data");
    Records records(data.size() / sizeof(Record));
    EXPECT_EQ(data.size() % sizeof(Record), 0u);
    if (!data.empty()) std::memcpy(records.data(), data.data(), records.size() * sizeof(Record));
    const auto low = static_cast<std::byte>(records.size());
    EXPECT_EQ(number, (std::vector<std::byte>{low, std::byte{0}, std::byte{1}, std::byte{14},
                                              std::byte{0}, std::byte{0}}));
    return records;
  }
  void SetDensity(int density) {
    kestrel::DriverSettingsBlock block = support::DefaultBlock();
    block.Printer.HeadDensity = static_cast<uint16_t>(density);
    support::StoreBlock(machine(), block);
  }

  // Opens the font page of the user's defaults, does the steps and presses OK. The fonts stored
  // then.
  Records Register(Steps steps) {
    Show({.kind = support::SheetKind::kUserDefault}, std::move(steps));
    return Stored();
  }
  void Show(const support::SheetAsk& ask, Steps steps) {
    steps.insert(steps.begin(), support::GoTo(support::kFontTab));
    steps.push_back(support::PressOk());
    support::ShowSheet(exports_, ask, std::move(steps));
  }
};

// Steps put together.
inline Steps operator+(Steps steps, const Steps& more) {
  steps.insert(steps.end(), more.begin(), more.end());
  return steps;
}

}  // namespace fonts
