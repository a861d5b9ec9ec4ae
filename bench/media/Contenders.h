// The programs that are compared, each as the processes to run for some frames of each of some cameras.
#pragma once

#include <functional>
#include <span>

#include "../Endpoint.h"
#include "Process.h"

using EndpointSpan = std::span<const Endpoint>;

struct Contender
{
    const char* name;
    std::function<std::vector<Command>(unsigned frames, EndpointSpan cameras)> commands;
};

/// Our own client program, in this mode.
Command client(const std::string& mode, unsigned count, EndpointSpan cameras);

/// All get packed 24-bit colour. The SDK and the plain loop are one process; of the others one has a process a stream.
std::vector<Contender> decoders();

/// All write AVI files without encoding anything.
/// @param directory  where the files go, and are replaced
std::vector<Contender> recorders(const std::string& directory);
