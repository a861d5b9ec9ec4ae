// What a decoder must know before the first picture of a video.
#pragma once

#include "ipcctl/Av.h"

/// Whether a packet of H.264 or H.265 comes without its parameter sets while the stream's description has them, in the
/// form in which they can be put before the packet.
bool lacksParameterSets(const AVPacket& packet, const AVCodecParameters& video);
