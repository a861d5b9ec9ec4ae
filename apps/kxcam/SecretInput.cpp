// While a prompt is open, echo is off and the signals that end or stop the program are blocked. Such a signal
// wakes the prompt, which first restores the terminal and then unblocks the signal, so that it does what it
// always does: Ctrl-C ends kxcam with the terminal as it was, and after Ctrl-Z and `fg` the prompt comes
// again.
#include "SecretInput.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string_view>

#include <poll.h>
#include <sys/signalfd.h>
#include <termios.h>
#include <unistd.h>

#include "Failure.h"
#include "Terminal.h"

namespace kxcam
{
namespace
{

constexpr std::size_t longestLine = 4096;

class BlockedSignals
{
public:
    BlockedSignals()
    {
        sigemptyset(&signals_);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP})
            sigaddset(&signals_, signal);
        sigprocmask(SIG_BLOCK, &signals_, &before_);
    }
    ~BlockedSignals() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

    const sigset_t& signals() const { return signals_; }

private:
    sigset_t signals_{};
    sigset_t before_{};
};

/// A prompt with echo off. Its end brings echo back, and the line feed that the person's Enter did not show.
class QuietPrompt
{
public:
    QuietPrompt(int terminal, const std::string& prompt) : terminal_(terminal)
    {
        tcgetattr(terminal_, &before_);
        termios quiet = before_;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(terminal_, TCSAFLUSH, &quiet);
        show(prompt + ": ");
    }
    ~QuietPrompt()
    {
        show("\n");
        tcsetattr(terminal_, TCSAFLUSH, &before_);
    }
    QuietPrompt(const QuietPrompt&) = delete;
    QuietPrompt& operator=(const QuietPrompt&) = delete;

private:
    // A terminal that can not show the prompt fails the read that follows.
    void show(std::string_view text)
    {
        [[maybe_unused]] const auto written = write(terminal_, text.data(), text.size());
    }

    int terminal_;
    termios before_{};
};

/// One line of the terminal; nothing when a signal came first.
std::optional<std::string> readLine(int terminal, int signals)
{
    pollfd waits[] = {{terminal, POLLIN, 0}, {signals, POLLIN, 0}};
    std::string line;
    while (line.size() < longestLine) {
        if (poll(waits, std::size(waits), -1) < 0) {
            if (errno == EINTR)
                continue;
            throw Failure(ExitCode::ThisComputer, "the terminal can not be read");
        }
        if (waits[1].revents != 0)
            return std::nullopt;
        char byte = '\n';
        if (read(terminal, &byte, 1) <= 0 && line.empty())
            throw Failure(ExitCode::Usage, "nothing was entered");
        if (byte == '\n')
            break;
        line += byte;
    }
    return line;
}

std::optional<std::string> askOnce(int terminal, const std::string& prompt)
{
    const BlockedSignals blocked;
    const Descriptor signals(signalfd(-1, &blocked.signals(), SFD_CLOEXEC));
    const QuietPrompt quiet(terminal, prompt);
    return readLine(terminal, signals.get());
}

std::string ask(const Descriptor& terminal, const std::string& prompt)
{
    for (;;)
        if (auto line = askOnce(terminal.get(), prompt))
            return *line;
}

std::string nextLine(const std::string& what)
{
    std::string line;
    if (!std::getline(std::cin, line))
        throw Failure(ExitCode::Usage, "standard input ended before it gave " + what);
    return line;
}

} // namespace

std::string loginPassword(const std::string& whose)
{
    if (const char* password = std::getenv(passwordVariable))
        return password;
    const Descriptor terminal = openTerminal();
    if (!terminal)
        throw Failure(ExitCode::Usage, "no password: set the environment variable " +
                                           std::string(passwordVariable) +
                                           ", or run kxcam on a terminal, where it asks for it");
    return ask(terminal, "Password of " + whose);
}

std::string secretValue(const std::string& key)
{
    if (const Descriptor terminal = terminalOfInput())
        return ask(terminal, "Value of " + key);
    return nextLine("a value for '" + key + "'");
}

std::string newPassword(const std::string& whose)
{
    if (const char* password = std::getenv(newPasswordVariable))
        return password;
    const Descriptor terminal = terminalOfInput();
    if (!terminal)
        return nextLine("the new password; " + std::string(newPasswordVariable) + " is not set either");
    const std::string password = ask(terminal, "New password of " + whose);
    if (ask(terminal, "The same again") != password)
        throw Failure(ExitCode::Usage, "the two passwords differ");
    return password;
}

} // namespace kxcam
