#include "Terminal.h"

#include <string_view>

#include <fcntl.h>
#include <unistd.h>

#include "Failure.h"

namespace kxcam
{

Descriptor::~Descriptor()
{
    if (descriptor_ >= 0)
        close(descriptor_);
}

Descriptor openTerminal()
{
    return Descriptor(open("/dev/tty", O_RDWR | O_CLOEXEC));
}

Descriptor terminalOfInput()
{
    return isatty(STDIN_FILENO) != 0 ? openTerminal() : Descriptor(-1);
}

void requireConsent(const std::string& what, bool given)
{
    if (given)
        return;
    const Descriptor terminal = terminalOfInput();
    if (!terminal)
        throw Failure(ExitCode::Usage, "nothing was done: nobody can be asked for consent. " + what +
                                           " Add --yes to do without");
    const std::string question = what + "\nType yes to go on: ";
    char answer[64];
    ssize_t length = -1;
    if (write(terminal.get(), question.data(), question.size()) > 0)
        length = read(terminal.get(), answer, sizeof answer);
    if (length < 0 || std::string_view(answer, static_cast<std::size_t>(length)) != "yes\n")
        throw Failure(ExitCode::Usage, "nothing was done");
}

} // namespace kxcam
