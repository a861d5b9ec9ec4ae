// Files to and from the camera: configurations, the memory card's files, the log.
#include <KxIpcSDK/KxStorage.h>

#include <memory>
#include <new>

#include "KxIpcSDK/CameraCall.h"
#include "Log/KxLog.h"
#include "NetManager/Fetchers.h"
#include "NetManager/FileTransfer.h"

namespace
{

constexpr std::size_t exportRoom = 0x4000000;
constexpr int exportSize = 0x100000; // what the export may use of it; longer configurations are cut there

/// How a kind of configuration goes up: the transfer takes the family's mode, and the log may tell the family.
struct ConfigUpload
{
    int (*run)(UserInfo* session, const char* localPath, char* reply, int replySize, int mode);
    const char* toTi; // null: not told
    const char* toHisi;
    const char* toA;
};

constexpr ConfigUpload config{DoUploadCfgFile, "Upload cfg file for Ti camera",
                              "Upload cfg file for Hisi camera", "Upload cfg file for Amba camera"};
constexpr ConfigUpload oemConfig{DoUploadOemFile, nullptr, "Upload oem file for Hisi camera",
                                 "Upload oem file for Amba camera"};

int upload(const ConfigUpload& kind, long userId, const char* path)
{
    CameraCall call(userId, unlessEmpty(path));
    const auto family = call.chipFamily();
    if (!family)
        return -1;
    const auto run = [&](int mode, const char* note) {
        if (note != nullptr)
            KxOutputDebugInfo(1, note);
        return call.transfer(kind.run, path, mode);
    };
    switch (*family) {
    case ChipFamily::A:
        return run(1, kind.toA);
    case ChipFamily::Hisi:
        return run(2, kind.toHisi);
    case ChipFamily::Ti:
        break;
    }
    return run(0, kind.toTi);
}

} // namespace

int Kx_Ipc_UploadConfigFile(long userId, const char* path)
{
    return upload(config, userId, path);
}

int Kx_Ipc_UploadOemConfigFile(long userId, const char* path)
{
    return upload(oemConfig, userId, path);
}

int Kx_Ipc_EraseOemConfig(long userId)
{
    CameraCall call(userId);
    return call.get("&eraseoem").received() ? 0 : -1;
}

int Kx_Ipc_UploadFileToSdCard(long userId, const char* path)
{
    return CameraCall(userId, path).transfer(DoUploadFileToSdCard, path);
}

int Kx_Ipc_DownloadLog(long userId, const char* path)
{
    return CameraCall(userId, path).transfer(DoDownloadLogFile, path);
}

int Kx_Ipc_DownloadCfg(long userId, const char* path)
{
    return CameraCall(userId, path).transfer(DoDownloadConfigFile, path);
}

int Kx_Ipc_ExportCfg(long userId, const char* directory)
{
    CameraCall call(userId, directory);
    if (!call)
        return -1;
    const std::unique_ptr<char[]> room(new (std::nothrow) char[exportRoom]);
    return room && call.fetch(directory, room.get(), exportSize, DoExportConfig) ? 0 : -1;
}

int Kx_Ipc_DownloadCustom(long userId, const char* path, uint32_t kind, const char* name)
{
    return CameraCall(userId, {path, name}).transfer(DoDownloadCustomFile, path, kind, name);
}
