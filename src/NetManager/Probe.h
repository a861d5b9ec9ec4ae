// Whether a camera reacts at all, asked before a request.
#pragma once

#include <optional>

#include <netinet/in.h>

/// The host's address, if the host reacts to a connection attempt within the probe's time, be it by a refusal. A name
/// is resolved once, for the probe and for the request after it. Sets no code.
std::optional<sockaddr_in> probe(const char* host, int port);
