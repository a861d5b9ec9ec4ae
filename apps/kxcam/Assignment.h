// The "key=value" arguments of a set.
#pragma once

#include <string>
#include <vector>

#include "Area.h"

namespace kxcam
{

struct Assignment
{
    const Field* field;
    Value value;
};

using Assignments = std::vector<Assignment>;

/// Reads the arguments against the area's table. What the table does not allow throws a Failure of usage,
/// before the camera is asked anything.
Assignments parseAssignments(const Area& area, const std::vector<std::string>& arguments);

/// The assignment to a field, or null.
const Assignment* findAssignment(const Assignments& assignments, const Field& field);

/// Refuses a record with fields that a set would write 0 or nothing over, because neither the camera told
/// them nor the person gave them.
void requireTold(const Area& area, const Record& record);

/// Refuses a record that one set can not carry, for its length or for a text in it. As a set sends the whole record,
/// this can be a text that the camera had before.
void requireCarriable(const Area& area, const Record& record);

} // namespace kxcam
