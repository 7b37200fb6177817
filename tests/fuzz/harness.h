// What the harnesses share: how they fail, and where they spend no time.
#pragma once

#include <cstdlib>

inline void Require(bool holds) {
  if (!holds) std::abort();
}

// Saves are hundreds of small writes: the computers' drives lie in memory. Made before a machine.
struct DrivesInMemory {
  DrivesInMemory() { setenv("TMPDIR", "/dev/shm", 0); }
};

// A run is short: what it frees need not be kept back for long. Who asked for a block is told by
// a finding's own run with ASAN_OPTIONS=malloc_context_size=30.
extern "C" const char* __asan_default_options() {
  return "malloc_context_size=1:quarantine_size_mb=8:thread_local_quarantine_size_kb=256";
}
