#include "ipcctl/Av.h"

#include <cstddef>

namespace
{

constexpr int inaudible = 2 * AV_LOG_TRACE; // added to the level of each message

} // namespace

void silence(AVCodecContext& context)
{
    context.log_level_offset = inaudible;
}

/// The class of inputs has no place for such an offset. A class that is the same otherwise takes it from where the input
/// keeps a limit of probing, which is not done with live streams.
void silence(AVFormatContext& input)
{
    static const AVClass quiet = [&] {
        AVClass copy = *input.av_class;
        copy.log_level_offset_offset = static_cast<int>(offsetof(AVFormatContext, max_ts_probe));
        return copy;
    }();
    input.av_class = &quiet;
    input.max_ts_probe = inaudible;
}
