// The Probe that follows each Probe of the SOAP runtime, for cameras that take no notice of that one.
#pragma once

#include <atomic>
#include <cstddef>

struct soap;

/// How often a second Probe has been sent. A camera that remembers the messages it has seen takes the next search for a
/// new one, as the last digit of the MessageID differs.
extern std::atomic<int> g_nIndex;

/// Sends the message to the peer of a context in datagram mode, then the hand-written Probe, which decides what comes of
/// it. Returns the runtime's error code.
int sendBothProbes(struct soap* soap, const char* message, std::size_t length);
