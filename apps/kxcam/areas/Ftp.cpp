// The FTP server that the camera uploads to.
#include <KxIpcSDK/KxNetwork.h>

#include "Area.h"

namespace kxcam
{
namespace
{

constexpr Field fields[] = {
    field<&FtpInfo::ftpip>("ftpip", "FTP server"),
    port(field<&FtpInfo::ftpipport>("ftpipport", "the server's port")),
    field<&FtpInfo::ftpuser>("ftpuser", "user name"),
    secret(field<&FtpInfo::ftppassword>("ftppassword", "password")),
    field<&FtpInfo::ftppath>("ftppath", "remote directory"),
};

} // namespace

extern constinit const Area ftpArea =
    makeArea<Kx_Ipc_GetFTP, Kx_Ipc_SetFTP>("ftp", "FTP server that the camera uploads to", fields);

} // namespace kxcam
