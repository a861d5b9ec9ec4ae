#include "Mount.h"

#include "Feed.h"

#include <utility>

namespace kxsim
{
namespace
{

// The parameter sets of H.264 are told in the description and with each key frame.
std::string videoLine(VideoCodec codec)
{
    if (codec == VideoCodec::Mjpeg)
        return "appsrc name=video format=time ! rtpjpegpay name=pay0 pt=26";
    return "appsrc name=video format=time ! rtph264pay name=pay0 pt=96 config-interval=-1";
}

std::string soundLine(const SoundPlan& sound)
{
    if (sound.codec == SoundCodec::None)
        return "";
    const std::string tone =
        " audiotestsrc freq=440 volume=0.3 ! audio/x-raw,channels=1,rate=" + std::to_string(sound.rate);
    if (sound.codec == SoundCodec::G711)
        return tone + " ! mulawenc ! rtppcmupay name=pay1 pt=0";
    return tone + " ! voaacenc bitrate=32000 ! rtpmp4gpay name=pay1 pt=97";
}

// The server sends from ports of the camera's own address, as it does everything else.
void stayOnAddress(GstRTSPMediaFactory* factory, const std::string& host)
{
    constexpr guint16 firstPort = 20000;
    constexpr guint16 lastPort = 29999;
    constexpr guint8 unicast = 0;
    const Owned<GstRTSPAddressPool> pool(gst_rtsp_address_pool_new());
    gst_rtsp_address_pool_add_range(pool.get(), host.c_str(), host.c_str(), firstPort, lastPort, unicast);
    gst_rtsp_media_factory_set_address_pool(factory, pool.get());
    gst_rtsp_media_factory_set_protocols(
        factory, static_cast<GstRTSPLowerTrans>(GST_RTSP_LOWER_TRANS_UDP | GST_RTSP_LOWER_TRANS_TCP));
}

void admitUsers(GstRTSPMediaFactory* factory)
{
    gst_rtsp_media_factory_add_role(factory, userRole, GST_RTSP_PERM_MEDIA_FACTORY_ACCESS, G_TYPE_BOOLEAN,
                                    TRUE, GST_RTSP_PERM_MEDIA_FACTORY_CONSTRUCT, G_TYPE_BOOLEAN, TRUE,
                                    nullptr);
}

} // namespace

Mount::Mount(GstRTSPServer* server, const std::string& host, std::string path,
             std::shared_ptr<const CurrentFault> fault)
    : path_(std::move(path)), fault_(std::move(fault)), points_(gst_rtsp_server_get_mount_points(server)),
      factory_(gst_rtsp_media_factory_new())
{
    plan_.enabled = false;
    admitUsers(factory_.get());
    stayOnAddress(factory_.get(), host);
    const auto configured = +[](GstRTSPMediaFactory*, GstRTSPMedia* media, gpointer self) {
        static_cast<Mount*>(self)->configure(media);
    };
    g_signal_connect(factory_.get(), "media-configure", G_CALLBACK(configured), this);
}

Mount::~Mount()
{
    g_signal_handlers_disconnect_by_data(factory_.get(), this);
}

bool Mount::follow(const StreamPlan& plan)
{
    if (plan == plan_)
        return false;
    plan_ = plan;
    gst_rtsp_mount_points_remove_factory(points_.get(), path_.c_str());
    if (!plan.enabled)
        return true;
    loop_ = EncodedLoop::of(plan.video);
    const std::string line = "( " + videoLine(plan.video.codec) + soundLine(plan.sound) + " )";
    gst_rtsp_media_factory_set_launch(factory_.get(), line.c_str());
    gst_rtsp_mount_points_add_factory(points_.get(), path_.c_str(),
                                      GST_RTSP_MEDIA_FACTORY(g_object_ref(factory_.get())));
    return true;
}

void Mount::configure(GstRTSPMedia* media)
{
    const bool keepsParameters = fault_->now().kind == StreamFault::Kind::BadParameters;
    if (keepsParameters && plan_.video.codec == VideoCodec::H264) {
        const Owned<GstElement> pipeline(gst_rtsp_media_get_element(media));
        const Owned<GstElement> payloader(gst_bin_get_by_name_recurse_up(GST_BIN(pipeline.get()), "pay0"));
        g_object_set(payloader.get(), "config-interval", 0, nullptr);
    }
    Feed::attach(media, loop_, fault_);
}

} // namespace kxsim
