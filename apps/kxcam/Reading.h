// Reading a record so that what the camera did not tell can be told from what is 0 or empty.
#pragma once

#include <functional>
#include <optional>

#include "Area.h"

namespace kxcam
{

/// Has `get` fill records of the area, and notes which fields the camera told. Nothing when it told none.
std::optional<Record> readTold(const Area& area, const std::function<void(Record&)>& get);

} // namespace kxcam
