// Time to send a firmware of nine megabytes to a camera.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>
#include <curl/curl.h>
#include <unistd.h>

#include "Best.h"
#include "Cameras.h"
#include "NetManager/Upload.h"

namespace
{

constexpr std::size_t firmwareSize = 9'000'000;

/// A file of zeros, there until the end.
class Firmware
{
public:
    Firmware()
    {
        const int file = ::mkstemp(path_);
        if (file < 0 || ::ftruncate(file, firmwareSize) != 0)
            throw std::runtime_error("no room for a firmware");
        ::close(file);
    }
    ~Firmware() { ::unlink(path_); }
    Firmware(const Firmware&) = delete;
    Firmware& operator=(const Firmware&) = delete;

    const char* path() const { return path_; }

private:
    char path_[32] = "/tmp/kx_bench_XXXXXX";
};

std::string updateUrl()
{
    static const Cameras cameras(1);
    const Endpoint& camera = cameras.endpoints().front();
    return "http://" + camera.host + ":" + std::to_string(camera.port) + "/update.cgi";
}

bool uploadBySdk(const char* path)
{
    return UploadFile(updateUrl().c_str(), path, "admin", "admin") != 0;
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
    curl_mimepart* part = curl_mime_addpart(form.get());
    curl_mime_name(part, "file");
    curl_mime_filedata(part, path);
    curl_easy_setopt(handle.get(), CURLOPT_URL, updateUrl().c_str());
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
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * firmwareSize));
}

BENCHMARK(upload<uploadBySdk>)->Name("upload/sdk")->UseRealTime()->ComputeStatistics("best", best);
BENCHMARK(upload<uploadByCurl>)->Name("upload/curl")->UseRealTime()->ComputeStatistics("best", best);

} // namespace
