// Bytes that mean nothing to anybody.
#pragma once

#include <random>
#include <string>

namespace kxsim
{

// The same bytes in every run, so that what they once broke can be broken again.
inline std::string garbage()
{
    std::minstd_rand random;
    std::string bytes(500, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random() >> 8U);
    return bytes;
}

} // namespace kxsim
