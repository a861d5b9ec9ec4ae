// kxcam card status|mount|unmount|format: looks after the camera's memory card.
#include <KxIpcSDK/KxStorage.h>

#include "Json.h"
#include "Table.h"
#include "Terminal.h"
#include "verbs/Verb.h"

namespace kxcam
{
namespace
{

constexpr char footer[] = R"(
Sizes are in the camera's own unit. Each command shows the card as it is afterwards; a
camera may need a while, above all to format one.

kxcam asks on the terminal before it has a card formatted; --yes answers for scripts.

Examples:
  kxcam --host 192.168.1.20 card status
  kxcam --host 192.168.1.20 card unmount        before the card is taken out
  kxcam --host 192.168.1.20 card format --yes

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)";

struct Options
{
    bool yes = false;
};

constexpr Field fields[] = {
    field<&SdCardInfo::sdinsert>("sdinsert", "1: a card is in the camera"),
    field<&SdCardInfo::sdtotalsize>("sdtotalsize", "size of the card"),
    field<&SdCardInfo::sdfreesize>("sdfreesize", "what is free of it"),
};

constexpr Area card = makeArea<Kx_Ipc_GetSdCardInfo, Kx_Ipc_GetSdCardInfo>("the memory card", "", fields);

void show(const Record& record, bool json, Console& console)
{
    if (json)
        printJson(card, record, false, console);
    else
        console.table(tableOf(card, record, false, console.isTerminal()));
}

ExitCode status(const CommandLine& line, Console& console)
{
    show(Session(line.target).read(card), line.json, console);
    return ExitCode::Ok;
}

ExitCode command(int (*call)(long userId), const char* what, const CommandLine& line, Console& console)
{
    Session session(line.target);
    if (session.read(card).value(fields[0]) == Value(0))
        throw Failure(ExitCode::Refused, line.target.address() + " has no memory card in it");
    if (call(session.userId()) != 0)
        throw sdkFailure(std::string(what) + " the memory card of " + line.target.address());
    show(session.read(card), line.json, console);
    return ExitCode::Ok;
}

ExitCode mount(const CommandLine& line, Console& console)
{
    return command(Kx_Ipc_MountSdCard, "mounting", line, console);
}

ExitCode unmount(const CommandLine& line, Console& console)
{
    return command(Kx_Ipc_UnMountSdCard, "unmounting", line, console);
}

ExitCode format(const Options& options, const CommandLine& line, Console& console)
{
    requireConsent("The memory card of " + line.target.address() + " will lose all that is on it.",
                   options.yes);
    return command(Kx_Ipc_FormatSdCard, "formatting", line, console);
}

} // namespace

void addCard(const Verb& kxcam)
{
    const auto options = std::make_shared<Options>();
    const Verb card = kxcam.add("card", "Look after the camera's memory card", footer);
    card.add("status", "Show whether there is one, and how full it is").does(status);
    card.add("mount", "Have the camera use it (again)").does(mount);
    card.add("unmount", "Have the camera let go of it").does(unmount);
    card.add("format", "Format it: all that is on it is lost")
        .does(format, options)
        .flag("--yes", &options->yes, "Do not ask");
}

} // namespace kxcam
