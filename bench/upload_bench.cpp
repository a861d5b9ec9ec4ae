// Time to send a firmware of nine megabytes to a camera.
#include <cstdint>
#include <memory>
#include <string>

#include <KxIpcSDK/KxSdk.h>
#include <KxIpcSDK/KxStorage.h>
#include <benchmark/benchmark.h>
#include <curl/curl.h>

#include "Best.h"
#include "Cameras.h"
#include "Firmware.h"

namespace
{

const Endpoint& theCamera()
{
    static const Cameras cameras(1);
    return cameras.endpoints().front();
}

long theSession()
{
    static const long id = [] {
        Kx_Sdk_Init();
        const Endpoint& camera = theCamera();
        return Kx_Ipc_Login("bench", camera.host.c_str(), camera.port, "admin", "admin");
    }();
    return id;
}

bool uploadBySdk(const char* path)
{
    return Kx_Ipc_UpdateFirmware(theSession(), path, 1) == 0;
}

std::size_t ignoreReply(char*, std::size_t size, std::size_t count, void*)
{
    return size * count;
}

/// What "curl -F" does, but for the second that it gives a camera to say that it wants the file.
bool uploadByCurl(const char* path)
{
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle(curl_easy_init(), curl_easy_cleanup);
    const std::unique_ptr<curl_mime, decltype(&curl_mime_free)> form(curl_mime_init(handle.get()),
                                                                     curl_mime_free);
    const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers(
        curl_slist_append(nullptr, "Expect:"), curl_slist_free_all);
    const std::string url =
        "http://" + theCamera().host + ":" + std::to_string(theCamera().port) + "/update.cgi";
    curl_mimepart* part = curl_mime_addpart(form.get());
    curl_mime_name(part, "file");
    curl_mime_filedata(part, path);
    curl_easy_setopt(handle.get(), CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle.get(), CURLOPT_HTTPHEADER, headers.get());
    curl_easy_setopt(handle.get(), CURLOPT_MIMEPOST, form.get());
    curl_easy_setopt(handle.get(), CURLOPT_USERPWD, "admin:admin");
    curl_easy_setopt(handle.get(), CURLOPT_PROXY, ""); // whatever the environment says
    curl_easy_setopt(handle.get(), CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(handle.get(), CURLOPT_WRITEFUNCTION, ignoreReply);
    return curl_easy_perform(handle.get()) == CURLE_OK;
}

template <bool (*Upload)(const char* path)>
void upload(benchmark::State& state)
{
    const Firmware firmware;
    for (auto _ : state) {
        if (!Upload(firmware.path())) {
            state.SkipWithError("an upload failed");
            break;
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * Firmware::size));
}

BENCHMARK(upload<uploadBySdk>)->Name("upload/sdk")->UseRealTime()->ComputeStatistics("best", best);
BENCHMARK(upload<uploadByCurl>)->Name("upload/curl")->UseRealTime()->ComputeStatistics("best", best);

} // namespace
