/* Logs in to a camera, points its FTP upload elsewhere and reads the setting back.
 * Usage: ftp_target HOST PORT USER, with the password in KXCAM_PASSWORD. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <KxIpcSDK/KxIpcSDK.h>

static int fail(const char* step)
{
    fprintf(stderr, "%s failed: error %ld\n", step, Kx_Sdk_GetLastError());
    return 1;
}

static int change_ftp_target(long camera)
{
    FtpInfo ftp;
    memset(&ftp, 0, sizeof ftp); /* a key that the camera lacks leaves its field as it is */
    if (Kx_Ipc_GetFTP(camera, &ftp) != 0)
        return fail("Reading the FTP settings");

    strcpy(ftp.ftpip, "ftp.example.org");
    ftp.ftpipport = 2121;
    if (Kx_Ipc_SetFTP(camera, &ftp) != 0)
        return fail("Writing the FTP settings");
    if (Kx_Ipc_GetFTP(camera, &ftp) != 0)
        return fail("Reading the FTP settings back");
    printf("FTP target: %s:%d\n", ftp.ftpip, ftp.ftpipport);
    return 0;
}

int main(int argc, char** argv)
{
    const char* password = getenv("KXCAM_PASSWORD");
    int result = 1;
    if (argc != 4 || password == NULL) {
        fprintf(stderr, "usage: KXCAM_PASSWORD=... %s HOST PORT USER\n", argv[0]);
        return 2;
    }
    if (Kx_Sdk_Init() != 0)
        return fail("Starting the SDK");

    {
        const long camera = Kx_Ipc_Login("example", argv[1], atoi(argv[2]), argv[3], password);
        if (camera < 0)
            fail("Login");
        else {
            result = change_ftp_target(camera);
            Kx_Ipc_Logout(camera);
        }
    }
    Kx_Sdk_Destroy();
    return result;
}
