// Small tools that read a camera's raw replies.
#pragma once

/// The value behind a key in a reply, up to the first character of `terminator` or the reply's end.
///
/// @param key   found at its first occurrence anywhere, headers included: "OK ftpip="
/// @param dest  gets at most `width` characters and a terminator: width + 1 bytes
/// @return the number of characters stored; -1, with `dest` untouched, when the key is absent or an argument is null
int KxSscanf(const char* reply, const char* key, const char* terminator, char* dest, int width);

/// The last occurrence of a needle within the first `length` bytes of a text, which need not be terminated; else null.
/// A needle length below 1 means the needle's text length; an empty needle is never found.
char* Kx_rStrstr(char* text, int length, char* needle, int needleLength);

/// 1 for models of the TI family: all that end in none of "A", "B", "C" and "-SP", the empty and the null model among
/// them; else 0. What is read from a reply is taken as read: a carriage return is a model's last character.
int IsTiIPC(char* model);

/// 1 for models that end in "B", "C" or "-SP"; else 0.
int IsHisiIPC(char* model);
