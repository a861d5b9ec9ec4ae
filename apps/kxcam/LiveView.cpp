#include "LiveView.h"

#include <KxIpcSDK/KxSdk.h>

namespace kxcam
{
namespace
{

Failure notOpened(const std::string& name)
{
    if (Kx_Sdk_GetLastError() != KX_ERROR_NETWORK)
        return sdkFailure("opening " + name);
    return {ExitCode::Unreachable,
            "opening " + name +
                " failed (error 5): the camera does not stream there, can not be reached at "
                "its RTSP port ('kxcam get ports'), does not take the login for it, or "
                "serves as many as it can"};
}

} // namespace

LiveView::LiveView(const Session& session, const Target& target, const std::string& stream,
                   fLiveDataCallBack callback, void* user)
    : userId_(session.userId()), name_("the " + stream + " stream of " + target.address())
{
    Kx_IpcClient_SetLiveDataCallBack(userId_, callback, user);
    if (Kx_IpcClient_OpenLive(userId_, stream == "main" ? 0 : 1) != 0)
        throw notOpened(name_);
}

LiveView::~LiveView()
{
    Kx_IpcClient_StopLivePlay(userId_);
}

KxLiveStatus LiveView::status() const
{
    KxLiveStatus status{};
    if (Kx_IpcClient_GetLiveStatus(userId_, &status) != 0)
        throw sdkFailure("following " + name_);
    return status;
}

void LiveView::requireSending(const KxLiveStatus& status) const
{
    if (status.refused != 0)
        throw Failure(ExitCode::Credentials,
                      name_ + " broke off, and now the camera refuses user name or password");
    if (status.connected == 0)
        throw Failure(ExitCode::Unreachable, name_ + " broke off and is not back");
}

Failure LiveView::nothingCame() const
{
    return {ExitCode::Unreachable, "no picture came from " + name_ + " that could be shown"};
}

} // namespace kxcam
