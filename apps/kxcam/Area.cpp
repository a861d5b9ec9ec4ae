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

namespace
{

std::string acceptedNumbers(const Field& field)
{
    if (field.lowest == std::numeric_limits<int>::min())
        return "number";
    const std::string lowest = std::to_string(field.lowest);
    if (field.highest == std::numeric_limits<int>::max())
        return "number from " + lowest;
    return lowest + " to " + std::to_string(field.highest);
}

} // namespace

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
                                                : acceptedNumbers(field);
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
