#include "Confirm.h"

#include <cstdio>
#include <iostream>

#include <unistd.h>

#include "Failure.h"

namespace kxcam
{

void confirm(const std::string& question, bool yes)
{
    if (yes)
        return;
    if (isatty(STDIN_FILENO) == 0)
        throw Failure(ExitCode::Usage,
                      "not confirmed: add --yes where nobody can be asked \"" + question + "\"");
    std::fprintf(stderr, "%s [y/N] ", question.c_str());
    std::string answer;
    std::getline(std::cin, answer);
    if (answer != "y" && answer != "yes")
        throw Failure(ExitCode::Usage, "not confirmed, nothing was done");
}

} // namespace kxcam
