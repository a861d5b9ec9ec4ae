// Where a simulated camera is.
#pragma once

#include <string>

/// Where a camera listens.
struct Endpoint
{
    std::string host;
    int port = 0;
    int rtspPort = 0; // 0: it has no live pictures
};
