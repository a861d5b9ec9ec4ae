#include "Feed.h"

#include "HandOver.h"

#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace kxsim
{
namespace
{

using namespace std::chrono_literals;
using Kind = StreamFault::Kind;
using Clock = std::chrono::steady_clock;
using Share = std::shared_ptr<Feed>;

Feed& feedOf(gpointer share)
{
    HandOver::taken();
    return **static_cast<Share*>(share);
}

/// One more owner of the feed, for a pipeline to keep.
Share* shareOf(const Share& feed)
{
    auto* const share = new Share(feed);
    HandOver::given();
    return share;
}

void dropShare(gpointer share)
{
    HandOver::taken();
    delete static_cast<Share*>(share);
}

void dropClosureShare(gpointer share, GClosure*)
{
    dropShare(share);
}

/// A frame of units with their lengths ahead of them, but for the parameter sets.
Owned<GstBuffer> withoutParameterSets(Owned<GstBuffer> frame)
{
    constexpr gsize lengthSize = 4;
    constexpr int sequenceParameters = 7;
    constexpr int pictureParameters = 8;
    GstMapInfo bytes;
    gst_buffer_map(frame.get(), &bytes, GST_MAP_READ);
    std::vector<guint8> rest;
    for (gsize at = 0; at + lengthSize < bytes.size;) {
        const gsize whole =
            std::min<gsize>(lengthSize + GST_READ_UINT32_BE(bytes.data + at), bytes.size - at);
        const int kind = bytes.data[at + lengthSize] & 0x1F;
        if (kind != sequenceParameters && kind != pictureParameters)
            rest.insert(rest.end(), bytes.data + at, bytes.data + at + whole);
        at += whole;
    }
    gst_buffer_unmap(frame.get(), &bytes);
    Owned<GstBuffer> stripped(gst_buffer_new_memdup(rest.data(), rest.size()));
    constexpr auto all = static_cast<GstBufferCopyFlags>(GST_BUFFER_COPY_FLAGS | GST_BUFFER_COPY_TIMESTAMPS);
    gst_buffer_copy_into(stripped.get(), frame.get(), all, 0, G_MAXSIZE);
    return stripped;
}

void onNeedData(GstAppSrc* source, guint, gpointer share)
{
    feedOf(share).supply(source);
}

void onNewState(GstRTSPMedia*, gint state, gpointer share)
{
    feedOf(share).stateChanged(static_cast<GstState>(state));
}

GstPadProbeReturn onPacket(GstPad* pad, GstPadProbeInfo* info, gpointer share)
{
    return feedOf(share).inspect(pad, info);
}

const GstBuffer* firstPacketOf(GstPadProbeInfo* info)
{
    if (GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER)
        return gst_pad_probe_info_get_buffer(info);
    return gst_buffer_list_get(gst_pad_probe_info_get_buffer_list(info), 0);
}

void attachSource(GstElement* pipeline, const Share& feed, GstCaps* caps)
{
    const Owned<GstElement> source(gst_bin_get_by_name_recurse_up(GST_BIN(pipeline), "video"));
    GstAppSrcCallbacks callbacks{};
    callbacks.need_data = onNeedData;
    gst_app_src_set_caps(GST_APP_SRC(source.get()), caps);
    gst_app_src_set_callbacks(GST_APP_SRC(source.get()), &callbacks, shareOf(feed), dropShare);
}

constexpr char videoPayloader[] = "pay0";

bool isOfVideo(GstPad* pad)
{
    return std::string_view(GST_OBJECT_NAME(GST_OBJECT_PARENT(pad))) == videoPayloader;
}

void attachProbe(GstElement* pipeline, const char* payloader, const Share& feed)
{
    const Owned<GstElement> element(gst_bin_get_by_name_recurse_up(GST_BIN(pipeline), payloader));
    if (!element)
        return;
    const Owned<GstPad> pad(gst_element_get_static_pad(element.get(), "src"));
    const auto both =
        static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_BUFFER_LIST);
    gst_pad_add_probe(pad.get(), both, onPacket, shareOf(feed), dropShare);
}

} // namespace

void Feed::attach(GstRTSPMedia* media, std::shared_ptr<EncodedLoop> loop,
                  std::shared_ptr<const CurrentFault> fault)
{
    const Owned<GstCaps> caps = loop->caps();
    const Share feed = std::make_shared<Feed>(std::move(loop), std::move(fault));
    const Owned<GstElement> pipeline(gst_rtsp_media_get_element(media));
    attachSource(pipeline.get(), feed, caps.get());
    for (const char* const payloader : {videoPayloader, "pay1"})
        attachProbe(pipeline.get(), payloader, feed);
    g_signal_connect_data(media, "new-state", G_CALLBACK(onNewState), shareOf(feed), dropClosureShare,
                          GConnectFlags{});
}

Feed::Feed(std::shared_ptr<EncodedLoop> loop, std::shared_ptr<const CurrentFault> fault)
    : loop_(std::move(loop)), fault_(std::move(fault))
{
}

void Feed::supply(GstAppSrc* source)
{
    Owned<GstBuffer> frame = loop_->frame(index_++);
    while (frame && withheld(frame.get()))
        frame = loop_->frame(index_++);
    if (frame && fault_->now().kind == Kind::BadParameters && loop_->plan().codec == VideoCodec::H264)
        frame = withoutParameterSets(std::move(frame));
    if (frame)
        gst_app_src_push_buffer(source, frame.release());
    else
        gst_app_src_end_of_stream(source);
}

bool Feed::withheld(const GstBuffer* frame) const
{
    const bool isKey = !GST_BUFFER_FLAG_IS_SET(frame, GST_BUFFER_FLAG_DELTA_UNIT);
    if (!isKey || loop_->plan().codec != VideoCodec::H264)
        return false;
    const StreamFault fault = fault_->now();
    return fault.kind == Kind::NoKeyFrame &&
           GST_BUFFER_PTS(frame) < GST_MSECOND * static_cast<GstClockTime>(fault.after.count());
}

void Feed::stateChanged(GstState state)
{
    if (state == GST_STATE_PLAYING)
        playingSince_ = Clock::now().time_since_epoch().count();
}

bool Feed::hasPlayedFor(std::chrono::nanoseconds time) const
{
    const Clock::rep since = playingSince_;
    return since != 0 && Clock::now().time_since_epoch() - Clock::duration(since) >= time;
}

// Before a stream plays, its pipeline waits for its first packet, which must come whatever the fault.
GstPadProbeReturn Feed::inspect(GstPad* pad, GstPadProbeInfo* info)
{
    const StreamFault fault = fault_->now();
    const bool ends = fault.kind == Kind::StopSending || (fault.kind == Kind::StopPictures && isOfVideo(pad));
    if (ends && hasPlayedFor(fault.after)) {
        waitUntilDue(pad, info);
        return GST_PAD_PROBE_DROP;
    }
    if (fault.kind == Kind::LosePackets && hasPlayedFor({}))
        return isGone(info, fault.every) ? GST_PAD_PROBE_DROP : GST_PAD_PROBE_OK;
    return GST_PAD_PROBE_OK;
}

// What is sent is paced by the pipeline's end, and what does not get there would race ahead.
void Feed::waitUntilDue(GstPad* pad, GstPadProbeInfo* info) const
{
    const GstClockTime time = GST_BUFFER_PTS(firstPacketOf(info));
    if (!GST_CLOCK_TIME_IS_VALID(time))
        return;
    while (!hasPlayedFor(std::chrono::nanoseconds(time)) && !GST_PAD_IS_FLUSHING(pad))
        std::this_thread::sleep_for(5ms);
}

/// Takes the lost ones away; whether none is left.
bool Feed::isGone(GstPadProbeInfo* info, unsigned every)
{
    if (GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER)
        return isLost(every);
    GstBufferList* const packets = gst_buffer_list_make_writable(gst_pad_probe_info_get_buffer_list(info));
    for (guint i = gst_buffer_list_length(packets); i-- > 0;)
        if (isLost(every))
            gst_buffer_list_remove(packets, i, 1);
    GST_PAD_PROBE_INFO_DATA(info) = packets;
    return gst_buffer_list_length(packets) == 0;
}

} // namespace kxsim
