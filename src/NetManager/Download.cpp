#include "NetManager/Download.h"

#include <optional>
#include <string_view>

#include "NetManager/Connection.h"
#include "NetManager/Exchange.h"
#include "NetManager/LocalFile.h"
#include "NetManager/RequestText.h"
#include "NetManager/TransferReply.h"
#include "NetManager/TransferUrl.h"
#include "NetManager/TransferWatch.h"

namespace
{

constexpr std::uint64_t longestReply = 9'999'999;
constexpr std::string_view blankLine = "\n\n";

/// Takes the reply apart as it comes: the header, whose beginning is kept, and the body, which goes into the file.
class Download final : public ReplySink
{
public:
    Download(const char* localPath, TransferWatch& watch) : localPath_(localPath), watch_(watch) {}

    bool take(std::string_view bytes) override;
    bool complete() const override { return told_ && received_ >= *told_; }

    /// Whether the file is whole, and completes it then. Sets no code.
    bool finish();
    /// Whether the camera has sent less than it should have.
    bool brokeOff(ReplyEnd end) const;

private:
    std::size_t takeHeader(std::string_view bytes);
    bool beginBody();

    const char* localPath_;
    TransferWatch& watch_;
    char headerBuffer_[1024] = {};
    BoundedText header_{headerBuffer_, sizeof headerBuffer_};
    bool lineFeedBefore_ = false; // the last byte of the header so far is one
    std::uint64_t received_ = 0;
    std::uint64_t headerSize_ = 0;      // 0: the header has not ended yet
    std::optional<std::uint64_t> told_; // how long the reply is to be
    std::optional<OutputFile> file_;
};

bool Download::take(std::string_view bytes)
{
    bytes = bytes.substr(0, longestReply - received_);
    received_ += bytes.size();
    if (headerSize_ == 0) {
        bytes.remove_prefix(takeHeader(bytes));
        if (headerSize_ != 0 && !beginBody())
            return false;
    }
    if (file_ && !file_->write(bytes))
        return false;
    return watch_.advance(bytes.size()) && received_ < longestReply;
}

/// Returns how many of the bytes belong to the header.
std::size_t Download::takeHeader(std::string_view bytes)
{
    const bool split = lineFeedBefore_ && bytes.starts_with('\n');
    const std::size_t found = bytes.find(blankLine);
    const bool ends = split || found != bytes.npos;
    const std::size_t size = split ? 1 : ends ? found + blankLine.size() : bytes.size();
    header_.add(bytes.substr(0, size));
    lineFeedBefore_ = bytes.ends_with('\n');
    if (ends)
        headerSize_ = received_ - bytes.size() + size;
    return size;
}

bool Download::beginBody()
{
    if (!holds(header_.text(), "200 OK"))
        return false;
    told_ = toldLength(header_.text(), headerSize_);
    watch_.expect(told_ > headerSize_ ? *told_ - headerSize_ : 0);
    file_.emplace(localPath_);
    return bool{*file_};
}

bool Download::brokeOff(ReplyEnd end) const
{
    if (watch_.stopped() || received_ == longestReply)
        return false;
    if (received_ == 0)
        return true;
    if (!file_ || !*file_)
        return false; // there are worse things the matter with it
    return isCutShort(received_, told_, end);
}

bool Download::finish()
{
    return !watch_.stopped() && file_ && file_->writeZeros(received_ - headerSize_) && file_->close();
}

} // namespace

ExchangeRules downloadRules(std::atomic<int>& failedReads, TransferWatch& watch)
{
    return {.connectWait = g_timing.transferConnect,
            .replyWait = g_timing.transferReply,
            .failedReads = failedReads,
            .manner = Manner::NonBlocking,
            .watch = &watch};
}

int DownloadFile(const char* url, const char* localPath, const char* user, const char* password, long userId)
{
    static std::atomic<int> nReadTimes{0};
    char host[urlHostSize];
    int port = 0;
    const char* path = nullptr;
    if (localPath == nullptr || user == nullptr || password == nullptr || !parse_url(url, host, port, path))
        return 0;
    TransferWatch watch(userId);
    const ExchangeRules rules = downloadRules(nReadTimes, watch);
    const auto address = resolveIpv4(host, port);
    if (!address)
        return networkFailed(rules);

    char buffer[requestSize];
    BoundedText request(buffer, sizeof buffer);
    request.add("GET ");
    request.add(path);
    addHeaders(request, host, port, user, password);
    Download download(localPath, watch);
    const ReplyEnd end = converse(*address, request.text(), download, rules);
    if (end == ReplyEnd::NotBegun)
        return 0;
    return download.brokeOff(end) ? networkFailed(rules) : download.finish();
}
