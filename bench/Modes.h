// What kx_bench does beside timing.
#pragma once

/// Has callgrind count `count` requests of each client and write a profile for each, named after it in its
/// "desc" line. Returns the program's exit code.
int countInstructions(unsigned count);

/// Prints "bytes/heap_growth BYTES" for `count` requests of the SDK. Returns the program's exit code.
int measureHeapGrowth(unsigned count);

/// Prints "bytes/upload_heap BYTES" on standard error, apart from what the SDK prints: the most that the SDK has taken of the
/// heap while a firmware of nine megabytes went up. Returns the program's exit code.
int measureUploadHeap();
