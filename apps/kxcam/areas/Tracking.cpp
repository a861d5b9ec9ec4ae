// Automatic tracking, but for its schedule, which `kxcam ptz tracking schedule` shows and changes.
#include <KxIpcSDK/KxPtz.h>

#include "Area.h"

namespace kxcam
{
namespace
{

using Info = PtzAutoTrackInfo;

constexpr Field fields[] = {
    field<&Info::auto_tracking_enable>("auto_tracking_enable", "1: automatic tracking on"),
    field<&Info::auto_tracking_show>("auto_tracking_show", "1: the tracking frame is shown"),
    field<&Info::auto_tracking_sensitivity>("auto_tracking_sensitivity", "sensitivity code"),
    field<&Info::auto_tracking_max_time>("auto_tracking_max_time", "longest tracking time"),
    field<&Info::auto_tracking_zoom_mode>("auto_tracking_zoom_mode", "zoom mode code"),
    field<&Info::auto_tracking_zoom_number>("auto_tracking_zoom_number", "zoom ratio"),
    readOnly(field<&Info::manual_tracking>("manual_tracking", "state of manual tracking")),
};

} // namespace

extern constinit const Area trackingArea = makeArea<Kx_Ipc_GetPTZAutoTrack, Kx_Ipc_SetPTZAutoTrack>(
    "tracking", "automatic tracking of moving objects", fields);

} // namespace kxcam
