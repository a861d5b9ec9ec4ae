// kxcam ptz status: where the camera looks and what it is doing.
#include "Json.h"
#include "Table.h"
#include "verbs/Ptz.h"

#include <KxIpcSDK/KxSdk.h>

namespace kxcam
{
namespace
{

struct Status : PtzRunStatus
{
    int zoompos;
    int zoomnumber;
    int digitposzmstate;
    int lightstatus;
    int white_led_status;
    int lens_iris_mode;
};

constexpr Field fields[] = {
    field<&Status::zoompos>("zoompos", "zoom position"),
    field<&Status::zoomnumber>("zoomnumber", "zoom ratio"),
    field<&Status::digitposzmstate>("digitposzmstate", "state of the digital zoom"),
    field<&Status::lens_iris_mode>("lens_iris_mode", "iris mode code"),
    field<&Status::lightstatus>("lightstatus", "light"),
    field<&Status::white_led_status>("white_led_status", "white LED"),
    field<&Status::ptz_run_status, Status>("ptz_run_status", "whether the camera moves"),
    field<&Status::fish_0_ptz_run_status, Status>("fish_0_ptz_run_status", "the same of fisheye view 0"),
    field<&Status::fish_1_ptz_run_status, Status>("fish_1_ptz_run_status", "of view 1"),
    field<&Status::fish_2_ptz_run_status, Status>("fish_2_ptz_run_status", "of view 2"),
    field<&Status::fish_3_ptz_run_status, Status>("fish_3_ptz_run_status", "of view 3"),
    field<&Status::fish_4_ptz_run_status, Status>("fish_4_ptz_run_status", "of view 4"),
};

struct Number
{
    int (*get)(long userId, int* number);
    int Status::*member;
};

constexpr Number numbers[] = {
    {Kx_Ipc_GetPTZZoom, &Status::zoompos},
    {Kx_Ipc_GetZoomNumber, &Status::zoomnumber},
    {Kx_Ipc_GetDigitposzmState, &Status::digitposzmstate},
    {Kx_Ipc_GetCameraLens, &Status::lens_iris_mode},
    {Kx_Ipc_GetPTZLightStatus, &Status::lightstatus},
    {Kx_Ipc_GetWhiteLEDStatus, &Status::white_led_status},
};

/// What a model does not know is not told; a camera that has gone tells nothing more at all.
bool isGone(int result)
{
    const long error = Kx_Sdk_GetLastError();
    return result != 0 && error != KX_ERROR_NONE && error != KX_ERROR_NOT_FOUND;
}

int getStatus(long userId, Status* status)
{
    for (const Number& number : numbers)
        if (isGone(number.get(userId, &(status->*number.member))))
            return -1;
    return isGone(Kx_Ipc_GetPtzRunStatus(userId, status)) ? -1 : 0;
}

constexpr Area area = makeArea<getStatus, getStatus>("the PTZ status", "", fields);

ExitCode show(const CommandLine& line, Console& console)
{
    const Record record = Session(line.target).read(area);
    if (line.json)
        printJson(area, record, false, console);
    else
        console.table(tableOf(area, record, false, console.isTerminal()));
    return ExitCode::Ok;
}

} // namespace

void addPtzStatus(const Verb& ptz)
{
    ptz.add("status", "Show zoom, lights and what moves").does(show);
}

} // namespace kxcam
