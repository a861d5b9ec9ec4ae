#include "Assignment.h"

#include <algorithm>
#include <charconv>

#include "Carriable.h"
#include "Failure.h"
#include "SecretInput.h"

namespace kxcam
{
namespace
{

Failure wrong(const std::string& message)
{
    return {ExitCode::Usage, message};
}

const Field& findField(const Area& area, const std::string& key)
{
    const auto field = std::find_if(area.fields.begin(), area.fields.end(),
                                    [&key](const Field& candidate) { return candidate.key == key; });
    if (field == area.fields.end())
        throw wrong(std::string(area.name) + " has no key '" + key + "'. Its keys: " + joinedKeys(area));
    if (!field->isWritten())
        throw wrong("'" + key + "' is read only");
    return *field;
}

int parseNumber(const Field& field, const std::string& text)
{
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (stop != end || error == std::errc::invalid_argument)
        throw wrong("'" + std::string(field.key) + "' takes a whole number, not '" + text + "'");
    if (error != std::errc() || number < field.lowest || number > field.highest)
        throw wrong("'" + std::string(field.key) + "' takes " + std::to_string(field.lowest) + " to " +
                    std::to_string(field.highest) + ", not " + text);
    return number;
}

std::string parseText(const Field& field, std::string text)
{
    const std::string key(field.key);
    if (field.secret && text == "-")
        text = secretValue(key);
    if (text.size() >= field.size)
        throw wrong("the value of '" + key + "' has " + std::to_string(text.size()) +
                    " bytes; the field holds " + std::to_string(field.size - 1));
    if (const auto why = obstacle(text, field.encoded))
        throw wrong("the value of '" + key + "' " + *why);
    return text;
}

Assignment parseAssignment(const Area& area, const std::string& argument)
{
    const std::size_t equals = argument.find('=');
    if (equals == std::string::npos)
        throw wrong("'" + argument + "' is not of the form key=value");
    const Field& field = findField(area, argument.substr(0, equals));
    const std::string value = argument.substr(equals + 1);
    if (field.kind == Kind::Text)
        return {&field, parseText(field, value)};
    return {&field, parseNumber(field, value)};
}

// The SDK cuts what goes beyond 1022 characters; some models spell a setting in a few more than its key has.
constexpr std::size_t longestSet = 1000;

/// How many characters the settings of a set take: "&ftpip=192.168.1.5", and so on.
std::size_t lengthOfSet(const Area& area, const Record& record)
{
    std::size_t length = 0;
    for (const Field& field : area.fields) {
        const Value value = field.isWritten() ? record.value(field) : Value();
        if (const auto* text = std::get_if<std::string>(&value))
            length += field.key.size() + text->size() * (field.encoded ? 3 : 1) + 2;
        else if (const auto* number = std::get_if<int>(&value))
            length += field.key.size() + std::to_string(*number).size() + 2;
    }
    return length;
}

void requireGiven(const Area& area, const Assignments& assignments)
{
    for (const Field& field : area.fields)
        if (field.access == Access::MustGive && findAssignment(assignments, field) == nullptr)
            throw wrong("add " + std::string(field.key) + "=…: every set of " + std::string(area.name) +
                        " writes it, and the camera does not tell its present value, so kxcam can not keep "
                        "it for you");
}

} // namespace

Assignments parseAssignments(const Area& area, const std::vector<std::string>& arguments)
{
    Assignments assignments;
    for (const std::string& argument : arguments) {
        Assignment next = parseAssignment(area, argument);
        if (findAssignment(assignments, *next.field) != nullptr)
            throw wrong("'" + std::string(next.field->key) + "' is given twice");
        assignments.push_back(std::move(next));
    }
    requireGiven(area, assignments);
    return assignments;
}

const Assignment* findAssignment(const Assignments& assignments, const Field& field)
{
    const auto found =
        std::find_if(assignments.begin(), assignments.end(),
                     [&field](const Assignment& assignment) { return assignment.field == &field; });
    return found == assignments.end() ? nullptr : &*found;
}

void requireTold(const Area& area, const Record& record)
{
    std::string missing;
    for (const Field& field : area.fields)
        if (field.isWritten() && field.access != Access::WriteOnly && !field.someModels &&
            !isTold(record.value(field)))
            missing.append(" ").append(field.key).append("=…");
    if (!missing.empty())
        throw Failure(ExitCode::Refused,
                      "the camera did not tell all of " + std::string(area.name) +
                          ", and a set would overwrite the rest with nothing. Try again, or give" + missing +
                          " too");
}

void requireCarriable(const Area& area, const Record& record)
{
    for (const Field& field : area.fields) {
        if (!field.isWritten())
            continue;
        const Value value = record.value(field);
        const auto* text = std::get_if<std::string>(&value);
        if (const auto why = text != nullptr ? obstacle(*text, field.encoded) : std::nullopt)
            throw wrong("the camera's present value of '" + std::string(field.key) + "' " + *why +
                        ", and a set writes it back; give " + std::string(field.key) + "=… too");
    }
    if (const std::size_t length = lengthOfSet(area, record); length > longestSet)
        throw wrong("together, the settings of " + std::string(area.name) + " would take " +
                    std::to_string(length) + " characters; a set carries " + std::to_string(longestSet) +
                    ". Give shorter texts");
}

} // namespace kxcam
