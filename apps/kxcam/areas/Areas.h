// The areas that get and set know.
#pragma once

#include <string>

#include "Area.h"

namespace kxcam
{

/// The area of this name; else a Failure that lists the names.
const Area& findArea(const std::string& name);

/// Names and descriptions, a line each.
std::string areaHelp();

} // namespace kxcam
