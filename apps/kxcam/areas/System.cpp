// The camera's name, and what it is.
#include <KxIpcSDK/KxSystem.h>

#include "Area.h"

namespace kxcam
{
namespace
{

constexpr Field fields[] = {
    field<&SystemInfo::title>("title", "the camera's name"),
    readOnly(field<&SystemInfo::productmodel>("productmodel", "model")),
    readOnly(field<&SystemInfo::oemmodel>("oemmodel", "model under the seller's name")),
    readOnly(field<&SystemInfo::softversion>("softversion", "firmware")),
    readOnly(field<&SystemInfo::deviceversion>("deviceversion", "hardware")),
    readOnly(field<&SystemInfo::sdkversion>("sdkversion", "the camera's own development kit")),
    readOnly(field<&SystemInfo::cputype>("cputype", "processor")),
    readOnly(field<&SystemInfo::system_audio_support>("system_audio_support", "audio code, 0: none")),
    readOnly(field<&SystemInfo::system_audio_support_mode>("system_audio_support_mode", "audio mode code")),
    readOnly(field<&SystemInfo::system_lpr_support>("system_lpr_support", "plate recognition, 0: none")),
    readOnly(field<&SystemInfo::system_lpr_version>("system_lpr_version", "version of plate recognition")),
    readOnly(field<&SystemInfo::system_alarm_output_support>("system_alarm_output_support",
                                                             "alarm outputs, 0: none")),
};

int getSystem(long userId, SystemInfo* info)
{
    const int before = info->system_audio_support_mode;
    const int result = Kx_Ipc_GetSystemInfo(userId, info);
    if (info->system_audio_support_mode == -1)
        info->system_audio_support_mode = before; // the SDK's way to say that it is not told
    return result;
}

int setSystem(long userId, SystemInfo* info)
{
    return Kx_Ipc_SetDeviceName(userId, info->title);
}

} // namespace

extern constinit const Area systemArea =
    makeArea<getSystem, setSystem>("system", "the camera's name, model, versions and features", fields);

} // namespace kxcam
