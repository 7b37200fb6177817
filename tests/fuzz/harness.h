// Shared by the harnesses: requirements, the simulated computer, and sanitizer options that save
// time.
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

// Returns a computer with a printer. Its drives and the empty set-up file are in memory.
inline std::unique_ptr<platform::Machine> NewComputer() {
  setenv("TMPDIR", "/dev/shm", 0);
  auto machine = platform::Machine::Create();
  machine->AddPrinter({.name = support::kPrinter});
  machine->SetMemoryProfile(u"C:\\WINDOWS\\SetupKit_QM6_1R.INI", "");
  return machine;
}

inline kestrel::Printer OpenedPrinter(bool administer = true) {
  HANDLE printer = nullptr;
  PRINTER_DEFAULTSW access = {nullptr, nullptr, PRINTER_ALL_ACCESS};
  OpenPrinterW(const_cast<LPWSTR>(support::kPrinter), &printer, administer ? &access : nullptr);
  return kestrel::Printer(printer);
}

// Runs are short, so that freed blocks need no long quarantine. Run a finding with
// ASAN_OPTIONS=malloc_context_size=30 for full stacks.
extern "C" inline __attribute__((used)) const char* __asan_default_options() {
  return "malloc_context_size=1:quarantine_size_mb=2:thread_local_quarantine_size_kb=1024";
}
