// On-screen display. A camera of the TI family has it on one stream, any other on three, each with keys of its own.
#include <KxIpcSDK/KxOsd.h>

#include <cstring>
#include <new>
#include <span>
#include <string>

#include "KxIpcSDK/CameraCall.h"
#include "KxIpcSDK/Key.h"
#include "NetManager/Encoding.h"

namespace
{

struct Setting
{
    const char* key;                     // asked for; sent to a camera with one stream
    const char* keyOfThree;              // sent to a camera with three streams, behind the stream's prefix
    std::uint8_t OsdStreamInfo::*number; // null: the caption
};

// In the order in which cameras are asked for them and sent them.
constexpr Setting allSettings[] = {
    {"textenable1", "textenable", &OsdStreamInfo::textenable},
    {"textposition1", "textposition", &OsdStreamInfo::textposition},
    {"overlaytext1", "overlaytext", nullptr},
    {"dateposition", "dateposition", &OsdStreamInfo::dateposition},
    {"dateformat", "dateformat", &OsdStreamInfo::dateformat},
    {"datestampenable1", "datestampenable", &OsdStreamInfo::datestampenable},
    {"osdfontsize", "osdfontsize", &OsdStreamInfo::osdfontsize},
};
constexpr std::span<const Setting> withoutFontSize = std::span(allSettings).first<6>();

constexpr struct
{
    const char* suffix; // of a get
    const char* prefix; // of a set
} streamMarks[] = {{".0", "main"}, {".1", "sub"}, {".2", "third"}};

void askForStream(Query& query, std::span<const Setting> settings, const char* suffix)
{
    for (const Setting& setting : settings)
        query.ask(Key("%s%s", setting.key, suffix));
}

void readStream(const OkReply& reply, std::span<const Setting> settings, const char* suffix,
                OsdStreamInfo& stream)
{
    for (const Setting& setting : settings) {
        const Key key("%s%s", setting.key, suffix);
        if (setting.number != nullptr)
            reply.number(key, stream.*setting.number);
        else
            reply.text(key, stream.overlaytext);
    }
}

/// EncodeURI lets two characters pass that would end the caption on the camera's side.
std::string encodedCaption(const OsdStreamInfo& stream)
{
    const std::string caption(stream.overlaytext, strnlen(stream.overlaytext, sizeof stream.overlaytext));
    std::string encoded;
    for (const char character : EncodeURI(caption.c_str())) {
        if (character == '&')
            encoded += "%26";
        else if (character == '=')
            encoded += "%3D";
        else
            encoded += character;
    }
    return encoded;
}

void addSetting(Query& query, const char* prefix, const char* key, const Setting& setting,
                const OsdStreamInfo& stream)
{
    if (setting.number != nullptr)
        query.number(Key("%s%s", prefix, key), stream.*setting.number);
    else
        query.add("&%s%s=%s", prefix, key, encodedCaption(stream).c_str());
}

int getOneStream(CameraCall& call, OsdStreamInfo& stream)
{
    Query query;
    askForStream(query, withoutFontSize, "");
    const OkReply reply = call.get(query);
    if (!reply)
        return -1;
    readStream(reply, withoutFontSize, "", stream);
    return 0;
}

int setOneStream(CameraCall& call, const OsdStreamInfo& stream)
{
    Query query;
    for (const Setting& setting : withoutFontSize)
        addSetting(query, "", setting.key, setting, stream);
    return call.set(query);
}

int getThreeStreams(CameraCall& call, OsdInfo& info)
{
    Query query;
    for (const auto& mark : streamMarks)
        askForStream(query, allSettings, mark.suffix);
    const OkReply reply = call.get(query);
    if (!reply)
        return -1;
    for (std::size_t i = 0; i < std::size(streamMarks); ++i)
        readStream(reply, allSettings, streamMarks[i].suffix, info.streams[i]);
    return 0;
}

int setThreeStreams(CameraCall& call, const OsdInfo& info)
{
    Query query;
    for (std::size_t i = 0; i < std::size(streamMarks); ++i) {
        if (info.streams[i].valid == 0)
            continue;
        for (const Setting& setting : allSettings)
            addSetting(query, streamMarks[i].prefix, setting.keyOfThree, setting, info.streams[i]);
    }
    return call.set(query);
}

} // namespace

int Kx_Ipc_GetOSD(long userId, OsdInfo* info)
{
    CameraCall call(userId, info);
    const auto family = call.chipFamily();
    if (!family)
        return -1;
    return *family == ChipFamily::Ti ? getOneStream(call, info->streams[0]) : getThreeStreams(call, *info);
}

int Kx_Ipc_SetOSD(long userId, const OsdInfo* info)
try {
    CameraCall call(userId, info);
    const auto family = call.chipFamily();
    if (!family)
        return -1;
    return *family == ChipFamily::Ti ? setOneStream(call, info->streams[0]) : setThreeStreams(call, *info);
} catch (const std::bad_alloc&) {
    return -1;
}

int Kx_Ipc_GetOSD_ForOldVer(long userId, OsdStreamInfo* info)
{
    CameraCall call(userId, info);
    return call ? getOneStream(call, *info) : -1;
}

int Kx_Ipc_SetOSD_ForOldVer(long userId, const OsdStreamInfo* info)
try {
    CameraCall call(userId, info);
    return call ? setOneStream(call, *info) : -1;
} catch (const std::bad_alloc&) {
    return -1;
}
