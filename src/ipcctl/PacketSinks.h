// The packet sinks that are attached to a stream.
#pragma once

#include <memory>

#include "ipcctl/PacketSink.h"
#include "ipcctl/Sinks.h"

class PacketSinks
{
public:
    /// Never waits.
    void attach(std::shared_ptr<PacketSink> sink);
    /// Returns when no call of it is running and none will come. Harmless when it is not attached.
    void detach(const PacketSink& sink);

    /// What comes next has another format, or is from a stream that was opened anew.
    void beginAnew();
    void takeVideo(const AVPacket& packet, double time, const StreamFormat& format);
    void takeSound(const AVPacket& packet, double time);

private:
    struct Attached
    {
        std::shared_ptr<PacketSink> sink;
        bool begun = false; // it knows the format; the reader's own
    };

    Sinks<Attached> sinks_;
};
