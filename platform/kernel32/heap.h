// Counts of the live heaps and blocks of this process.
#pragma once

namespace platform {

int PrivateHeaps();    // created and not destroyed
int HeapBlockCount();  // blocks of all heaps

}  // namespace platform
