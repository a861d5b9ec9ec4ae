// Text that established behaviour prints "as its own format", without ever being one.
#pragma once

#include <cstddef>

/// Stores `text` in `out` as a print would that uses it as the format and has no arguments: "%%" becomes "%".
/// Every other character stays as it is, a lone "%" too, because the text may come from a camera.
///
/// At most `size` - 1 characters and a terminating zero are stored; the rest of `out` is left untouched, and
/// all of it when `size` is 0 or `out` is null. A null text prints as an empty one. `text` and `out` must not
/// overlap.
/// Returns the number of characters stored, the terminating zero not counted. Safe from any thread.
std::size_t printTextAsFormat(char* out, std::size_t size, const char* text);
