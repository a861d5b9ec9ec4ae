// A question before something that can not be taken back.
#pragma once

#include <string>

namespace kxcam
{

/// Asks on the terminal; anything but "y" or "yes" throws a Failure, and so does input from where nobody can be asked.
/// `yes`: the person has said so on the command line.
void confirm(const std::string& question, bool yes);

} // namespace kxcam
