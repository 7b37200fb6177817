// What the harnesses share: how they fail, the computer they use, and where they spend no time.
#pragma once

#include <windows.h>

#include <cstdlib>
#include <memory>

#include "driver/handles.h"
#include "platform/machine/machine.h"
#include "tests/support/settings.h"

inline void Require(bool holds) {
  if (!holds) std::abort();
}

// A computer with a printer. Its drives and the set-up file, which is empty, lie in memory.
inline std::unique_ptr<platform::Machine> NewComputer() {
  setenv("TMPDIR", "/dev/shm", 0);
  auto machine = platform::Machine::Create();
  machine->AddPrinter({.name = support::kPrinter});
  machine->HoldProfile(u"C:\\WINDOWS\\SetupKit_QM6_1R.INI", "");
  return machine;
}

inline kestrel::Printer OpenedPrinter(bool administer = true) {
  HANDLE printer = nullptr;
  PRINTER_DEFAULTSW access = {nullptr, nullptr, PRINTER_ALL_ACCESS};
  OpenPrinterW(const_cast<LPWSTR>(support::kPrinter), &printer, administer ? &access : nullptr);
  return kestrel::Printer(printer);
}

// A run is short: what it frees need not be kept back for long. Who asked for a block is told by
// a finding's own run with ASAN_OPTIONS=malloc_context_size=30.
extern "C" inline __attribute__((used)) const char* __asan_default_options() {
  return "malloc_context_size=1:quarantine_size_mb=2:thread_local_quarantine_size_kb=1024";
}
