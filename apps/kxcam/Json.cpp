#include "Json.h"

#include <nlohmann/json.hpp>

namespace kxcam
{
namespace
{

nlohmann::ordered_json jsonOf(const Field& field, const Value& value, bool showSecrets)
{
    if (!isTold(value))
        return nullptr;
    if (const int* number = std::get_if<int>(&value))
        return *number;
    const std::string& text = std::get<std::string>(value);
    return field.secret && !showSecrets ? masked(text) : text;
}

} // namespace

void printJson(const Area& area, const Record& record, bool showSecrets, Console& console)
{
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
    for (const Field& field : area.fields)
        if (field.isRead())
            object[std::string(field.key)] = jsonOf(field, record.value(field), showSecrets);
    printObject(object, console);
}

void printObject(const nlohmann::ordered_json& object, Console& console)
{
    // A camera's text need not be UTF-8; JSON must be.
    console.print(object.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n");
}

} // namespace kxcam
