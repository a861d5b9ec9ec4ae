// What the SDK takes of the heap while a firmware goes up.
#include "Modes.h"

#include <algorithm>
#include <cstdio>

#include <KxIpcSDK/KxSdk.h>
#include <KxIpcSDK/KxStorage.h>
#include <malloc.h>

#include "Cameras.h"
#include "Firmware.h"

namespace
{

std::size_t heapInUse()
{
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

int noteMost(long, std::uint64_t, std::uint64_t, void* most)
{
    auto& value = *static_cast<std::size_t*>(most);
    value = std::max(value, heapInUse());
    return 0;
}

} // namespace

int measureUploadHeap()
{
    const CameraProcess cameras(1);
    const Endpoint& camera = cameras.endpoints().front();
    const Firmware firmware;
    Kx_Sdk_Init();
    const long id = Kx_Ipc_Login("bench", camera.host.c_str(), camera.port, "admin", "admin");
    std::size_t most = 0;
    Kx_Sdk_SetTransferCallBack(noteMost, &most);
    const std::size_t before = heapInUse();
    const bool done = Kx_Ipc_UpdateFirmware(id, firmware.path(), 1) == 0;
    Kx_Sdk_SetTransferCallBack(nullptr, nullptr);
    Kx_Sdk_Destroy();
    if (!done || most == 0) {
        std::fprintf(stderr, "An upload failed\n");
        return 1;
    }
    std::fprintf(stderr, "bytes/upload_heap %zu\n", most - std::min(most, before));
    return 0;
}
