// The Probe that follows each Probe of the SOAP runtime, for cameras that take no notice of that one.
#pragma once

#include <cstddef>

struct soap;

/// Sends the message to the peer of a context in datagram mode, then the hand-written Probe, which decides what comes of
/// it. Returns the runtime's error code.
int sendBothProbes(struct soap* soap, const char* message, std::size_t length);
