#include "TargetService.h"

#include "../HttpText.h"
#include "Vocabulary.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <ctime>

namespace kxsim
{
namespace
{

// "00:11:0A:0B:0C:0D" becomes "00110a0b0c0d", the last group of a UUID.
std::string nodeFrom(const std::string& macAddress)
{
    std::string node;
    for (const char c : macAddress)
        if (c != ':')
            node += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return node;
}

std::string uuid(unsigned first, std::size_t second, const std::string& node)
{
    char text[48];
    std::snprintf(text, sizeof text, "urn:uuid:%08x-%04zx-1000-8000-", first, second & 0xFFFFU);
    return text + node;
}

// The same after every start of the camera.
std::string endpointFor(std::size_t index, const std::string& node)
{
    return uuid(0x4B584341, index, node);
}

void addScope(std::string& scopes, const char* kind, const std::string& value)
{
    if (value.empty())
        return;
    scopes += scopes.empty() ? "" : " ";
    scopes += std::string("onvif://www.onvif.org/") + kind + "/" + percentEncoded(value);
}

std::string scopesOf(const Description& description, const std::string& ownModel)
{
    if (description.scopes)
        return *description.scopes;
    const std::string model = description.model.value_or(ownModel);
    std::string scopes;
    addScope(scopes, "name", description.name);
    addScope(scopes, "model", model);
    addScope(scopes, "hardware", model);
    addScope(scopes, "location", description.location);
    addScope(scopes, "type", "video_encoder");
    return scopes;
}

// A scope has all scopes below it: ".../location/house" has ".../location/house/hall", but not ".../location/houseboat".
bool hasBelow(std::string_view asked, std::string_view own)
{
    if (asked.ends_with('/'))
        asked.remove_suffix(1);
    return own.starts_with(asked) && (own.size() == asked.size() || own[asked.size()] == '/');
}

std::string actionFor(std::string_view message)
{
    return std::string(discoverySpace) + "/" + std::string(message);
}

} // namespace

TargetService::TargetService(const DiscoveryOptions& options, const Identity& identity)
    : soap11_(options.soap11), node_(nodeFrom(identity.macAddress)), instance_(std::time(nullptr))
{
    const auto tell = [&](const Description& description) {
        told_.push_back({endpointFor(told_.size(), node_), scopesOf(description, identity.model),
                         description.xaddrs.value_or("http://" + identity.place + "/onvif/device_service")});
    };
    tell(options.self);
    std::for_each(options.others.begin(), options.others.end(), tell);
}

bool TargetService::isMeantBy(const Question& question) const
{
    const auto isOurs = [](const QName& type) {
        return type.space == networkSpace && type.name == cameraType;
    };
    if (question.messageId.empty()) // a reply could not say what it replies to
        return false;
    if (question.kind == Question::Kind::Resolve)
        return question.endpoint == told_.front().endpoint;
    return question.kind == Question::Kind::Probe && hasScopes(question.scopes, question.matchBy) &&
           std::all_of(question.types.begin(), question.types.end(), isOurs);
}

bool TargetService::hasScopes(const std::vector<std::string>& asked, const std::string& matchBy) const
{
    // One rule under three names: the standard's, the one that network cameras are asked by, and none.
    const bool known = matchBy.empty() || matchBy == actionFor("rfc2396") || matchBy == actionFor("rfc3986");
    const std::vector<std::string> own = wordsOf(told_.front().scopes);
    return std::all_of(asked.begin(), asked.end(), [&](const std::string& scope) {
        return known && std::any_of(own.begin(), own.end(),
                                    [&](const std::string& ours) { return hasBelow(scope, ours); });
    });
}

std::string TargetService::matches(const Question& question)
{
    const bool resolves = question.kind == Question::Kind::Resolve;
    const Message reply = message(toSender, resolves ? "ResolveMatches" : "ProbeMatches", question.messageId);
    const pugi::xml_node list = append(reply.body(), resolves ? "d:ResolveMatches" : "d:ProbeMatches");
    const std::size_t count = resolves ? 1 : told_.size();
    for (std::size_t i = 0; i < count; ++i)
        describe(append(list, resolves ? "d:ResolveMatch" : "d:ProbeMatch"), told_[i]);
    return reply.text();
}

std::string TargetService::fault(const Question& question)
{
    Message reply = message(toSender, "fault", question.messageId);
    reply.fault("The camera does not take this message.");
    return reply.text();
}

std::string TargetService::hello()
{
    const Message hello = message(toEverybody, "Hello");
    describe(append(hello.body(), "d:Hello"), told_.front());
    return hello.text();
}

std::string TargetService::bye()
{
    const Message bye = message(toEverybody, "Bye");
    identify(append(bye.body(), "d:Bye"), told_.front());
    return bye.text();
}

Message TargetService::message(std::string_view to, std::string_view action, const std::string& relatesTo)
{
    ++messages_;
    const std::string id = uuid(static_cast<unsigned>(instance_), messages_, node_);
    return Message(soap11_, {to, actionFor(action), id, relatesTo, instance_, messages_});
}

void TargetService::identify(pugi::xml_node parent, const Told& told)
{
    append(append(parent, "a:EndpointReference"), "a:Address", told.endpoint);
}

void TargetService::describe(pugi::xml_node parent, const Told& told)
{
    identify(parent, told);
    append(parent, "d:Types", "dn:" + std::string(cameraType));
    if (!told.scopes.empty())
        append(parent, "d:Scopes", told.scopes);
    if (!told.xaddrs.empty())
        append(parent, "d:XAddrs", told.xaddrs);
    append(parent, "d:MetadataVersion", "1");
}

} // namespace kxsim
