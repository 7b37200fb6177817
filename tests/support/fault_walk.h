#pragma once

#include <gtest/gtest.h>

#include <array>
#include <initializer_list>
#include <string>

#include "platform/desktop/drawing/gdi.h"
#include "platform/machine.h"

namespace support {

// Runs call() with each allocation (spooler call, …) failing once, and once without a failure;
// whichever it was, nothing is left behind. check(kind, whether something failed) looks at what
// came out. Answers how many failures there were.
template <typename Call, typename Check>
int WalkFaults(platform::Machine& machine, std::initializer_list<platform::Fault> kinds, Call call,
               Check check) {
  const auto open = [&] {
    return std::array{machine.OpenPrinterHandles(), machine.LiveAllocations(),
                      machine.LiveHeaps(),          machine.OpenModules(),
                      machine.OpenRegistryKeys(),   platform::LiveGdiObjects()};
  };
  int failures = 0;
  for (const platform::Fault kind : kinds) {
    bool struck = true;
    for (int n = 1; struck; ++n) {
      SCOPED_TRACE("failure " + std::to_string(n) + " of kind " +
                   std::to_string(static_cast<int>(kind)));
      const auto before = open();
      machine.faults.FailNth(kind, n);
      call();
      struck = machine.faults.Struck(kind);
      machine.faults.Clear();
      EXPECT_EQ(open(), before);
      check(kind, struck);
      failures += struck;
      if (testing::Test::HasFailure() || n > 5000) return -1;
    }
  }
  return failures;
}

}  // namespace support
