// What kx_media_client does, in a process of its own: the system counts for a process what it takes. Facts go to
// standard error, "NAME VALUE" a line; standard output has what the SDK prints. All throw when something fails.
#pragma once

#include <string>
#include <vector>

#include "../Endpoint.h"

using Endpoints = std::vector<Endpoint>;

/// Have so many pictures of each camera decoded and converted.
void watchBySdk(unsigned frames, const Endpoints& cameras);
void watchByFloor(unsigned frames, const Endpoints& cameras);

/// Records so many frames of each camera.
void recordBySdk(unsigned frames, const std::string& directory, const Endpoints& cameras);

/// Opens a stream so many times and tells the median of the times to the first picture, in nanoseconds: "first_frame/sdk",
/// "first_frame/floor" and "first_frame/probing".
void timeFirstFrames(unsigned count, const Endpoint& camera);

/// Watches the cameras and tells how many pictures came, "frames/watched", and how many of them were not the one after
/// the picture before, "frames/lost".
void countLosses(unsigned seconds, const Endpoints& cameras);

/// Opens and closes a live view so many times and tells by how many bytes heap and resident memory have grown since the
/// hundredth time: "bytes/cycles_heap" and "bytes/cycles_resident".
void measureCycles(unsigned count, const Endpoint& camera);
