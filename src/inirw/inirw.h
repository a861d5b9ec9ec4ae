// Values out of INI text: one file held in memory and written back by the setters, or a text given per call.
//
// Sections and keys are compared exactly, and the first line with the key wins. A null section means the
// lines before the first section header; a camera's reply has no headers, so it is searched whole. `#` and
// `;` outside quotes start a comment. Lines end with CR LF, LF CR, LF, CR or, in a loaded file, a zero byte.
//
// The functions of the loaded file share one buffer without a lock: one thread at a time. The FromStr
// functions share no state that changes and are safe from any thread. No function fails loudly: a null
// argument, a missing key and a failed allocation show in the result only, and nothing is thrown.
#pragma once

extern "C" {

/// Loads the file at `path`, at most 255 characters, in place of whatever was loaded before. The setters
/// write to this path, also after iniStrLoad, until the next is given here. An empty file counts as loaded.
/// Returns 1, or 0 when the path is too long or null, the file can't be opened and measured, it has 2 GiB or
/// more, or memory is short; then nothing is loaded. A path too long or null leaves the stored one untouched,
/// any other replaces it.
int iniFileLoad(const char* path);

/// Loads `text` in place of whatever was loaded before, printed as a format is (see printTextAsFormat) into
/// just as many bytes as it has characters: its last character is lost, and what "%%" saves is filled with
/// zero bytes. The path that the setters write to is left untouched: iniSetString writes this text, edited,
/// over the file last given to iniFileLoad.
/// Returns 1, or 0 when `text` is null or has 2 GiB or more, or memory is short; then nothing is loaded.
int iniStrLoad(const char* text);

/// Forgets the loaded text. The path that the setters write to is left untouched.
void iniFileFree();

/// Copies the raw value of `key` in `section` of the loaded text into `out`, of `size` bytes: cut to fit with
/// its terminating zero, the bytes behind that untouched.
/// Returns 1 when the first line with the key has a value that is not empty. Otherwise returns 0, and `out`
/// gets `defaultValue`, cut likewise, or becomes empty if that is null, the key is null or nothing is loaded.
/// A null `out` or a `size` below 1: nothing is written, the result is the same. `defaultValue` may be `out`.
int iniGetValue(const char* section, const char* key, char* out, int size, const char* defaultValue);

/// As iniGetValue, in `text` instead of the loaded one. A null `text` is treated as nothing loaded.
int iniGetValueFromStr(const char* text, const char* section, const char* key, char* out, int size,
                       const char* defaultValue);

/// As iniGetValue; a value found loses its first and last character if both are `"` or both are `'`, after it
/// was cut to `size`. The default keeps its quotes.
int iniGetString(const char* section, const char* key, char* out, int size, const char* defaultValue);

/// As iniGetString, in `text` instead of the loaded one.
int iniGetStringFromStr(const char* text, const char* section, const char* key, char* out, int size,
                        const char* defaultValue);

/// The value as a number: decimal, 0x hexadecimal or leading-zero octal. A number out of range becomes the
/// nearest long, and that is cut to 32 bits. A value that is no number (a quoted one is none) gives 0;
/// `defaultValue` is returned only where iniGetValue returns 0. As in all number getters, no more than 63
/// characters of the value are read.
int iniGetInt(const char* section, const char* key, int defaultValue);

/// As iniGetInt, in `text` instead of the loaded one.
int iniGetIntFromStr(const char* text, const char* section, const char* key, int defaultValue);

/// As iniGetInt, for an unsigned long: nothing is cut, and a number too great becomes the greatest.
unsigned long iniGetUlong(const char* section, const char* key, unsigned long defaultValue);

/// As iniGetUlong, in `text` instead of the loaded one.
unsigned long iniGetUlongFromStr(const char* text, const char* section, const char* key,
                                 unsigned long defaultValue);

/// As iniGetIntFromStr, for a long long and decimal only; a number out of range becomes the nearest in range.
long long iniGetLonglongFromStr(const char* text, const char* section, const char* key,
                                long long defaultValue);

/// The same function as iniGetLonglongFromStr under another name: signed range, the result taken as unsigned.
unsigned long long iniGetUlonglongFromStr(const char* text, const char* section, const char* key,
                                          unsigned long long defaultValue);

/// As iniGetInt, for a floating-point number. The decimal point is "." whatever the application's locale.
double iniGetDouble(const char* section, const char* key, double defaultValue);

/// As iniGetDouble, in `text` instead of the loaded one.
double iniGetDoubleFromStr(const char* text, const char* section, const char* key, double defaultValue);

/// Sets `key` in `section` to `value`, or deletes the key's line if `value` is null, then rewrites and
/// reloads the file last given to iniFileLoad. A line that is replaced keeps its line end and its comment;
/// where quotes stand before that, a piece of the old value may stay with it and join the new one. A new key
/// follows the section's last key line or its header, which gets a line feed first if it is the text's last
/// line and has no end. A new section is appended to the file. All other lines are left untouched.
/// Returns 1 when the file was rewritten. Returns 0 when nothing is loaded, the key is null, there is nothing
/// to delete, the null section has no key line to stand beside, or the file can't be written.
int iniSetString(const char* section, const char* key, const char* value);

/// As iniSetString, the value printed as 0x hexadecimal if `base` is 16, as 0 octal if 8, else as decimal.
int iniSetInt(const char* section, const char* key, int value, int base);
}
