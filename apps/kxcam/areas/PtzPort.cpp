// The serial port to a PTZ head.
#include <KxIpcSDK/KxPtz.h>

#include "Area.h"

namespace kxcam
{
namespace
{

constexpr Field fields[] = {
    ranged(field<&PtzInfo::ptzprotocol>("ptzprotocol", "protocol code"), 0, 1),
    ranged(field<&PtzInfo::ptzbaudrate>("ptzbaudrate", "bits per second"), 0),
};

} // namespace

extern constinit const Area ptzPortArea = makeArea<Kx_Ipc_GetPTZ, Kx_Ipc_SetPTZ>(
    "ptzport", "serial port to a PTZ head", fields,
    {.whenNotKept = "Of the baud rates, a set reaches 4800 and 9600 only."});

} // namespace kxcam
