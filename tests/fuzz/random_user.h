// The random user, callable without the fuzzer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Shows sheets to a user whose actions these bytes choose. Ends the process when an invariant is
// violated.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

// Returns digests of what the last run showed, returned and stored, as one line. The same bytes
// give the same line on every machine.
std::string LastRunDigests();

// Returns the number of actions in all runs.
long RandomUserActions();
