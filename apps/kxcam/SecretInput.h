// Secrets that must not show: neither on the screen nor, as arguments would, in the list of processes.
#pragma once

#include <string>

namespace kxcam
{

/// The environment variable that holds the password of a login.
inline constexpr char passwordVariable[] = "KXCAM_PASSWORD";

/// The environment variable that holds the password that a user is to get.
inline constexpr char newPasswordVariable[] = "KXCAM_NEW_PASSWORD";

/// The password of a login: from the environment, else asked for on the terminal.
std::string loginPassword(const std::string& whose);

/// The value of a secret setting: asked for on the terminal, or the next line of standard input when that is
/// a file or a pipe.
std::string secretValue(const std::string& key);

/// The password that a user is to get: from the environment, else as secretValue, on a terminal twice.
std::string newPassword(const std::string& whose);

} // namespace kxcam
