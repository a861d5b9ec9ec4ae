/* Watches a camera for some seconds, takes a snapshot and tells what came.
 * Usage: live_view HOST PORT USER SECONDS, with the password in KXCAM_PASSWORD. */
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <KxIpcSDK/KxIpcSDK.h>

/* Written by the callback, on a thread of the SDK; read when the live view has been stopped. */
typedef struct Seen
{
    long pictures;
    int width;
    int height;
} Seen;

static void see(long camera, int type, const uint8_t* data, int size, int width, int height, void* user)
{
    Seen* seen = user;
    (void)camera;
    (void)data; /* blue, green, red; blue, green, red; ... */
    (void)size;
    if (type != KX_DATA_VIDEO)
        return;
    seen->pictures++;
    seen->width = width;
    seen->height = height;
}

static int watch(long camera, unsigned seconds)
{
    Seen seen = {0, 0, 0};
    char snapshot[256] = "";
    Kx_IpcClient_SetLiveDataCallBack(camera, see, &seen);
    if (Kx_IpcClient_OpenLive(camera, 0) != 0) {
        fprintf(stderr, "Opening the stream failed: error %ld\n", Kx_Sdk_GetLastError());
        return 1;
    }
    sleep(seconds);
    Kx_IpcClient_CaptureImage(camera, snapshot, sizeof snapshot, "");
    Kx_IpcClient_StopLivePlay(camera);
    printf("Saw %ld pictures of %dx%d; the latest is %s\n", seen.pictures, seen.width, seen.height, snapshot);
    return seen.pictures > 0 ? 0 : 1;
}

int main(int argc, char** argv)
{
    const char* password = getenv("KXCAM_PASSWORD");
    int result = 1;
    if (argc != 5 || password == NULL) {
        fprintf(stderr, "usage: KXCAM_PASSWORD=... %s HOST PORT USER SECONDS\n", argv[0]);
        return 2;
    }
    if (Kx_Sdk_Init() == 0) {
        const long camera = Kx_Ipc_Login("example", argv[1], atoi(argv[2]), argv[3], password);
        if (camera < 0)
            fprintf(stderr, "Login failed: error %ld\n", Kx_Sdk_GetLastError());
        else
            result = watch(camera, (unsigned)atoi(argv[4])); /* its end by the shutdown is soon enough */
    }
    Kx_Sdk_Destroy();
    return result;
}
