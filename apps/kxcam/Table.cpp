#include "Table.h"

namespace kxcam
{

std::vector<TableLine> tableOf(const Area& area, const Record& record, bool showSecrets, bool describe)
{
    std::vector<TableLine> lines;
    for (const Field& field : area.fields)
        if (field.isRead())
            lines.push_back({std::string(field.key), displayed(field, record.value(field), showSecrets),
                             std::string(describe ? field.help : "")});
    return lines;
}

} // namespace kxcam
