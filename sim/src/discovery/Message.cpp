#include "Message.h"

#include "Vocabulary.h"

#include <sstream>

namespace kxsim
{
namespace
{

void declare(pugi::xml_node envelope, const char* prefix, std::string_view space)
{
    envelope.append_attribute(prefix) = std::string(space).c_str();
}

void write(const Heading& heading, pugi::xml_node header)
{
    append(header, "a:MessageID", heading.messageId);
    if (!heading.relatesTo.empty())
        append(header, "a:RelatesTo", heading.relatesTo);
    append(header, "a:To", heading.to);
    append(header, "a:Action", heading.action);
    pugi::xml_node sequence = append(header, "d:AppSequence");
    sequence.append_attribute("InstanceId") = heading.instance;
    sequence.append_attribute("MessageNumber") = heading.number;
}

} // namespace

pugi::xml_node append(pugi::xml_node parent, const char* name, std::string_view text)
{
    pugi::xml_node child = parent.append_child(name);
    if (!text.empty())
        child.text() = std::string(text).c_str();
    return child;
}

Message::Message(bool soap11, const Heading& heading) : soap11_(soap11)
{
    pugi::xml_node envelope = document_.append_child("s:Envelope");
    declare(envelope, "xmlns:s", soap11 ? soap11Space : soap12Space);
    declare(envelope, "xmlns:a", addressingSpace);
    declare(envelope, "xmlns:d", discoverySpace);
    declare(envelope, "xmlns:dn", networkSpace);
    write(heading, envelope.append_child("s:Header"));
    body_ = envelope.append_child("s:Body");
}

void Message::fault(std::string_view reason)
{
    const pugi::xml_node fault = append(body_, "s:Fault");
    if (soap11_) {
        append(fault, "faultcode", "s:Client");
        append(fault, "faultstring", reason);
        return;
    }
    append(append(fault, "s:Code"), "s:Value", "s:Sender");
    append(append(fault, "s:Reason"), "s:Text", reason).append_attribute("xml:lang") = "en";
}

std::string Message::text() const
{
    std::ostringstream text;
    document_.save(text, "", pugi::format_raw, pugi::encoding_utf8);
    return text.str();
}

} // namespace kxsim
