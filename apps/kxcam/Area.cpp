#include "Area.h"

#include "Console.h"

namespace kxcam
{

void Record::setValue(const Field& field, const Value& value)
{
    told_[indexOf(field)] = isTold(value);
    if (isTold(value))
        field.write(data(), value);
    else
        field.write(data(), field.kind == Kind::Text ? Value(std::string()) : Value(0));
}

std::string masked(const std::string& secret)
{
    return secret.empty() ? "" : "********";
}

std::string displayed(const Field& field, const Value& value, bool showSecrets)
{
    if (!isTold(value))
        return "(not told)";
    if (const int* number = std::get_if<int>(&value))
        return std::to_string(*number);
    const std::string& text = std::get<std::string>(value);
    if (text.empty())
        return "(empty)";
    return field.secret && !showSecrets ? masked(text) : printable(text);
}

std::string accepted(const Field& field)
{
    std::string text = field.kind == Kind::Text ? "text, at most " + std::to_string(field.size - 1) + " bytes"
                       : field.lowest == 0      ? "0 to " + std::to_string(field.highest)
                                                : "number";
    if (field.secret)
        text += ", secret";
    if (field.access == Access::MustGive)
        text += ", must be given";
    return field.access == Access::ReadOnly ? "read only" : text;
}

std::string joinedKeys(const Area& area)
{
    std::string keys;
    for (const Field& field : area.fields)
        keys.append(keys.empty() ? "" : ", ").append(field.key);
    return keys;
}

} // namespace kxcam
