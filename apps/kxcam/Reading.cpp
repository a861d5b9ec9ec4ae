// The SDK leaves a field alone that the camera's answer lacks. A zeroed record would come back with zeros for
// it, and a set would then write them over the camera's settings. So each field holds a mark before the get.
// A field that still holds it was not told, or the camera has just this value: a second get with other marks
// tells which.
#include "Reading.h"

#include <algorithm>

namespace kxcam
{
namespace
{

struct Mark
{
    int number;
    int byte;
    const char* text;

    Value of(const Field& field) const
    {
        if (field.kind == Kind::Text)
            return text;
        return field.kind == Kind::Byte ? byte : number;
    }
};

constexpr Mark firstMark{-2'147'483'647, 0xA5, "\x01"};
constexpr Mark secondMark{-2'147'483'646, 0x5A, "\x02"};

bool isMarked(const Field& field, const Record& record, const Mark& mark)
{
    return field.isRead() && record.value(field) == mark.of(field);
}

Record readOver(const Mark& mark, const Area& area, const std::function<void(Record&)>& get)
{
    Record record(area);
    for (const Field& field : area.fields)
        if (field.isRead())
            record.setValue(field, mark.of(field));
    get(record);
    return record;
}

void forgetMarked(const Area& area, Record& record, const Mark& mark)
{
    for (const Field& field : area.fields)
        if (isMarked(field, record, mark))
            record.setValue(field, field.zeroWhenUntold ? Value(0) : Value());
}

// A camera that ends its lines with CR LF leaves the CR at the end of each text.
void dropLineEnds(const Area& area, Record& record)
{
    for (const Field& field : area.fields) {
        Value value = record.value(field);
        auto* text = std::get_if<std::string>(&value);
        if (text == nullptr || !text->ends_with('\r'))
            continue;
        text->pop_back();
        record.setValue(field, value);
    }
}

} // namespace

std::optional<Record> readTold(const Area& area, const std::function<void(Record&)>& get)
{
    Record record = readOver(firstMark, area, get);
    const auto marked = [&](const Field& field) { return isMarked(field, record, firstMark); };
    if (std::any_of(area.fields.begin(), area.fields.end(), marked)) {
        record = readOver(secondMark, area, get);
        forgetMarked(area, record, secondMark);
    }
    const auto told = [&](const Field& field) { return isTold(record.value(field)); };
    if (std::none_of(area.fields.begin(), area.fields.end(), told))
        return std::nullopt;
    dropLineEnds(area, record);
    return record;
}

} // namespace kxcam
