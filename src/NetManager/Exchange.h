// One exchange with a camera over a connection of its own: connect, send, receive, judge.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include <netinet/in.h>

#include "NetManager/Connection.h"
#include "NetManager/ExchangeRules.h"

class TransferWatch;

/// Keeps the first bytes of a reply in a buffer of the caller's, of which it never writes the last byte.
class ReplyBuffer final : public ReplySink
{
public:
    /// `watch`, if there is one, is told of every byte.
    ReplyBuffer(char* buffer, int size, TransferWatch* watch = nullptr)
        : buffer_(buffer), room_(static_cast<std::size_t>(size) - 1), watch_(watch)
    {
    }

    bool take(std::string_view bytes) override;
    bool complete() const override;

    std::string_view kept() const { return {buffer_, std::min(received_, room_)}; }
    bool empty() const { return received_ == 0; }
    bool full() const { return received_ >= room_; }

private:
    char* buffer_;
    std::size_t room_;
    std::size_t received_ = 0;
    TransferWatch* watch_;
};

/// Sends the request to the camera at this address and fills `reply` with the first replySize - 1 bytes of what
/// comes back as it comes (status line, headers, body), then zeros; its last byte is never written. The reply stays
/// untouched when it came to no reading. Returns 0; or -1 with the last error set, except when the system has no
/// socket and as the rules say.
int exchange(const sockaddr_in& address, std::string_view request, char* reply, int replySize,
             const ExchangeRules& rules);

/// The first half of it, with a reply that is only handed on. ReplyEnd::NotBegun with the last error set, except when
/// the system has no socket or the application stopped the transfer.
ReplyEnd converse(const sockaddr_in& address, std::string_view request, ReplySink& reply,
                  const ExchangeRules& rules);

/// The second half: looks for the rules' texts in a reply; 0, or -1 with the last error set.
int judge(std::string_view reply, const ExchangeRules& rules);
