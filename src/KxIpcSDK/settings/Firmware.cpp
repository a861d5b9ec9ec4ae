// Firmware and kernel from the application's disk. The camera restarts when it has taken one.
#include <KxIpcSDK/KxStorage.h>

#include <cstring>
#include <string_view>

#include "Core/LastError.h"
#include "KxIpcSDK/CameraCall.h"
#include "Log/KxLog.h"
#include "NetManager/FileTransfer.h"

namespace
{

/// What a kernel file is made for: the part of its path behind this mark; null when there is none.
const char* kernelTarget(const char* path)
{
    constexpr std::string_view mark = "KImage_";
    const char* found = std::strstr(path, mark.data());
    return found != nullptr ? found + mark.size() : nullptr;
}

/// A character that one of the texts is too short for is no common one.
bool share(std::size_t index, std::string_view text, std::string_view other)
{
    return index < text.size() && index < other.size() && text[index] == other[index];
}

/// Whether a kernel is made for the camera that has this one.
bool isForCamera(std::string_view target, std::string_view version)
{
    const char* difference = !share(0, target, version)   ? "Platform is different."
                             : !share(2, target, version) ? "Size is different.(%s) (%s)"
                                                          : nullptr;
    if (difference == nullptr)
        return true;
    KxOutputDebugInfo(1, difference);
    return false;
}

} // namespace

int Kx_Ipc_UpdateFirmware(long userId, const char* path, uint8_t keep)
{
    CameraCall call(userId, unlessEmpty(path));
    Query query;
    query.number("keepconfig", keep != 0 ? 0 : 1); // the camera's key says the opposite of its name
    return call.set(query) == 0 ? call.transfer(DoFirmwareUpdate, path) : -1;
}

int Kx_Ipc_UpdateKernal(long userId, const char* path)
{
    CameraCall call(userId, path);
    if (!call)
        return -1;
    const char* target = kernelTarget(path);
    if (target == nullptr)
        return failWith(KX_ERROR_FIRMWARE_REFUSED);

    const OkReply reply = call.get("&paratest=kernalversion&paratest=productmodel");
    if (!reply)
        return -1;
    char version[64 + 1] = {};
    char model[64 + 1] = {};
    reply.text("kernalversion", version);
    reply.text("productmodel", model);
    if (chipFamilyOf(model) != ChipFamily::Ti) {
        KxOutputDebugInfo(1, "Only upgrade kernel for amba or hisi is invalid.");
        return -1;
    }
    if (version[0] == '\0')
        return -1;
    if (!isForCamera(target, version))
        return failWith(KX_ERROR_FIRMWARE_REFUSED);
    return call.transfer(DoFirmwareUpdate, path);
}
