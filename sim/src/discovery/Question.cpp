// The XML library knows no namespaces: names are compared by what their prefixes stand for where they are used.
// What a message is follows from its body. Its action is not looked at, as clients are known to misspell it.
#include "Question.h"

#include "Vocabulary.h"

#include <pugixml.hpp>

namespace kxsim
{
namespace
{

// Empty when the prefix stands for nothing.
std::string_view namespaceOf(pugi::xml_node where, std::string_view prefix)
{
    const std::string declaration = prefix.empty() ? "xmlns" : "xmlns:" + std::string(prefix);
    for (pugi::xml_node node = where; node; node = node.parent())
        if (const pugi::xml_attribute found = node.attribute(declaration.c_str()))
            return found.value();
    return {};
}

QName resolved(pugi::xml_node where, std::string_view name)
{
    const std::size_t colon = name.find(':');
    if (colon == std::string_view::npos)
        return {std::string(namespaceOf(where, "")), std::string(name)};
    return {std::string(namespaceOf(where, name.substr(0, colon))), std::string(name.substr(colon + 1))};
}

pugi::xml_node childOf(pugi::xml_node parent, std::string_view space, std::string_view name)
{
    const QName wanted{std::string(space), std::string(name)};
    return parent.find_child([&](pugi::xml_node child) { return resolved(child, child.name()) == wanted; });
}

// Comments and CDATA sections cut a text into several nodes.
std::string textOf(pugi::xml_node element)
{
    std::string text;
    for (const pugi::xml_node part : element)
        text += part.value();
    return text;
}

std::vector<std::string> wordsOf(pugi::xml_node element)
{
    return kxsim::wordsOf(textOf(element));
}

std::string uriIn(pugi::xml_node element)
{
    const std::vector<std::string> words = wordsOf(element);
    return words.size() == 1 ? words.front() : "";
}

void readProbe(pugi::xml_node probe, Question& question)
{
    const pugi::xml_node types = childOf(probe, discoverySpace, "Types");
    for (const std::string& name : wordsOf(types))
        question.types.push_back(resolved(types, name));
    const pugi::xml_node scopes = childOf(probe, discoverySpace, "Scopes");
    question.scopes = wordsOf(scopes);
    question.matchBy = scopes.attribute("MatchBy").value();
}

void readBody(pugi::xml_node body, Question& question)
{
    if (const pugi::xml_node probe = childOf(body, discoverySpace, "Probe")) {
        question.kind = Question::Kind::Probe;
        readProbe(probe, question);
    } else if (const pugi::xml_node resolve = childOf(body, discoverySpace, "Resolve")) {
        question.kind = Question::Kind::Resolve;
        const pugi::xml_node reference = childOf(resolve, addressingSpace, "EndpointReference");
        question.endpoint = uriIn(childOf(reference, addressingSpace, "Address"));
    } else if (childOf(body, discoverySpace, "Hello") || childOf(body, discoverySpace, "Bye")) {
        question.kind = Question::Kind::Announcement;
    }
}

} // namespace

Question readQuestion(std::string_view datagram)
{
    Question question;
    pugi::xml_document document;
    if (!document.load_buffer(datagram.data(), datagram.size()))
        return question;
    for (const std::string_view soap : {soap12Space, soap11Space})
        if (const pugi::xml_node envelope = childOf(document, soap, "Envelope")) {
            const pugi::xml_node header = childOf(envelope, soap, "Header");
            question.messageId = uriIn(childOf(header, addressingSpace, "MessageID"));
            readBody(childOf(envelope, soap, "Body"), question);
        }
    return question;
}

std::vector<std::string> wordsOf(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n";
    std::vector<std::string> words;
    for (std::size_t start = text.find_first_not_of(blanks); start != std::string_view::npos;) {
        const std::size_t end = text.find_first_of(blanks, start);
        words.emplace_back(text.substr(start, end - start));
        start = text.find_first_not_of(blanks, end);
    }
    return words;
}

} // namespace kxsim
