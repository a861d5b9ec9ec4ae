// Restart, and the ways back to the factory's settings.
#include <KxIpcSDK/KxSystem.h>

#include "KxIpcSDK/CameraCall.h"

namespace
{

/// A camera that goes down at once may not get as far as a confirmation, so any answer will do.
int command(long userId, const char* word)
{
    CameraCall call(userId);
    return call.get<CommandReply>(word).received() ? 0 : -1;
}

int confirmedCommand(long userId, const char* word, const char* confirmation)
{
    CameraCall call(userId);
    return call.get<CommandReply>(word).contains(confirmation) ? 0 : -1;
}

} // namespace

int Kx_Ipc_RebootSystem(long userId)
{
    return command(userId, "&ipcamrestartcmd");
}

int Kx_Ipc_RestoreSystem(long userId)
{
    return command(userId, "&paradefaultcmd");
}

int Kx_Ipc_ResetSystem(long userId)
{
    return command(userId, "&kxdefaultcmd");
}

int Kx_Ipc_ResetSystemOnlyKeepIp(long userId)
{
    return confirmedCommand(userId, "&keepipcmd", "OK keepipcmd");
}

int Kx_Ipc_ResetSystemOnlyKeepUser(long userId)
{
    return confirmedCommand(userId, "&keepusercmd", "OK keepusercmd");
}
