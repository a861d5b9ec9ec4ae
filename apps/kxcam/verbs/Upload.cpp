// kxcam upload config|oem|firmware|kernel|file: sends a local file to the camera.
#include <filesystem>
#include <fstream>
#include <optional>

#include <nlohmann/json.hpp>

#include <KxIpcSDK/KxStorage.h>

#include "Amounts.h"
#include "Json.h"
#include "Restart.h"
#include "Terminal.h"
#include "Transfer.h"
#include "verbs/Verb.h"

namespace kxcam
{
namespace
{

constexpr char footer[] = R"(
After a firmware or a kernel the camera restarts: kxcam waits for it to be back and shows
the firmware's version before and after. Do not switch the camera off meanwhile. With
--expect, another version than this one is exit code 5.

A kernel's file name tells what it is made for: KImage_ and what the camera checks. Only
cameras of the TI family take one.

Ctrl-C stops a transfer. A file that has gone out whole can not be called back.

Examples:
  kxcam --host 192.168.1.20 upload config config.ini
  kxcam --host 192.168.1.20 upload firmware camera-2.1.0.bin --expect 2.1.0
  kxcam --host 192.168.1.20 upload file announcement.wav

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)";

constexpr char stopped[] =
    "stopped; what the camera got of the file is not whole, and it should have thrown it away";

constexpr char refused[] =
    "the camera did not say that it took the file. It may be damaged or meant for another "
    "model, or the camera may have no room for it";

using Call = int (*)(long userId, const char* path);

struct Options
{
    std::string path;
    std::string expect;
    bool resetSettings = false;
    bool yes = false;
    int patience = 300; // seconds
};

void requireReadable(const std::string& path)
{
    if (!std::filesystem::is_regular_file(path) || !std::ifstream(path))
        throw Failure(ExitCode::Usage, "can not read a file '" + printable(path) + "'");
}

/// Sends the file; how many bytes it has.
std::uint64_t send(const std::function<int()>& call, const Options& options, const CommandLine& line,
                   Console& console)
{
    const Transferred sent = runTransfer(call, line.json, stopped, console);
    if (sent.succeeded)
        return sent.bytes;
    const std::string what = "sending " + printable(options.path) + " to " + line.target.address();
    if (sent.hasCode)
        throw sdkFailure(what);
    throw Failure(ExitCode::Refused, what + " failed: " + refused);
}

std::string sentText(const Options& options, std::uint64_t bytes)
{
    return "sent " + printable(options.path) + ", " + sizeText(bytes);
}

ExitCode upload(Call call, const Options& options, const CommandLine& line, Console& console)
{
    requireReadable(options.path);
    const Session session(line.target);
    const std::uint64_t bytes =
        send([&] { return call(session.userId(), options.path.c_str()); }, options, line, console);
    if (line.json)
        printJson({{"sent", options.path}, {"bytes", bytes}}, console);
    else
        console.print(sentText(options, bytes) + "\n");
    return ExitCode::Ok;
}

/// An upload after which the camera restarts.
ExitCode install(Call call, const Options& options, const CommandLine& line, Console& console)
{
    requireReadable(options.path);
    if (options.resetSettings)
        requireConsent("The camera at " + line.target.address() + " will lose all its settings.",
                       options.yes);
    const Session session(line.target);
    const std::optional<std::string> before = askVersion(session);
    const std::uint64_t bytes =
        send([&] { return call(session.userId(), options.path.c_str()); }, options, line, console);
    remark(sentText(options, bytes) + "; waiting for the camera to restart");
    const std::string after = versionAfterRestart(session, before, std::chrono::seconds(options.patience));
    const std::string known = before.value_or("(not told)");
    if (line.json)
        printJson({{"sent", options.path}, {"bytes", bytes}, {"before", known}, {"after", after}}, console);
    else
        console.print("softversion  " + printable(known) +
                      (after == before ? " (as before)" : " -> " + printable(after)) + "\n");
    if (options.expect.empty() || options.expect == after)
        return ExitCode::Ok;
    remark("the camera runs " + printable(after) + ", not " + options.expect);
    return ExitCode::NotKept;
}

int updateKeepingSettings(long userId, const char* path)
{
    return Kx_Ipc_UpdateFirmware(userId, path, 1);
}

int updateResettingSettings(long userId, const char* path)
{
    return Kx_Ipc_UpdateFirmware(userId, path, 0);
}

ExitCode installFirmware(const Options& options, const CommandLine& line, Console& console)
{
    return install(options.resetSettings ? updateResettingSettings : updateKeepingSettings, options, line,
                   console);
}

ExitCode installKernel(const Options& options, const CommandLine& line, Console& console)
{
    return install(Kx_Ipc_UpdateKernal, options, line, console);
}

template <Call Function>
ExitCode uploadBy(const Options& options, const CommandLine& line, Console& console)
{
    return upload(Function, options, line, console);
}

void addWaiting(const Verb& verb, Options& options)
{
    verb.option("--wait", "S", &options.patience, "Seconds that the restart may take")
        .within(1, 36'000)
        .showDefault();
}

void addInstalling(const Verb& firmware, Options& options)
{
    firmware.flag("--reset-settings", &options.resetSettings, "Go back to the factory's settings");
    firmware.flag("--yes", &options.yes, "Do not ask");
    firmware.option("--expect", "VERSION", &options.expect, "The version that must run afterwards");
    addWaiting(firmware, options);
}

} // namespace

void addUpload(const Verb& kxcam)
{
    const auto options = std::make_shared<Options>();
    const Verb upload = kxcam.add("upload", "Send a file to the camera", footer);
    const auto add = [&](const char* name, const char* help, auto work) {
        const Verb verb = upload.add(name, help).does(work, options);
        verb.argument("FILE", &options->path, "The local file").required();
        return verb;
    };
    add("config", "Give the camera a configuration", uploadBy<Kx_Ipc_UploadConfigFile>);
    add("oem", "Give it an OEM configuration: names and looks of who sells it",
        uploadBy<Kx_Ipc_UploadOemConfigFile>);
    addInstalling(add("firmware", "Install a firmware, and wait for the restart", installFirmware), *options);
    addWaiting(add("kernel", "Install a kernel, and wait for the restart", installKernel), *options);
    add("file", "Store a file on the memory card", uploadBy<Kx_Ipc_UploadFileToSdCard>);
}

} // namespace kxcam
