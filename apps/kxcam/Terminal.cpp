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

void requireConsent(const std::string& what)
{
    const Descriptor terminal = openTerminal();
    if (!terminal)
        throw Failure(ExitCode::Usage,
                      "nothing was done: there is no terminal to ask for consent on. Add --yes "
                      "to do without");
    const std::string question = what + "\nType yes to go on: ";
    char answer[64];
    ssize_t length = -1;
    if (write(terminal.get(), question.data(), question.size()) > 0)
        length = read(terminal.get(), answer, sizeof answer);
    if (length < 0 || std::string_view(answer, static_cast<std::size_t>(length)) != "yes\n")
        throw Failure(ExitCode::Usage, "nothing was done");
}

} // namespace kxcam
