// A SOAP message on its way out.
#pragma once

#include <pugixml.hpp>

#include <string>
#include <string_view>

namespace kxsim
{

/// Appends an element. Prefixes: "s" SOAP, "a" addressing, "d" discovery, "dn" network video.
pugi::xml_node append(pugi::xml_node parent, const char* name, std::string_view text = "");

struct Heading
{
    std::string_view to;
    std::string action;
    std::string messageId;
    std::string relatesTo; ///< the message that this one answers; empty: none
    long long instance;    ///< when the sender started
    unsigned number;       ///< of the sender's messages since then
};

class Message
{
public:
    Message(bool soap11, const Heading& heading);

    pugi::xml_node body() const { return body_; }
    /// Says in the body that the sender of a message is at fault.
    void fault(std::string_view reason);
    std::string text() const;

private:
    bool soap11_;
    pugi::xml_document document_;
    pugi::xml_node body_;
};

} // namespace kxsim
