// How the settings interface works: a query is a row of pieces joined by '&', answered one line each.
//   paratest=KEY   asks for a value     -> "OK KEY=value"
//   KEY=value      sets a value         -> "OK KEY"
//   WORD           runs a command       -> "OK WORD" or "NG WORD"
//   language=ie    opens most queries and means nothing
// A piece that the camera does not understand gets no line, and the others are answered all the same.
// A query that opens with "page=NAME" is for settings of that page, where a key may mean something else than elsewhere.
// A camera that lacks the page understands nothing of the query.
// A query that opens with "action=NAME" is no settings query: what follows are the action's parameters.
#include "Device.h"

#include "HttpText.h"

#include <cstdio>
#include <utility>

namespace kxsim
{
namespace
{

Chip chipOf(std::string_view model)
{
    if (model.ends_with('A'))
        return ModelA;
    return model.ends_with('B') || model.ends_with('C') || model.ends_with("-SP") ? Hisi : Ti;
}

// Differs between the cameras of one test or one kxsim, which differ in address or port.
std::string macAddressFor(const std::string& address, unsigned port)
{
    unsigned third = 0;
    unsigned fourth = 0;
    std::sscanf(address.c_str(), "%*u.%*u.%u.%u", &third, &fourth);
    char text[24];
    std::snprintf(text, sizeof text, "00:11:%02X:%02X:%02X:%02X", third & 0xFFU, fourth & 0xFFU, port >> 8U,
                  port & 0xFFU);
    return text;
}

// Some clients pad the keys they ask for with TABs.
std::string_view withoutTabs(std::string_view text)
{
    const std::size_t first = text.find_first_not_of('\t');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of('\t') - first + 1);
}

// The text before the first mark and the text after it.
std::pair<std::string_view, std::string_view> splitAt(std::string_view text, char mark)
{
    const std::size_t at = text.find(mark);
    return {text.substr(0, at), at == std::string_view::npos ? std::string_view() : text.substr(at + 1)};
}

std::vector<std::string_view> piecesOf(std::string_view query)
{
    std::vector<std::string_view> pieces;
    while (!query.empty()) {
        const auto [piece, rest] = splitAt(query, '&');
        pieces.push_back(piece);
        query = rest;
    }
    return pieces;
}

Parameters parametersOf(std::string_view query)
{
    Parameters parameters;
    for (const std::string_view piece : piecesOf(query)) {
        const auto [key, value] = splitAt(piece, '=');
        parameters.insert_or_assign(std::string(key), percentDecoded(value));
    }
    return parameters;
}

Device::Answer notFound()
{
    return {404, statusText(404)};
}

} // namespace

Device::Device(const CameraOptions& options) : lineEnd_(options.lineEnd), chip_(chipOf(options.model))
{
    for (const Area* area : {&systemArea, &networkArea, &videoArea, &audioArea, &osdArea})
        add(*area);
    settings_.put("productmodel", options.model);
}

void Device::placeAt(const std::string& address, unsigned short port)
{
    settings_.put("netip", address);
    settings_.put("httpport", std::to_string(port));
    settings_.put("macaddress", macAddressFor(address, port));
}

void Device::add(const Area& area)
{
    for (const Setting& row : area.settings) {
        if (!(row.chips & chip_))
            continue;
        settings_.put(row.key, row.initial);
        if (row.access == Access::ReadOnly)
            readOnly_.insert(row.key);
    }
    for (const SetRule& rule : area.setRules)
        if (rule.chips & chip_)
            setRules_.emplace(std::pair(rule.page, rule.key), &rule);
    for (const QueryPage& page : area.pages)
        if (page.chips & chip_)
            pages_.insert(page.name);
    for (const Command& command : area.commands)
        commands_.emplace(command.word, &command);
    for (const Action& action : area.actions)
        actions_.push_back(&action);
}

Device::Answer Device::answer(std::string_view target)
{
    const auto [path, query] = splitAt(target, '?');
    const auto [first, parameters] = splitAt(query, '&');
    const auto [name, value] = splitAt(first, '=');
    if (name == "action")
        return perform(path, value, parameters);
    return path == "/vb.htm" ? answerSettings(query) : notFound();
}

Device::Answer Device::perform(std::string_view path, std::string_view name, std::string_view parameters)
{
    for (const Action* action : actions_)
        if (action->path == path && action->name == name)
            return {200, joined(action->answer(settings_, parametersOf(parameters)))};
    return notFound();
}

Device::Answer Device::answerSettings(std::string_view query)
{
    constexpr std::string_view opening = "page=";
    std::string_view page;
    if (query.starts_with(opening)) {
        page = query.substr(opening.size(), query.find('&') - opening.size());
        if (!pages_.contains(page))
            return {};
    }
    std::vector<std::string> lines;
    for (std::string_view piece : piecesOf(query))
        if (auto line = answerPiece(page, piece))
            lines.push_back(std::move(*line));
    return {200, joined(lines)};
}

std::optional<std::string> Device::answerPiece(std::string_view page, std::string_view piece)
{
    const auto [name, value] = splitAt(piece, '=');
    const std::string_view key = withoutTabs(name);
    if (name.size() == piece.size())
        return run(key);
    if (key == "paratest")
        return get(withoutTabs(value));
    return set(page, key, value);
}

std::optional<std::string> Device::get(std::string_view key) const
{
    const auto value = settings_.find(key);
    if (!value)
        return std::nullopt;
    return "OK " + std::string(key) + "=" + *value;
}

std::optional<std::string> Device::set(std::string_view page, std::string_view key, std::string_view value)
{
    if (!take(page, key, percentDecoded(value)))
        return std::nullopt;
    return "OK " + std::string(key);
}

bool Device::take(std::string_view page, std::string_view key, const std::string& value)
{
    if (const auto rule = setRules_.find({page, key}); rule != setRules_.end())
        return rule->second->take(settings_, value);
    return !readOnly_.contains(key) && settings_.keep(key, value);
}

std::optional<std::string> Device::run(std::string_view word)
{
    const auto command = commands_.find(word);
    if (command == commands_.end())
        return std::nullopt;
    return (command->second->run(settings_) ? "OK " : "NG ") + std::string(word);
}

std::string Device::joined(const std::vector<std::string>& lines) const
{
    std::string text;
    for (const std::string& line : lines)
        text += line + lineEnd_;
    return text;
}

} // namespace kxsim
