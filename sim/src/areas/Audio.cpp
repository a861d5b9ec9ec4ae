// The audio area: its settings, and the table of what the camera can encode.
#include "Area.h"

#include <array>

namespace kxsim
{
namespace
{

constexpr std::array settings{
    Setting{"audioenable", "1"},    Setting{"audiomode", "0"},      Setting{"encoding", "4"},
    Setting{"samplerate", "16000"}, Setting{"audioinvolume", "50"}, Setting{"audiooutvolume", "50"},
    Setting{"alarmlevel", "30"},    Setting{"speex", "0"},          Setting{"audioagc", "0"},
    Setting{"audiobitrate", "32"},
};

constexpr std::array setRules{
    SetRule{.key = "bitrate", .take = keepAs<"audiobitrate">, .page = "audio"},
};

constexpr std::array pages{Page{"audio"}};

// Codecs are numbered; what a codec can is told under its code, and bit rates under their sample rate alone.
std::vector<std::string> tellOptions(Settings&, const Parameters&)
{
    return {
        quoted("audio_codec_0", "0"),
        quoted("audio_codec_0_sample_rate_0", "8000"),
        quoted("audio_codec_1", "4"),
        quoted("audio_codec_4_sample_rate_0", "16000"),
        quoted("audio_codec_4_sample_rate_1", "32000"),
        quoted("audio_sample_rate_8000_bit_rate_0", "64"),
        quoted("audio_sample_rate_16000_bit_rate_0", "32"),
        quoted("audio_sample_rate_16000_bit_rate_1", "48"),
        quoted("audio_sample_rate_32000_bit_rate_0", "64"),
        quoted("audio_sample_rate_32000_bit_rate_1", "96"),
        quoted("audio_sample_rate_32000_bit_rate_2", "128"),
    };
}

constexpr std::array actions{
    Action{adminPath, "get.audio.options", tellOptions},
};

} // namespace

constinit const Area audioArea{
    .settings = settings, .setRules = setRules, .actions = actions, .pages = pages};

} // namespace kxsim
