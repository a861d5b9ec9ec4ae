// Text encodings that requests are made of.
#pragma once

#include <cstddef>
#include <string>

inline constexpr std::size_t urlBufferSize = 20480;

/// Standard base64 with padding; terminated, made with calloc, freed by the caller. Null for null data or no memory.
char* base64Encode(const char* data, unsigned length);

/// The same into base64Size(length) bytes; returns the number of characters.
std::size_t encodeBase64(const char* data, std::size_t length, char* out);
constexpr std::size_t base64Size(std::size_t length)
{
    return (length + 2) / 3 * 4 + 1;
}

/// Copies a query with each blank as "%20" and everything else as it is. The destination has urlBufferSize bytes, all
/// written; it stays empty for a source above 20480 characters, and ends after 20479 characters.
void encodeURL(const char* source, char* destination);

/// Percent-encodes every byte but ! # $ & ' ( ) * . / : ; = ? @ : letters and digits too, as cameras expect it in
/// captions and names. A byte below 16 has a blank for its leading zero.
std::string EncodeURI(const char* text);

/// Percent-encodes every byte but ASCII letters and digits. `out` has 1024 bytes; what would not fit is cut between
/// two characters.
void get_url_encode(const char* data, unsigned length, char* out);
