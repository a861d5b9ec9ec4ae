// Settings as a table, for people.
#pragma once

#include <vector>

#include "Area.h"
#include "Console.h"

namespace kxcam
{

/// A line for each field that the camera tells.
std::vector<TableLine> tableOf(const Area& area, const Record& record, bool showSecrets, bool describe);

} // namespace kxcam
