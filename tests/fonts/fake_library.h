// A barcode detail library that keeps what it was called for. Its kinds do the same; any of its
// entry points may be missing.
#pragma once

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "platform/machine.h"

namespace fonts {

class FakeLibrary {
 public:
  using Block = std::array<unsigned char, 40>;
  static inline std::string calls;  // "I" and "S" for Init and ShowDlg
  static inline Block handed;       // the block of the last call, as it was handed over
  static inline std::array<uint16_t, 4> info;
  static inline HWND owner;
  static inline int16_t initResult, showResult;

  // What Init leaves, and what ShowDlg makes of a block.
  static Block Initial() {
    Block block;
    block.fill(0x40);
    return block;
  }
  // Puts the library into the driver directory, without some of its entry points.
  static void Install(platform::Machine& machine, const std::vector<std::string>& missing = {}) {
    calls.clear();
    initResult = 0;
    showResult = 1;
    platform::Machine::EntryPoints entries;
    for (const char* kind :
         {"UPCA", "UPCE", "JAN8", "JAN13", "CODE39", "CODE93", "CODE128", "UCC128", "INT25", "NW7",
          "CUSTOM", "RSS", "QR1", "QR2", "QRM", "PDF417", "MAXI", "ECC", "MPDF417"}) {
      entries["GetBarName" + std::string(kind)] = Address(&Name);
      entries["Init" + std::string(kind)] = Address(&Init);
      entries["ShowDlg" + std::string(kind)] = Address(&Show);
    }
    for (const std::string& name : missing) entries.erase(name);
    machine.RegisterModule(u"QM610rBAR.DLL", entries);
  }

 private:
  // "種" in code page 932, and more than a name may have.
  static int WINAPI Name(char* name) {
    std::memcpy(name,
                "\x8E\xED"
                "45678901234567890123456789012",
                32);
    return 1;
  }
  static void Record(char entry, const unsigned char* block, const uint16_t* words, HWND dialog) {
    calls.push_back(entry);
    std::memcpy(handed.data(), block, handed.size());
    std::memcpy(info.data(), words, sizeof info);
    owner = dialog;
  }
  static int16_t WINAPI Init(unsigned char* block, const uint16_t* info, HWND dialog) {
    Record('I', block, info, dialog);
    std::memset(block, 0x40, 40);
    return initResult;
  }
  static int16_t WINAPI Show(unsigned char* block, const uint16_t* info, HWND dialog) {
    Record('S', block, info, dialog);
    block[14] = 0xED;
    return showResult;
  }
  template <typename Function>
  static FARPROC Address(Function* function) {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
  }
};

}  // namespace fonts
