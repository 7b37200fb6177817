// A barcode detail library that keeps what it was called for. Any of its entry points may be
// missing.
#pragma once

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "platform/machine.h"

namespace fonts {

class FakeLibrary {
 public:
  static constexpr std::array<const char*, 19> kSuffixes = {
      "UPCA",   "UPCE", "JAN8", "JAN13", "CODE39", "CODE93", "CODE128", "UCC128", "INT25",  "NW7",
      "CUSTOM", "RSS",  "QR1",  "QR2",   "QRM",    "PDF417", "MAXI",    "ECC",    "MPDF417"};
  using Block = std::array<unsigned char, 40>;

  struct Call {
    std::string entry;
    Block block;  // as it was handed over
    std::array<uint16_t, 4> info;
    HWND dialog;
  };
  static inline std::vector<Call> calls;
  static inline int16_t initResult;
  static inline int16_t showResult;

  // The block that Init of a kind leaves, and what ShowDlg makes of a block.
  static Block Initial(size_t row) {
    Block block;
    block.fill(static_cast<unsigned char>(0x40 + row));
    return block;
  }
  static Block Edited(Block block) {
    block[14] = 0xED;
    return block;
  }

  // Puts the library into the driver directory, without some of its entry points.
  static void Install(platform::Machine& machine, const std::vector<std::string>& missing = {}) {
    calls.clear();
    initResult = 0;
    showResult = 1;
    platform::Machine::EntryPoints entries;
    AddAll(entries, std::make_index_sequence<kSuffixes.size()>());
    for (const std::string& name : missing) entries.erase(name);
    machine.RegisterModule(u"QM610rBAR.DLL", entries);
  }
  static std::vector<std::string> Entries() {
    std::vector<std::string> entries;
    for (const Call& call : calls) entries.push_back(call.entry);
    return entries;
  }

 private:
  static void Record(const char* prefix, size_t row, const unsigned char* block,
                     const uint16_t* info, HWND dialog) {
    Call call;
    call.entry = std::string(prefix) + kSuffixes[row];
    std::memcpy(call.block.data(), block, call.block.size());
    std::memcpy(call.info.data(), info, sizeof(call.info));
    call.dialog = dialog;
    calls.push_back(std::move(call));
  }
  template <size_t Row>
  struct Kind {
    // "種" in code page 932, and the row's letter.
    static int WINAPI Name(char* name) {
      const char text[] = {'\x8E', '\xED', static_cast<char>('A' + Row), '\0'};
      std::memcpy(name, text, sizeof text);
      return 1;
    }
    static int16_t WINAPI Init(unsigned char* block, const uint16_t* info, HWND dialog) {
      Record("Init", Row, block, info, dialog);
      std::ranges::copy(Initial(Row), block);
      return initResult;
    }
    static int16_t WINAPI Show(unsigned char* block, const uint16_t* info, HWND dialog) {
      Record("ShowDlg", Row, block, info, dialog);
      block[14] = 0xED;
      return showResult;
    }
  };
  template <typename Function>
  static FARPROC Address(Function* function) {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
  }
  template <size_t... Rows>
  static void AddAll(platform::Machine::EntryPoints& entries, std::index_sequence<Rows...>) {
    (Add<Rows>(entries), ...);
  }
  template <size_t Row>
  static void Add(platform::Machine::EntryPoints& entries) {
    const std::string suffix = kSuffixes[Row];
    entries["GetBarName" + suffix] = Address(&Kind<Row>::Name);
    entries["Init" + suffix] = Address(&Kind<Row>::Init);
    entries["ShowDlg" + suffix] = Address(&Kind<Row>::Show);
  }
};

}  // namespace fonts
