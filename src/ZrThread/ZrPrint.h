// A print with the time of day, on standard output.
#pragma once

extern "C" {

/// Prints "QZM PRINT <time>  <message>=================================\n", at most 1599 characters. The time lacks
/// its last digit, and people know it so. Returns 0.
__attribute__((format(printf, 1, 2))) int zr_print(const char* format, ...);
}
