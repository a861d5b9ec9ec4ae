// Memory that comes zeroed, and two helpers for texts.
#pragma once

#include <cstddef>

extern "C" {

/// Allocates `size` bytes with the C allocator and zeroes them; null when there are none.
void* zr_malloc(std::size_t size);
/// Gives back what zr_malloc returned; null is ignored.
void zr_free(void* memory);

/// Copies at most `len` bytes of `src`, fills the rest of the `len` bytes with zeros, and ends the text at
/// `len` - 1. With a null pointer, or a `len` below 1, `dst` stays untouched. Returns `dst`.
char* zr_strncpy(char* dst, const char* src, int len);

/// Removes leading and trailing white space in place. Returns 0, or -1 when nothing is left (or there is no text).
int zr_char_trim(char* text);
}
