// Audio, and what audio the camera can encode.
#include <KxIpcSDK/KxAudio.h>

#include <algorithm>

#include "KxIpcSDK/CameraCall.h"
#include "KxIpcSDK/Key.h"

namespace
{

using AudioReply = Reply<OkStyle, 512>;
using OptionsReply = Reply<QuotedStyle, 10240, 1024>;

constexpr int optionsTold = 9; // of each kind at most

void addAtLeastZero(Query& query, const char* key, int value)
{
    query.number(key, std::max(value, 0));
}

void readBitrates(const OptionsReply& reply, AudioSampleRateOption& rate)
{
    for (int i = 0; i < optionsTold; ++i) {
        if (!reply.number(Key("audio_sample_rate_%d_bit_rate_%d", static_cast<int>(rate.samplerate), i),
                          rate.bitrates[i]))
            return;
        ++rate.bitratecount;
    }
}

void readSampleRates(const OptionsReply& reply, AudioCodecOption& codec)
{
    for (int i = 0; i < optionsTold; ++i) {
        if (!reply.number(Key("audio_codec_%d_sample_rate_%d", static_cast<int>(codec.codec), i),
                          codec.samplerates[i].samplerate))
            return;
        ++codec.sampleratecount;
        readBitrates(reply, codec.samplerates[i]);
    }
}

void readCodecs(const OptionsReply& reply, AudioOptions& options)
{
    for (int i = 0; i < optionsTold; ++i) {
        if (!reply.number(Key("audio_codec_%d", i), options.codecs[i].codec))
            return;
        ++options.codeccount;
        readSampleRates(reply, options.codecs[i]);
    }
}

} // namespace

int Kx_Ipc_GetAudioConfig(long userId, AudioInfo* info)
{
    CameraCall call(userId, info);
    const auto reply = call.get<AudioReply>("&paratest=audioenable&paratest=audiomode&paratest=encoding&"
                                            "paratest=samplerate&paratest=audioinvolume"
                                            "&paratest=audiooutvolume&paratest=alarmlevel&paratest=speex&"
                                            "paratest=audioagc&paratest=audiobitrate");
    if (!reply)
        return -1;
    reply.number("audioenable", info->audioenable);
    reply.number("audiomode", info->audiomode);
    reply.number("encoding", info->encoding);
    reply.number("samplerate", info->samplerate);
    reply.number("audioinvolume", info->audioinvolume);
    reply.number("audiooutvolume", info->audiooutvolume);
    reply.number("alarmlevel", info->alarmlevel);
    reply.number("speex", info->speex);
    reply.number("audioagc", info->audioagc);
    reply.number("audiobitrate", info->audiobitrate);
    return 0;
}

int Kx_Ipc_SetAudioConfig(long userId, const AudioInfo* info)
{
    CameraCall call(userId, info);
    if (!call)
        return -1;
    const bool hasOutput = info->hasaudioout != 0;
    Query query;
    query.add("page=audio");
    query.number("audioenable", info->audioenable);
    if (hasOutput)
        query.number("audiomode", info->audiomode);
    addAtLeastZero(query, "encoding", info->encoding);
    addAtLeastZero(query, "samplerate", info->samplerate);
    addAtLeastZero(query, "audioinvolume", info->audioinvolume);
    if (hasOutput)
        addAtLeastZero(query, "audiooutvolume", info->audiooutvolume);
    addAtLeastZero(query, "alarmlevel", info->alarmlevel);
    query.number("speex", info->speex);
    if (hasOutput)
        query.number("audioagc", info->audioagc);
    query.number("bitrate", info->audiobitrate); // read back as audiobitrate
    return call.set<AudioReply>(query);
}

std::int8_t Kx_Ipc_GetAudioOptions(long userId, AudioOptions* options)
{
    CameraCall call(userId);
    const auto reply = call.get<OptionsReply>("action=get.audio.options", adminRequest);
    if (!reply.received())
        return -1;
    if (options != nullptr)
        readCodecs(reply, *options);
    return 0;
}
