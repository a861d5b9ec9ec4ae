// kx_media_client MODE COUNT CAMERA...   with a CAMERA as "HOST:PORT:RTSP-PORT"; see Client.h. kx_media_bench runs it.
//   record has the directory before the cameras
#include "Client.h"

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <stdexcept>

#include <KxIpcSDK/KxSdk.h>

namespace
{

Endpoint endpointOf(const std::string& text)
{
    Endpoint endpoint;
    char colon = 0;
    std::istringstream words(text);
    if (!std::getline(words, endpoint.host, ':') || !(words >> endpoint.port >> colon >> endpoint.rtspPort))
        throw std::runtime_error(text + " is no camera");
    return endpoint;
}

void run(const std::string& mode, unsigned count, const std::vector<std::string>& arguments)
{
    const std::size_t others = mode == "record" ? 1 : 0;
    Endpoints cameras;
    for (std::size_t i = others; i < arguments.size(); ++i)
        cameras.push_back(endpointOf(arguments[i]));
    if (mode == "watch-sdk")
        watchBySdk(count, cameras);
    else if (mode == "watch-floor")
        watchByFloor(count, cameras);
    else if (mode == "record")
        recordBySdk(count, arguments.at(0), cameras);
    else if (mode == "first-frame")
        timeFirstFrames(count, cameras.at(0));
    else if (mode == "losses")
        countLosses(count, cameras);
    else if (mode == "cycles")
        measureCycles(count, cameras.at(0));
    else
        throw std::runtime_error("no such mode: " + mode);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        if (argc < 4)
            throw std::runtime_error("MODE COUNT CAMERA... is missing");
        Kx_Sdk_Init();
        run(argv[1], static_cast<unsigned>(std::atoi(argv[2])), {argv + 3, argv + argc});
        Kx_Sdk_Destroy();
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "kx_media_client: " << error.what() << '\n';
        return 1;
    }
}
