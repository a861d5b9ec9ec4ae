// kxcam download log|config|file|export: fetches a file of the camera's.
#include <KxIpcSDK/KxStorage.h>

#include "Carriable.h"
#include "Landing.h"
#include "Transfer.h"
#include "verbs/Verb.h"

namespace kxcam
{
namespace
{

constexpr char footer[] = R"(
A file bears its name with '.part' behind it until it is whole; when the transfer fails or
is stopped by Ctrl-C, what has come stays there. The library fills a fetched file up with
zero bytes, to twice its size; kxcam cuts those off. Of a file of more than 10 MB only the
beginning can be fetched.

'export' leaves it to the camera how the file in DIRECTORY is named.

Examples:
  kxcam --host 192.168.1.20 download log camera.log
  kxcam --host 192.168.1.20 download file 20240501080000.avi    from the memory card
  kxcam --host 192.168.1.20 download file /etc/oem.ini oem.ini  any file, by its path
  kxcam --host 192.168.1.20 download export .

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)";

struct Options
{
    std::string name; // the camera's
    std::string path; // the local one
};

/// Why nothing came, or not all of it. A failure without a code is the camera's refusal, or the local disk's.
Failure failure(const Transferred& end, const std::string& what, const std::string& path, bool begun)
{
    if (end.hasCode)
        return sdkFailure(what);
    if (begun)
        return {ExitCode::ThisComputer, what + " failed: '" + printable(path) +
                                            "' can not be written to its end. "
                                            "Is the disk full?"};
    return {ExitCode::Refused,
            what + " failed: the camera does not hand it out. It may not have it, or not allow "
                   "it to the account"};
}

/// The library ends an answer there, and calls that a success.
bool isCut(const Transferred& end)
{
    constexpr std::uint64_t longest = 9'999'999 - 4096; // without the header, however long that is
    return end.bytes >= longest && (end.total == 0 || end.total > end.bytes);
}

ExitCode fetch(const std::function<int(long userId, const char* path)>& call, const std::string& what,
               const Options& options, const CommandLine& line, Console& console)
{
    const Session session(line.target);
    const PartFile part(options.path);
    const std::string task = "fetching " + what + " from " + line.target.address();
    const Transferred end =
        runTransfer([&] { return call(session.userId(), part.path().c_str()); }, line.json,
                    "stopped; what has come is in " + printable(part.path()), console);
    if (!end.succeeded) {
        if (part.size() > 0)
            remark("what has come is in " + printable(part.path()));
        throw failure(end, task, part.path(), part.size() > 0);
    }
    part.cutTo(end.bytes);
    if (isCut(end))
        throw Failure(ExitCode::Refused,
                      task + " failed: the library takes 10 MB at most. The beginning is in " +
                          printable(part.path()));
    part.complete();
    reportSaved(options.path, end.bytes, line.json, console);
    return ExitCode::Ok;
}

ExitCode log(const Options& options, const CommandLine& line, Console& console)
{
    return fetch(Kx_Ipc_DownloadLog, "the log", options, line, console);
}

ExitCode config(const Options& options, const CommandLine& line, Console& console)
{
    return fetch(Kx_Ipc_DownloadCfg, "the configuration", options, line, console);
}

/// The name goes into the request as it stands.
void requireCarriable(const std::string& name)
{
    auto why = obstacle(name);
    if (!why && name.find(' ') != std::string::npos)
        why = "contains a blank, which would end the request";
    if (why)
        throw Failure(ExitCode::Usage, "the file's name '" + printable(name) + "' " + *why);
}

ExitCode file(const Options& options, const CommandLine& line, Console& console)
{
    requireCarriable(options.name);
    Options completed = options;
    if (completed.path.empty())
        completed.path = options.name.substr(options.name.rfind('/') + 1);
    if (completed.path.empty())
        throw Failure(ExitCode::Usage, "'" + printable(options.name) + "' names no file");
    const std::uint32_t kind = options.name.starts_with('/') ? 1 : 0; // by path, or on the memory card
    const auto call = [&](long userId, const char* path) {
        return Kx_Ipc_DownloadCustom(userId, path, kind, options.name.c_str());
    };
    return fetch(call, printable(options.name), completed, line, console);
}

ExitCode exportConfig(const Options& options, const CommandLine& line, Console& console)
{
    const Session session(line.target);
    LandingDirectory landing(options.path);
    const Transferred end =
        runTransfer([&] { return Kx_Ipc_ExportCfg(session.userId(), landing.path().c_str()); }, line.json,
                    "stopped; nothing is left of it", console);
    if (!end.succeeded)
        throw failure(end, "the export from " + line.target.address(), options.path,
                      !std::filesystem::is_empty(landing.path()));
    const std::filesystem::path saved = landing.complete();
    reportSaved(saved, std::filesystem::file_size(saved), line.json, console);
    return ExitCode::Ok;
}

} // namespace

void addDownload(const Verb& kxcam)
{
    const auto options = std::make_shared<Options>();
    const Verb download = kxcam.add("download", "Fetch a file of the camera's", footer);
    download.add("log", "Fetch the log")
        .does(log, options)
        .argument("FILE", &options->path, "The local file")
        .required();
    download.add("config", "Fetch the configuration")
        .does(config, options)
        .argument("FILE", &options->path, "The local file")
        .required();
    const Verb any =
        download.add("file", "Fetch a file of the memory card, or any other").does(file, options);
    any.argument("NAME", &options->name, "Its name on the memory card, or its path").required();
    any.argument("FILE", &options->path, "The local file; left out: of the same name");
    download.add("export", "Fetch the configuration into a directory")
        .does(exportConfig, options)
        .argument("DIRECTORY", &options->path, "The local directory")
        .required();
}

} // namespace kxcam
