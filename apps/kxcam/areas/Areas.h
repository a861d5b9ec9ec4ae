// The areas that get and set know.
#pragma once

#include <string>

#include "Area.h"

namespace kxcam
{

/// The area of this name; else a Failure that lists the names.
const Area& findArea(const std::string& name);

/// Where the settings are: the area's stream of this name, or the area itself, which takes no name. Else a Failure.
const Area& findStream(const Area& area, const std::string& name);

/// Names and descriptions, a line each.
std::string areaHelp();

} // namespace kxcam
