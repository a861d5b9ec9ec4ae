// Audio. The settings of the output are written to cameras that have one, which the person must say.
#include <KxIpcSDK/KxAudio.h>

#include "Area.h"

namespace kxcam
{
namespace
{

constexpr Field fields[] = {
    field<&AudioInfo::audioenable>("audioenable", "1: audio on"),
    ranged(field<&AudioInfo::encoding>("encoding", "codec code"), 0),
    ranged(field<&AudioInfo::samplerate>("samplerate", "sample rate"), 0),
    field<&AudioInfo::audiobitrate>("audiobitrate", "bit rate"),
    ranged(field<&AudioInfo::audioinvolume>("audioinvolume", "input volume"), 0),
    ranged(field<&AudioInfo::alarmlevel>("alarmlevel", "level from which sound raises an alarm"), 0),
    field<&AudioInfo::speex>("speex", "speex setting"),
    onSomeModels(field<&AudioInfo::audiomode>("audiomode", "direction code; needs hasaudioout=1")),
    onSomeModels(
        ranged(field<&AudioInfo::audiooutvolume>("audiooutvolume", "output volume; needs hasaudioout=1"), 0)),
    onSomeModels(field<&AudioInfo::audioagc>("audioagc", "automatic gain control; needs hasaudioout=1")),
    writeOnly(field<&AudioInfo::hasaudioout>(
        "hasaudioout",
        "1: the camera has an audio output, so write its settings too; a get can not show it")),
};

} // namespace

extern constinit const Area audioArea = makeArea<Kx_Ipc_GetAudioConfig, Kx_Ipc_SetAudioConfig>(
    "audio", "audio: codec, volumes, sound alarm level", fields,
    {.whenNotKept = "A set writes audiomode, audiooutvolume and audioagc with hasaudioout=1 only."});

} // namespace kxcam
