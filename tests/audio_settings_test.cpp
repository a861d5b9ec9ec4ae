// Audio: both forms of the set, and the table of what the camera can encode.
#include "SdkTest.h"

#include <cstring>

using kxsim::httpReply;
using testing::ElementsAre;

using AudioSettings = CameraTest;

/// Every field, in the record's order.
static std::vector<int> fieldsOf(const AudioInfo& a)
{
    return {a.audioenable, a.audiomode,  a.audioinvolume, a.alarmlevel,  a.audiooutvolume, a.speex,
            a.encoding,    a.samplerate, a.audiobitrate,  a.hasaudioout, a.audioagc};
}

TEST_F(AudioSettings, EveryKeyIsReadIntoItsField)
{
    AudioInfo before{};
    before.hasaudioout = 9; // never filled
    const AudioInfo info =
        read(Kx_Ipc_GetAudioConfig,
             "OK audioenable=1\nOK audiomode=2\nOK encoding=3\nOK samplerate=4\nOK audioinvolume=5\n"
             "OK audiooutvolume=6\nOK alarmlevel=7\nOK speex=8\nOK audioagc=10\nOK audiobitrate=11\n"
             "OK hasaudioout=1\nOK bitrate=1\n",
             before);
    EXPECT_THAT(fieldsOf(info), ElementsAre(1, 2, 5, 7, 6, 8, 3, 4, 11, 9, 10));
    EXPECT_THAT(queries(ti), ElementsAre("&paratest=audioenable&paratest=audiomode&paratest=encoding"
                                         "&paratest=samplerate&paratest=audioinvolume"
                                         "&paratest=audiooutvolume&paratest=alarmlevel&paratest=speex"
                                         "&paratest=audioagc&paratest=audiobitrate"));
}

TEST_F(AudioSettings, TheOutputsSettingsAreSentToCamerasThatHaveOne)
{
    AudioInfo info{1, 2, 5, 7, 6, -8, 3, 4, 11, 1, -10};
    EXPECT_EQ(Kx_Ipc_SetAudioConfig(tiId, &info), 0);
    EXPECT_EQ(ti.value("audiobitrate"), "11"); // is sent under another name
    info.hasaudioout = 0;
    EXPECT_EQ(Kx_Ipc_SetAudioConfig(tiId, &info), 0);
    info.encoding = info.samplerate = info.audioinvolume = info.audiooutvolume = info.alarmlevel = -1;
    info.audiobitrate = -1;
    EXPECT_EQ(Kx_Ipc_SetAudioConfig(tiId, &info), 0);
    info.hasaudioout = -1;
    EXPECT_EQ(Kx_Ipc_SetAudioConfig(tiId, &info), 0);
    EXPECT_EQ(info.encoding, -1); // the caller's record stays as it is
    EXPECT_THAT(
        queries(ti),
        ElementsAre("/vb.htm?page=audio&audioenable=1&audiomode=2&encoding=3&samplerate=4&audioinvolume=5"
                    "&audiooutvolume=6&alarmlevel=7&speex=-8&audioagc=-10&bitrate=11",
                    "/vb.htm?page=audio&audioenable=1&encoding=3&samplerate=4&audioinvolume=5&alarmlevel=7"
                    "&speex=-8&bitrate=11",
                    "/vb.htm?page=audio&audioenable=1&encoding=0&samplerate=0&audioinvolume=0&alarmlevel=0"
                    "&speex=-8&bitrate=-1",
                    "/vb.htm?page=audio&audioenable=1&audiomode=2&encoding=0&samplerate=0&audioinvolume=0"
                    "&audiooutvolume=0&alarmlevel=0&speex=-8&audioagc=-10&bitrate=-1"));
}

TEST_F(AudioSettings, OptionsAreToldByCodecAndBySampleRate)
{
    AudioOptions options{};
    EXPECT_EQ(Kx_Ipc_GetAudioOptions(pageId, &options), 0);
    EXPECT_THAT(queries(page), ElementsAre("/cgi-bin/admin/admin.cgi?action=get.audio.options"));
    AudioOptions wanted{};
    wanted.codeccount = 2;
    wanted.codecs[0] = {0, 1, {{8000, 1, {64}}}};
    wanted.codecs[1] = {4, 2, {{16000, 2, {32, 48}}, {32000, 3, {64, 96, 128}}}};
    EXPECT_EQ(std::memcmp(&options, &wanted, sizeof options), 0);

    // Counts go on from what they are, entries do not.
    EXPECT_EQ(Kx_Ipc_GetAudioOptions(pageId, &options), 0);
    EXPECT_EQ(options.codeccount, 4U);
    EXPECT_EQ(options.codecs[1].samplerates[1].bitratecount, 6U);
    EXPECT_EQ(options.codecs[2].codec, 0U);
}

TEST_F(AudioSettings, ACameraWithoutOptionsIsNoFailure)
{
    AudioOptions options;
    std::memset(&options, 0x55, sizeof options);
    const AudioOptions before = options;
    for (const std::string& reply : {httpReply("audio_codec_1 = '1';\n"), std::string("\0", 1)}) {
        page.replaceReply("options", reply);
        EXPECT_EQ(Kx_Ipc_GetAudioOptions(pageId, &options), 0);
        EXPECT_EQ(std::memcmp(&options, &before, sizeof options), 0);
    }
    EXPECT_EQ(Kx_Ipc_GetAudioOptions(pageId, nullptr), 0);
    page.replaceReply("options", httpReply("404 Not Found"));
    EXPECT_EQ(Kx_Ipc_GetAudioOptions(pageId, &options), -1);
}

TEST_F(AudioSettings, OptionsWithoutEndFillTheTableAndNoMore)
{
    std::string lines;
    for (int i = 0; i < 12; ++i) {
        const std::string mark = std::to_string(i);
        for (const char* key :
             {"audio_codec_", "audio_codec_-5_sample_rate_", "audio_sample_rate_7_bit_rate_"})
            lines += key + mark + (std::strlen(key) == 12 ? " = '-5';\n" : " = '7';\n");
    }
    page.replaceReply("options", httpReply(lines));
    struct
    {
        AudioOptions options;
        char behind[16];
    } record{};
    EXPECT_EQ(Kx_Ipc_GetAudioOptions(pageId, &record.options), 0);
    EXPECT_EQ(record.options.codeccount, 9U);
    const AudioCodecOption& last = record.options.codecs[8];
    EXPECT_EQ(last.codec, static_cast<std::uint32_t>(-5));
    EXPECT_EQ(last.sampleratecount, 9U);
    EXPECT_EQ(last.samplerates[8].bitratecount, 9U);
    EXPECT_EQ(last.samplerates[8].bitrates[8], 7U);
    EXPECT_EQ(last.samplerates[8].bitrates[9], 0U);
    EXPECT_THAT(record.behind, testing::Each('\0'));
}
