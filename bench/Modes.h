// What kx_bench does beside timing.
#pragma once

/// Has callgrind count `count` requests of each client and write a profile for each, named after it in its
/// "desc" line. Returns the program's exit code.
int countInstructions(unsigned count);

/// Prints "heap_growth BYTES" for `count` requests of the SDK. Returns the program's exit code.
int measureHeapGrowth(unsigned count);
