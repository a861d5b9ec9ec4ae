// Text from outside in the place of a print's format.
#pragma once

#include <cstddef>

/// Stores `text` in `out` as a print would that uses it as the format and has no arguments. The text comes
/// from outside, a camera or a file, and must never be interpreted: only "%%" becomes "%", every other
/// character stays as it is, a lone "%" too.
///
/// At most `size` - 1 characters and a terminating zero are stored; the rest of `out` is left untouched, and
/// all of it when `size` is 0 or `out` is null. A null text prints as an empty one. `text` and `out` must not
/// overlap.
/// Returns the number of characters stored, the terminating zero not counted. Safe from any thread.
std::size_t printTextAsFormat(char* out, std::size_t size, const char* text);
