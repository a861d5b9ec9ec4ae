// How the settings interface works: a query is a row of pieces joined by '&', answered one line each.
//   paratest=KEY   asks for a value     -> "OK KEY=value"
//   KEY=value      sets a value         -> "OK KEY"
//   WORD           runs a command       -> "OK WORD" or "NG WORD"
//   WORD[=value]   makes an inquiry     -> a line of the inquiry's own
//   language=ie    opens most queries and means nothing
// A piece that the camera does not understand gets no line, and the others are answered all the same.
// What a piece has proven ("checkadminPwd") holds for the rest of the query.
// A query that opens with "page=NAME" is for settings of that page, where a key may mean something else than elsewhere.
// A camera that lacks the page understands nothing of the query.
// A query that opens with "action=NAME" is no settings query but has parameters of the action's own, and so has the
// query of a path that is not the settings'.
#include "Device.h"

#include "HttpText.h"
#include "areas/Card.h"
#include "areas/Users.h"

#include <cstdio>

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

std::string joined(const std::vector<std::string>& lines, const std::string& lineEnd)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + lineEnd;
    return text;
}

// A place that names a directory, or nothing, needs a name.
std::string completed(std::string_view place, std::string_view name)
{
    const bool whole = !place.empty() && !place.ends_with('/');
    return whole ? std::string(place) : std::string(place) + std::string(name);
}

Device::Answer notFound()
{
    return {404, statusText(404)};
}

} // namespace

Device::Device(const CameraOptions& options) : lineEnd_(options.lineEnd), chip_(chipOf(options.model))
{
    for (const Area* area :
         {&systemArea, &usersArea, &clockArea, &updateArea, &capabilitiesArea, &networkArea, &videoArea,
          &audioArea, &osdArea, &transferArea, &storageArea, &recordingsArea, &ptzArea, &trackingArea})
        add(*area);
    settings_.put("productmodel", options.model);
    setOwnUser(settings_, options.user, options.password);
}

void Device::placeAt(const std::string& address, unsigned short port)
{
    settings_.put("netip", address);
    settings_.put("httpport", std::to_string(port));
    settings_.put("macaddress", macAddressFor(address, port));
    factory_ = settings_;
}

void Device::add(const Area& area)
{
    for (const Setting& row : area.settings) {
        if (!(row.chips & chip_))
            continue;
        settings_.put(row.key, row.initial);
        if (row.access != Access::ReadWrite)
            readOnly_.insert(row.key);
        if (row.access == Access::Hidden)
            hidden_.insert(row.key);
        if (row.keptWith != Keep::Nothing)
            keptWith_.emplace(row.key, row.keptWith);
    }
    for (const SetRule& rule : area.setRules)
        if (rule.chips & chip_)
            setRules_.emplace(std::pair(rule.page, rule.key), &rule);
    for (const Page& page : area.pages)
        if (page.chips & chip_)
            pages_.insert(page.name);
    for (const Command& command : area.commands)
        commands_.emplace(command.word, &command);
    for (const Inquiry& inquiry : area.inquiries)
        inquiries_.emplace(inquiry.word, &inquiry);
    for (const FileInquiry& inquiry : area.fileInquiries)
        fileInquiries_.emplace(inquiry.word, &inquiry);
    if (area.refresh != nullptr)
        refreshers_.push_back(area.refresh);
    for (const Action& action : area.actions)
        actions_.push_back(&action);
    for (const Upload& upload : area.uploads)
        if (upload.chips & chip_)
            uploads_.push_back(&upload);
    for (const Download& download : area.downloads)
        downloads_.push_back(&download);
    for (const StoredFile& file : area.files)
        files_.emplace(file.path, file.content);
}

bool Device::admits(std::string_view authorization) const
{
    return isUser(settings_, authorization);
}

Device::Answer Device::answer(std::string_view target)
{
    for (const auto refresh : refreshers_)
        refresh(settings_, files_);
    const auto [path, query] = splitAt(target, '?');
    for (const Download* download : downloads_)
        if (target.starts_with(download->target))
            return handOut(*download, target.substr(download->target.size()));
    const auto [key, value] = splitAt(query.substr(0, query.find('&')), '=');
    const bool named = key == "action";
    for (const Action* action : actions_)
        if (action->path == path && action->name == (named ? value : std::string_view()))
            return {200, perform(*action, parametersOf(query))};
    return path == settingsPath && !named ? answerSettings(query) : notFound();
}

// What a client asks for in the INI format, "inf", has the line ends of such files on every camera.
std::string Device::perform(const Action& action, const Parameters& parameters)
{
    const auto format = parameters.find("format");
    const bool isIni = format != parameters.end() && format->second == "inf";
    return joined(action.answer(settings_, parameters), isIni ? "\r\n" : lineEnd_);
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
    forgetProof(settings_);
    return {200, joined(lines, lineEnd_)};
}

std::optional<std::string> Device::answerPiece(std::string_view page, std::string_view piece)
{
    const auto [name, value] = splitAt(piece, '=');
    const std::string_view key = withoutTabs(name);
    if (const auto inquiry = inquiries_.find(key); inquiry != inquiries_.end())
        return inquiry->second->line(settings_, percentDecoded(value));
    if (const auto inquiry = fileInquiries_.find(key); inquiry != fileInquiries_.end())
        return inquiry->second->line(settings_, files_, percentDecoded(value));
    if (name.size() == piece.size())
        return run(key);
    if (key == "paratest")
        return get(withoutTabs(value));
    return set(page, key, value);
}

std::optional<std::string> Device::get(std::string_view key) const
{
    const auto value = settings_.find(key);
    if (!value || hidden_.contains(key))
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
    if (!command->second->run(settings_))
        return "NG " + std::string(word);
    apply(command->second->effect);
    return "OK " + std::string(word);
}

Device::Answer Device::answerUpload(std::string_view target, const std::optional<UploadedFile>& file)
{
    for (const Upload* upload : uploads_) {
        if (upload->target != target)
            continue;
        if (!file)
            return {400, statusText(400)};
        const std::string path = completed(upload->place, file->name);
        if (!isWithinReach(settings_, path))
            return notFound();
        files_.insert_or_assign(path, file->content);
        if (upload->content == Content::Configuration)
            configure(file->content);
        else if (upload->content == Content::Firmware)
            install(file->content);
        return {200, "OK upload\n"};
    }
    return notFound();
}

Device::Answer Device::handOut(const Download& download, std::string_view name) const
{
    const std::string path = completed(download.place, name);
    const std::string fileName = path.substr(path.rfind('/') + 1);
    if (download.content == Content::Configuration)
        return {200, configuration(), fileName};
    const auto file = files_.find(path);
    return file != files_.end() && isWithinReach(settings_, path) ? Answer{200, file->second, fileName}
                                                                  : notFound();
}

std::string Device::configuration() const
{
    std::string text = "[param]\n";
    for (const auto& [key, value] : settings_.all())
        if (!readOnly_.contains(key))
            text.append(key).append("=").append(value).append("\n");
    return text;
}

void Device::configure(std::string_view configuration)
{
    while (!configuration.empty()) {
        const auto [line, rest] = splitAt(configuration, '\n');
        const auto [key, value] = splitAt(line, '=');
        if (!readOnly_.contains(key))
            settings_.keep(key, value);
        configuration = rest;
    }
}

// What is installed survives a reset, and may bring one about.
void Device::install(std::string_view image)
{
    constexpr std::pair<std::string_view, std::string_view> parts[] = {{"firmware ", "softversion"},
                                                                       {"kernel ", "kernalversion"}};
    apply(settings_.text("keepconfig") == "1" ? Effect::Reset : Effect::Restart);
    for (const auto& [opening, key] : parts)
        if (image.starts_with(opening))
            for (Settings* settings : {&settings_, &factory_})
                settings->put(key, splitAt(image.substr(opening.size()), '\n').first);
}

void Device::apply(Effect effect)
{
    switch (effect) {
    case Effect::None:
        return;
    case Effect::Restart:
        break;
    case Effect::Reset:
        reset(Keep::Nothing);
        break;
    case Effect::ResetButAddress:
        reset(Keep::Address);
        break;
    case Effect::ResetButUsers:
        reset(Keep::Users);
        break;
    }
    restarting_ = true;
}

void Device::reset(Keep keep)
{
    const Settings before = std::exchange(settings_, factory_);
    for (const auto& [key, with] : keptWith_)
        if (const auto value = before.find(key); value && with == keep)
            settings_.put(key, *value);
}

} // namespace kxsim
