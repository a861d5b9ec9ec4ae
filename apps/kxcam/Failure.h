// Why kxcam gives up, and what scripts are told of it.
#pragma once

#include <stdexcept>
#include <string>

namespace kxcam
{

enum class ExitCode
{
    Ok = 0,
    Refused = 1,
    Usage = 2,
    Credentials = 3,
    Unreachable = 4,
    NotKept = 5,
    ThisComputer = 6
};

/// The table of exit codes for the help.
std::string exitCodeHelp();

class Failure : public std::runtime_error
{
public:
    Failure(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}

    ExitCode code() const { return code_; }

private:
    ExitCode code_;
};

/// The failure of the SDK call that has just failed, from the SDK's last error: "`what` failed: the camera
/// …".
Failure sdkFailure(const std::string& what);

/// The same for a call that leaves no code when it is the camera's answer that fails it.
Failure sdkFailure(const std::string& what, const std::string& withoutCode);

} // namespace kxcam
