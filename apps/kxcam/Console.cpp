#include "Console.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

#include "Failure.h"

namespace kxcam
{
namespace
{

std::FILE* remarks = stderr; // or a private copy of it

constexpr std::size_t widestAlignedValue =
    40; // one long value must not push every description off the screen

bool isControl(std::string_view text, std::size_t at)
{
    const auto byte = static_cast<unsigned char>(text[at]);
    // U+0080 to U+009F in UTF-8: some terminals obey them.
    const bool afterC2 = at > 0 && static_cast<unsigned char>(text[at - 1]) == 0xC2;
    return byte < 0x20 || byte == 0x7F || (afterC2 && byte < 0xA0);
}

// Characters, not bytes: those that continue a UTF-8 sequence take no column.
std::size_t columns(std::string_view text)
{
    const auto starts = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; };
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), starts));
}

std::string padded(const std::string& text, std::size_t width)
{
    return text + std::string(width - std::min(width, columns(text)), ' ');
}

std::size_t widest(const std::vector<TableLine>& lines, std::string TableLine::*column, std::size_t limit)
{
    std::size_t width = 0;
    for (const TableLine& line : lines)
        if (const std::size_t own = columns(line.*column); own <= limit)
            width = std::max(width, own);
    return width;
}

bool wantsNoColour()
{
    const char* terminal = std::getenv("TERM");
    return std::getenv("NO_COLOR") != nullptr || terminal == nullptr || std::strcmp(terminal, "dumb") == 0;
}

} // namespace

std::string joined(const std::vector<std::string>& parts, std::string_view separator)
{
    std::string text;
    for (const std::string& part : parts)
        text.append(&part == &parts.front() ? "" : separator).append(part);
    return text;
}

std::string printable(std::string_view text)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string shown;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (isControl(text, i))
            shown.append("\\x").append({digits[byte >> 4U], digits[byte & 0xFU]});
        else
            shown += text[i];
    }
    return shown;
}

Console::Console()
{
    const int copy = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    out_.reset(copy < 0 ? nullptr : fdopen(copy, "w"));
    if (!out_)
        throw Failure(ExitCode::ThisComputer,
                      std::string("can not write to standard output: ") + std::strerror(errno));
    terminal_ = isatty(copy) != 0;
    dims_ = terminal_ && !wantsNoColour();
    if (dup2(STDERR_FILENO, STDOUT_FILENO) < 0) // standard error is closed
        hideDiagnostics();
}

void Console::hideDiagnostics()
{
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0)
        return;
    dup2(nowhere, STDOUT_FILENO);
    const int copy = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (std::FILE* file = copy < 0 ? nullptr : fdopen(copy, "w")) {
        std::setvbuf(file, nullptr, _IONBF, 0);
        remarks = file;
        dup2(nowhere, STDERR_FILENO);
    }
    close(nowhere);
}

void Console::print(std::string_view text)
{
    std::fwrite(text.data(), 1, text.size(), out_.get());
}

void Console::printNow(std::string_view text)
{
    print(text);
    flush();
}

void Console::table(const std::vector<TableLine>& lines)
{
    const std::size_t keyWidth = widest(lines, &TableLine::key, std::string::npos);
    const std::size_t valueWidth = widest(lines, &TableLine::value, widestAlignedValue);
    for (const TableLine& line : lines) {
        print(padded(line.key, keyWidth) + "  ");
        print(line.description.empty() ? line.value : padded(line.value, valueWidth) + "  ");
        print(dims_ && !line.description.empty() ? "\033[2m" + line.description + "\033[0m"
                                                 : line.description);
        print("\n");
    }
    flush(); // before any remark about it
}

void Console::flush()
{
    if (std::fflush(out_.get()) != 0 && error_ == 0)
        error_ = errno;
}

void Console::finish()
{
    flush();
    if (error_ != 0 && error_ != EPIPE)
        throw Failure(ExitCode::ThisComputer,
                      std::string("can not write the result: ") + std::strerror(error_));
}

void remark(std::string_view text)
{
    std::fprintf(remarks, "kxcam: %.*s\n", static_cast<int>(text.size()), text.data());
}

} // namespace kxcam
