#include "Failure.h"

#include <algorithm>
#include <iterator>

#include <KxIpcSDK/KxSdk.h>

namespace kxcam
{
namespace
{

struct ExitCodeRow
{
    ExitCode code;
    const char* meaning;
};

constexpr ExitCodeRow exitCodes[] = {
    {ExitCode::Ok, "done"},
    {ExitCode::Refused, "the camera refused or failed the operation"},
    {ExitCode::Usage, "wrong option, area, key, name or value; no password given, or no consent"},
    {ExitCode::Credentials, "the camera refused the user name, the password or the account's rights"},
    {ExitCode::Unreachable, "the camera could not be reached or did not answer in time"},
    {ExitCode::NotKept, "the camera took a set, but reads back other values than it was given"},
    {ExitCode::ThisComputer, "kxcam could not start or could not write its output"},
};

struct ErrorRow
{
    long error;
    ExitCode code;
    const char* reason;
    const char* advice;
};

constexpr ErrorRow errors[] = {
    {KX_ERROR_NONE, ExitCode::Refused, "the camera gave no usable answer",
     "Try again, and with --verbose to see what the library says."},
    {KX_ERROR_NOT_INITIALISED, ExitCode::ThisComputer, "the library has not started",
     "This is a fault of kxcam; please report it."},
    {KX_ERROR_BUSY, ExitCode::Refused, "the library is busy, or the camera's answer makes no sense",
     "Try again."},
    {KX_ERROR_UNAUTHORISED, ExitCode::Credentials, "the camera refused the user name or password",
     "Check --user and the password in KXCAM_PASSWORD."},
    {KX_ERROR_UNKNOWN_USER, ExitCode::Refused, "the session has ended", "Try again."},
    {KX_ERROR_NETWORK, ExitCode::Unreachable,
     "the camera could not be reached, did not answer or rejected the request",
     "Check --host and --port, and that the camera is switched on and in reach."},
    {KX_ERROR_FORBIDDEN, ExitCode::Credentials, "the camera does not allow this to the account",
     "Log in as a user with more rights (--user)."},
    {KX_ERROR_LIVE_STATE, ExitCode::Refused, "live view does not run, or runs already", "Try again."},
    {KX_ERROR_NO_PLAYBACK, ExitCode::Refused, "no playback is open", "Try again."},
    {KX_ERROR_FIRMWARE_REFUSED, ExitCode::Refused, "the firmware file is not for this camera",
     "Check the camera's model and the file."},
    {KX_ERROR_NOT_FOUND, ExitCode::Refused, "what answers there does not know the request",
     "Check that --host and --port are those of a camera, and that its model has this function."},
    {KX_ERROR_BAD_GATEWAY, ExitCode::Refused, "the camera reports an internal fault (502)",
     "Try again later, or restart the camera."},
};

const ErrorRow& rowOf(long error)
{
    const auto* row = std::find_if(std::begin(errors), std::end(errors),
                                   [error](const ErrorRow& candidate) { return candidate.error == error; });
    return row == std::end(errors) ? errors[0] : *row;
}

} // namespace

std::string exitCodeHelp()
{
    std::string text = "Exit codes:";
    for (const ExitCodeRow& row : exitCodes)
        text += "\n  " + std::to_string(static_cast<int>(row.code)) + "  " + row.meaning;
    return text;
}

Failure sdkFailure(const std::string& what)
{
    const long error = Kx_Sdk_GetLastError();
    const ErrorRow& row = rowOf(error);
    const std::string number = error != KX_ERROR_NONE ? " (error " + std::to_string(error) + ")" : "";
    return {row.code, what + " failed: " + row.reason + number + ". " + row.advice};
}

Failure sdkFailure(const std::string& what, const std::string& withoutCode)
{
    if (Kx_Sdk_GetLastError() != KX_ERROR_NONE)
        return sdkFailure(what);
    return {ExitCode::Refused, what + " failed: " + withoutCode};
}

} // namespace kxcam
