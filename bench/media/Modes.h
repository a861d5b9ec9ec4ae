// What kx_media_bench measures. Facts go to standard error, "NAME VALUE" a line; all throw when something fails.
#pragma once

#include "Contenders.h"

/// For 1, 4 and 8 streams and each contender: the processor time of a frame in nanoseconds ("frame_cpu/decode/sdk/8"), that
/// of a whole run ("run_cpu/..."), how many thousandths of a frame a second a stream came to ("pace/...": 25000 or the client did not keep up), and the
/// most memory that was resident ("memory/...").
void measureDecoding(EndpointSpan cameras, unsigned frames, unsigned repetitions);
/// The same of recordings ("frame_cpu/record/ffmpeg/1").
void measureRecording(EndpointSpan cameras, unsigned frames, unsigned repetitions);

/// System calls of a frame: "calls/sdk" and "calls/floor".
void measureSystemCalls(EndpointSpan cameras, unsigned frames);
