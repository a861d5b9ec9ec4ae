#include "NetManager/Probe.h"

#include <cerrno>
#include <cstring>

#include <sys/socket.h>

#include "Core/Timing.h"
#include "Log/KxLog.h"
#include "NetManager/Socket.h"
#include "ZrThread/ZrPrint.h"

std::optional<sockaddr_in> probe(const char* host, int port)
{
    const FileDescriptor socket = makeTcpSocket(SOCK_NONBLOCK);
    if (!socket) {
        KxOutputDebugInfo(1, "Create TCP Socket ERROR!");
        return std::nullopt;
    }
    if (!setLinger(socket))
        return std::nullopt;
    const auto address = resolveIpv4(host, port);
    if (!address)
        return std::nullopt;
    ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address);
    if (waitFor(socket, Readable | Writable | Exception, g_timing.probe) != Wait::TimedOut)
        return address;
    zr_print("[KxLog]:Fun(IpcNet::IsHostConnect)->{select} | err=%s", std::strerror(errno));
    return std::nullopt;
}
