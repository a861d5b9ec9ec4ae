// The on-screen display, an area a stream. The SDK's record holds all streams; those that a set does not mark as valid
// stay as they are.
#include <KxIpcSDK/KxOsd.h>

#include "Area.h"

namespace kxcam
{
namespace
{

constexpr Field fields[] = {
    field<&OsdStreamInfo::textenable>("textenable", "1: caption shown"),
    encoded(field<&OsdStreamInfo::overlaytext>("overlaytext", "caption")),
    field<&OsdStreamInfo::textposition>("textposition", "caption position code"),
    field<&OsdStreamInfo::datestampenable>("datestampenable", "1: date and time shown"),
    field<&OsdStreamInfo::dateposition>("dateposition", "date stamp position code"),
    field<&OsdStreamInfo::dateformat>("dateformat", "date format code"),
    onSomeModels(field<&OsdStreamInfo::osdfontsize>("osdfontsize", "font size code")),
};

template <std::size_t Number>
int getStream(long userId, OsdStreamInfo* stream)
{
    OsdInfo info{};
    info.streams[Number] = *stream;
    const int result = Kx_Ipc_GetOSD(userId, &info);
    *stream = info.streams[Number];
    return result;
}

// A camera with one stream would take any set for its main stream, but its other streams can not be read, and what can
// not be read is not written.
template <std::size_t Number>
int setStream(long userId, OsdStreamInfo* stream)
{
    OsdInfo info{};
    info.streams[Number] = *stream;
    info.streams[Number].valid = 1;
    return Kx_Ipc_SetOSD(userId, &info);
}

template <std::size_t Number>
constexpr Area streamArea(std::string_view name)
{
    return makeArea<getStream<Number>, setStream<Number>>(name, "", fields);
}

constexpr Area mainArea = streamArea<0>("osd main");
constexpr Area subArea = streamArea<1>("osd sub");
constexpr Area thirdArea = streamArea<2>("osd third");
constexpr Stream streams[] = {{"main", &mainArea}, {"sub", &subArea}, {"third", &thirdArea}};

} // namespace

extern constinit const Area osdArea =
    makeArea("osd", "on-screen display: caption and date stamp (a stream each)", streams);

} // namespace kxcam
