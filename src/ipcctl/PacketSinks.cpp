#include "ipcctl/PacketSinks.h"

void PacketSinks::attach(std::shared_ptr<PacketSink> sink)
{
    sinks_.attach(std::make_shared<Attached>(Attached{std::move(sink)}));
}

void PacketSinks::detach(const PacketSink& sink)
{
    sinks_.detach([&](const Attached& attached) { return attached.sink.get() == &sink; });
}

void PacketSinks::beginAnew()
{
    sinks_.each([](Attached& attached) { attached.begun = false; });
}

void PacketSinks::takeVideo(const AVPacket& packet, double time, const StreamFormat& format)
{
    sinks_.each([&](Attached& attached) {
        if (!attached.begun && (packet.flags & AV_PKT_FLAG_KEY) != 0) {
            attached.sink->begin(format);
            attached.begun = true;
        }
        if (attached.begun)
            attached.sink->takeVideo(packet, time);
    });
}

void PacketSinks::takeSound(const AVPacket& packet, double time)
{
    sinks_.each([&](Attached& attached) {
        if (attached.begun)
            attached.sink->takeSound(packet, time);
    });
}
