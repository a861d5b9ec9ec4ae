// The digest by which a camera has a password proven.
#pragma once

/// Writes the text's MD5 digest as 32 lower-case hexadecimal characters, without a terminator. `out` is left as it is
/// for a null argument and where the system's policy forbids MD5.
void md5_encry_data(const char* text, unsigned char* out);
