// Counters of the heaps, for Machine.
#pragma once

namespace platform {

int PrivateHeaps();    // created and not destroyed
int HeapBlockCount();  // blocks of all heaps

}  // namespace platform
