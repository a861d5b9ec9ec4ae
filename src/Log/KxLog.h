// The SDK's own debug print, on standard output.
#pragma once

/// Prints "KxOutputDebugInfo: <text> \n". The text is never used as a format: level and further arguments are
/// ignored, so that no camera's bytes can be mistaken for one. A null text prints as an empty one.
void KxOutputDebugInfo(int level, const char* text, ...);
