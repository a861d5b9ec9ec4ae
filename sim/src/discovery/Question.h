// What a datagram on the discovery port asks for.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kxsim
{

struct QName
{
    std::string space; ///< the namespace itself, not its prefix
    std::string name;

    friend bool operator==(const QName&, const QName&) = default;
};

struct Question
{
    enum class Kind
    {
        Unknown, ///< no message, or none that a camera knows
        Probe,
        Resolve,
        Announcement ///< no question at all: Hello and Bye of another device
    };

    Kind kind = Kind::Unknown;
    std::string messageId{};

    // Of a Probe. Whoever asks wants a device that has all of them.
    std::vector<QName> types{};
    std::vector<std::string> scopes{};
    std::string matchBy{}; ///< how to compare scopes; empty: the usual way

    std::string endpoint{}; ///< of a Resolve: the device it looks for
};

Question readQuestion(std::string_view datagram);

/// The parts of a text between white space.
std::vector<std::string> wordsOf(std::string_view text);

} // namespace kxsim
