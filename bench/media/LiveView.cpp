#include "LiveView.h"

#include <stdexcept>
#include <string>
#include <utility>

#include <KxIpcSDK/KxSdk.h>

namespace
{

void require(bool done, const char* what)
{
    if (!done)
        throw std::runtime_error(std::string(what) + " fails with error " +
                                 std::to_string(Kx_Sdk_GetLastError()));
}

} // namespace

LiveView::LiveView(const Endpoint& camera, Taker taker)
    : taker_(std::move(taker)), id_(Kx_Ipc_Login("bench", camera.host.c_str(), camera.port, "admin", "admin"))
{
    require(id_ >= 0, "the login");
}

LiveView::~LiveView()
{
    Kx_Ipc_Logout(id_);
}

void LiveView::open()
{
    constexpr char mainStream = 0;
    require(Kx_IpcClient_SetLiveDataCallBack(id_, taker_ ? take : nullptr, this) == 0,
            "setting the callback");
    require(Kx_IpcClient_OpenLive(id_, mainStream) == 0, "opening the live view");
}

void LiveView::stop()
{
    require(Kx_IpcClient_StopLivePlay(id_) == 1, "stopping the live view");
}

void LiveView::record(const char* directory)
{
    require(Kx_IpcClient_SaveLiveData(id_, directory) == 0, "beginning to record");
}

void LiveView::stopRecording()
{
    require(Kx_IpcClient_StopSaveLiveData(id_) == 1, "ending the recording");
}

KxLiveStatus LiveView::status() const
{
    KxLiveStatus status;
    require(Kx_IpcClient_GetLiveStatus(id_, &status) == 0, "asking for the status");
    return status;
}

void LiveView::take(long, int dataType, const std::uint8_t* data, int, int width, int height, void* self)
{
    if (dataType == KX_DATA_VIDEO)
        static_cast<LiveView*>(self)->taker_({data, width, height});
}
