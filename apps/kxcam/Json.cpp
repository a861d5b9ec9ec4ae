#include "Json.h"

#include <nlohmann/json.hpp>

namespace kxcam
{
namespace
{

using Json = nlohmann::ordered_json;

Json jsonOf(const Field& field, const Value& value, bool showSecrets)
{
    if (!isTold(value))
        return nullptr;
    if (const int* number = std::get_if<int>(&value))
        return *number;
    const std::string& text = std::get<std::string>(value);
    return field.secret && !showSecrets ? masked(text) : text;
}

} // namespace

Json toJson(const Area& area, const Record& record, bool showSecrets)
{
    Json object = Json::object();
    for (const Field& field : area.fields)
        if (field.isRead())
            object[std::string(field.key)] = jsonOf(field, record.value(field), showSecrets);
    return object;
}

void printJson(const Json& object, Console& console)
{
    // A camera's text need not be UTF-8; JSON must be.
    console.print(object.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
}

void printJson(const Area& area, const Record& record, bool showSecrets, Console& console)
{
    printJson(toJson(area, record, showSecrets), console);
}

void printJson(const std::vector<StreamRecord>& streams, bool showSecrets, Console& console)
{
    Json object = Json::object();
    for (const auto& [stream, record] : streams)
        object[std::string(stream->name)] =
            record ? toJson(*stream->area, *record, showSecrets) : Json(nullptr);
    printJson(object, console);
}

} // namespace kxcam
