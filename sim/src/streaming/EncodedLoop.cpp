// Any number of clients cost no more encoding than one, and after the first round none at all: what a benchmark on the
// same machine measures is its client. The encoder runs ahead of nobody, so the first frame is there at once.
#include "EncodedLoop.h"

#include "KxSim/Streaming.h"
#include "Picture.h"

#include <gst/app/app.h>

#include <map>
#include <string>

namespace kxsim
{
namespace
{

// One slice a frame, out as soon as it is in. Frame 0 opens the stream, and with it each round.
std::string encoderFor(const VideoPlan& plan)
{
    if (plan.codec == VideoCodec::Mjpeg)
        return "jpegenc quality=" + std::to_string(plan.quality);
    return "x264enc tune=zerolatency speed-preset=ultrafast threads=1 option-string=scenecut=0 key-int-max=" +
           std::to_string(plan.keyInterval) + " bitrate=" + std::to_string(plan.bitrate) +
           " ! video/x-h264,stream-format=avc,alignment=au";
}

GstClockTime timeOf(std::uint64_t index, int rate)
{
    return gst_util_uint64_scale_int(index, GST_SECOND, rate);
}

} // namespace

/// Turns pictures into frames, one by one.
class EncodedLoop::Encoder
{
public:
    explicit Encoder(const VideoPlan& plan);
    ~Encoder() { gst_element_set_state(pipeline_.get(), GST_STATE_NULL); }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    Owned<GstSample> encode(unsigned number);

private:
    Owned<GstElement> element(const char* name) const
    {
        return Owned<GstElement>(gst_bin_get_by_name(GST_BIN(pipeline_.get()), name));
    }

    const VideoPlan plan_;
    Owned<GstElement> pipeline_;
    Owned<GstElement> in_;
    Owned<GstElement> out_;
};

EncodedLoop::Encoder::Encoder(const VideoPlan& plan) : plan_(plan)
{
    const std::string line =
        "appsrc name=in format=time ! " + encoderFor(plan) + " ! appsink name=out sync=false";
    pipeline_.reset(GST_ELEMENT(gst_object_ref_sink(gst_parse_launch(line.c_str(), nullptr))));
    in_ = element("in");
    out_ = element("out");
    const Owned<GstCaps> caps(gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "I420", "width",
                                                  G_TYPE_INT, plan.width, "height", G_TYPE_INT, plan.height,
                                                  "framerate", GST_TYPE_FRACTION, plan.rate, 1, nullptr));
    gst_app_src_set_caps(GST_APP_SRC(in_.get()), caps.get());
    gst_element_set_state(pipeline_.get(), GST_STATE_PLAYING);
}

Owned<GstSample> EncodedLoop::Encoder::encode(unsigned number)
{
    constexpr GstClockTime longEnough = 10 * GST_SECOND;
    GstBuffer* const picture =
        gst_buffer_new_allocate(nullptr, pictureSize(plan_.width, plan_.height), nullptr);
    GstMapInfo bytes;
    gst_buffer_map(picture, &bytes, GST_MAP_WRITE);
    drawPicture(number, plan_.width, plan_.height, bytes.data);
    gst_buffer_unmap(picture, &bytes);
    GST_BUFFER_PTS(picture) = timeOf(number, plan_.rate);
    GST_BUFFER_DURATION(picture) = timeOf(1, plan_.rate);
    gst_app_src_push_buffer(GST_APP_SRC(in_.get()), picture);
    return Owned<GstSample>(gst_app_sink_try_pull_sample(GST_APP_SINK(out_.get()), longEnough));
}

std::shared_ptr<EncodedLoop> EncodedLoop::of(const VideoPlan& plan)
{
    static std::mutex mutex;
    static std::map<VideoPlan, std::weak_ptr<EncodedLoop>> loops;
    const std::lock_guard lock(mutex);
    std::erase_if(loops, [](const auto& entry) { return entry.second.expired(); });
    std::weak_ptr<EncodedLoop>& known = loops[plan];
    std::shared_ptr<EncodedLoop> loop = known.lock();
    if (!loop)
        known = loop = std::make_shared<EncodedLoop>(plan);
    return loop;
}

EncodedLoop::EncodedLoop(const VideoPlan& plan) : plan_(plan) {}

EncodedLoop::~EncodedLoop() = default;

GstSample* EncodedLoop::sample(std::size_t number)
{
    while (samples_.size() <= number) {
        if (!encoder_)
            encoder_ = std::make_unique<Encoder>(plan_);
        Owned<GstSample> next = encoder_->encode(static_cast<unsigned>(samples_.size()));
        if (!next)
            return nullptr;
        samples_.push_back(std::move(next));
    }
    if (samples_.size() == framesPerLoop)
        encoder_.reset();
    return samples_[number].get();
}

Owned<GstCaps> EncodedLoop::caps()
{
    const std::lock_guard lock(mutex_);
    GstSample* const first = sample(0);
    return Owned<GstCaps>(first ? gst_caps_ref(gst_sample_get_caps(first)) : nullptr);
}

Owned<GstBuffer> EncodedLoop::frame(std::uint64_t index)
{
    const std::lock_guard lock(mutex_);
    GstSample* const encoded = sample(index % framesPerLoop);
    if (!encoded)
        return nullptr;
    Owned<GstBuffer> frame(gst_buffer_copy(gst_sample_get_buffer(encoded))); // the bytes are shared
    GST_BUFFER_PTS(frame.get()) = GST_BUFFER_DTS(frame.get()) = timeOf(index, plan_.rate);
    GST_BUFFER_DURATION(frame.get()) = timeOf(index + 1, plan_.rate) - timeOf(index, plan_.rate);
    return frame;
}

} // namespace kxsim
