#include <cstring>

#include <KxIpcSDK/KxStorage.h>

#include "Area.h"

namespace kxcam
{
namespace
{

constexpr Field fields[] = {
    readOnly(field<&RecordInfo::recordstoragetype>("recordstoragetype", "where recordings go, a code")),
    readOnly(
        field<&RecordInfo::sdfilemaxsize>("sdfilemaxsize", "greatest size of a file on the memory card")),
    readOnly(field<&RecordInfo::recordframetype>("recordframetype", "frames on the memory card, a code")),
    readOnly(
        field<&RecordInfo::nasfilemaxsize>("nasfilemaxsize", "greatest size of a file on the network drive")),
    readOnly(
        field<&RecordInfo::nasrecordframetype>("nasrecordframetype", "frames on the network drive, a code")),
    field<&RecordInfo::deletesdoldfile>("deletesdoldfile", "1: overwrite the oldest files on a full card"),
    field<&RecordInfo::msfsprerecordtime>("msfsprerecordtime", "how much is recorded from before an event"),
};

/// The SDK tells where recordings go also when the camera has told nothing.
int getRecording(long userId, RecordInfo* info)
{
    RecordInfo answer = *info;
    if (Kx_Ipc_GetRecordConfig(userId, &answer) != 0)
        return -1;
    RecordInfo untold = *info;
    untold.recordstoragetype = answer.recordstoragetype;
    if (std::memcmp(&answer, &untold, sizeof answer) != 0)
        *info = answer;
    return 0;
}

int setRecording(long userId, RecordInfo* info)
{
    return Kx_Ipc_SetRecordConfig(userId, info);
}

} // namespace

extern constinit const Area recordingArea =
    makeArea<getRecording, setRecording>("recording", "recording to card and network drive", fields);

} // namespace kxcam
