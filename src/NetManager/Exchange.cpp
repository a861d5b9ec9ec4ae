#include "NetManager/Exchange.h"

#include <cstring>

#include "NetManager/TransferReply.h"
#include "NetManager/TransferWatch.h"

bool ReplyBuffer::take(std::string_view bytes)
{
    const std::size_t before = kept().size();
    std::memcpy(buffer_ + before, bytes.data(), std::min(bytes.size(), room_ - before));
    received_ += bytes.size();
    const bool goesOn = watch_ == nullptr || watch_->advance(bytes.size());
    return goesOn && received_ <= room_;
}

bool ReplyBuffer::complete() const
{
    const auto told = toldLength(kept());
    return told && received_ >= *told;
}

ReplyEnd converse(const sockaddr_in& address, std::string_view request, ReplySink& reply,
                  const ExchangeRules& rules)
{
    Connection camera(rules);
    if (!camera.open(address) || !camera.send(request))
        return ReplyEnd::NotBegun;
    const ReplyEnd end = camera.receive(reply);
    if (end == ReplyEnd::NotBegun)
        networkFailed(rules);
    return end;
}

/// Looks for all refusals in two passes, one for each character that they begin with; the list's first one counts.
int judge(std::string_view reply, const ExchangeRules& rules)
{
    const auto refusals = rules.refusals;
    std::size_t found = refusals.size();
    for (const char statusClass : {'4', '5'}) {
        for (std::size_t at = reply.find(statusClass); at != reply.npos;
             at = reply.find(statusClass, at + 1)) {
            for (std::size_t i = 0; i < found; ++i) {
                if (reply.substr(at).starts_with(refusals[i].text))
                    found = i;
            }
        }
    }
    if (found != refusals.size())
        return failWith(refusals[found].error);
    return reply.find(rules.goodReply) != reply.npos ? 0 : failWith(KX_ERROR_BUSY);
}

int exchange(const sockaddr_in& address, std::string_view request, char* reply, int replySize,
             const ExchangeRules& rules)
{
    ReplyBuffer buffer(reply, replySize);
    if (converse(address, request, buffer, rules) == ReplyEnd::NotBegun)
        return -1;

    const std::size_t kept = buffer.kept().size();
    const auto size = static_cast<std::size_t>(replySize);
    std::memset(reply + kept, 0, size - 1 - kept);
    const std::string_view text(reply, strnlen(reply, kept));
    if (rules.manner == Manner::NonBlocking)
        std::memset(reply + text.size(), 0, size - text.size());
    if (buffer.empty())
        return rules.nothingReceived ? failWith(*rules.nothingReceived) : -1;
    return judge(text, rules);
}
