// The address of a transfer, taken apart.
#pragma once

#include <cstddef>

inline constexpr std::size_t urlHostSize = 256;

/// Splits "http://host:port/path?query"; without a port it is 80. `path` points into the URL, query included, or to "/"
/// when it has none. False, when it is no such URL.
bool parse_url(const char* url, char (&host)[urlHostSize], int& port, const char*& path);
