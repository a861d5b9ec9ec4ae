// kxcam discover: lists the cameras of the local network.
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <set>
#include <string>

#include <unistd.h>

#include <nlohmann/json.hpp>

#include <KxIpcSDK/KxSearch.h>

#include "Json.h"
#include "verbs/Verb.h"

namespace kxcam
{
namespace
{

constexpr char footer[] =
    R"(Asks by multicast (WS-Discovery) and lists each camera as it answers, six seconds or
a little more. No camera found is exit code 4.

Examples:
  kxcam discover
  kxcam discover --json | jq -r '.cameras[].address'

Run 'kxcam --help' for --json and the exit codes.)";

constexpr char nobodyAnswered[] = "no camera answered. If there should be some: a firewall may drop the "
                                  "answers (UDP from port 3702); a camera in "
                                  "another subnet does not hear the question; and with several networks, the "
                                  "question goes where the multicast "
                                  "route leads (see `ip route get 239.255.255.250`).";

constexpr char couldNotAsk[] = "the search ended at once, so the question could not be sent. Is this "
                               "computer connected to a network, and is there "
                               "a route for multicast (see `ip route get 239.255.255.250`)?";

constexpr std::chrono::seconds shortestSearch{1}; // of one that was sent

/// The text with each "%xx" made the byte that it stands for.
std::string decoded(const std::string& text)
{
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned byte = 0;
        const char* digits = text.data() + i + 1;
        if (text[i] == '%' && i + 2 < text.size() &&
            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            plain += static_cast<char>(byte);
            i += 2;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

/// Goes to a directory that is gone already. The library leaves each answer in a file of the working directory; here
/// it can not, and nothing is left to be cleared away, however kxcam ends.
void leaveWorkingDirectory()
{
    std::string directory = std::filesystem::temp_directory_path() / "kxcam.XXXXXX";
    if (mkdtemp(directory.data()) == nullptr || chdir(directory.c_str()) != 0 ||
        rmdir(directory.c_str()) != 0)
        throw Failure(ExitCode::ThisComputer,
                      "can not make a temporary directory (" + directory + "): " + std::strerror(errno));
}

/// What has been found so far. A camera that is reported again is not listed again.
class Findings
{
public:
    Findings(bool json, Console& console) : json_(json), console_(console) {}

    void add(const SearchDeviceInfo& device)
    {
        if (!addresses_.insert(device.ip).second)
            return;
        if (json_)
            cameras_.push_back({{"address", device.ip},
                                {"port", device.port},
                                {"model", device.model},
                                {"name", decoded(device.name)}});
        else
            printRow(device);
    }

    bool empty() const { return addresses_.empty(); }

    void printAsJson() { printJson({{"cameras", cameras_}}, console_); }

private:
    void printRow(const SearchDeviceInfo& device)
    {
        if (addresses_.size() == 1)
            printColumns("ADDRESS", "PORT", "MODEL", "NAME");
        printColumns(device.ip, std::to_string(device.port), printable(device.model),
                     printable(decoded(device.name)));
    }

    void printColumns(const std::string& address, const std::string& port, const std::string& model,
                      const std::string& name)
    {
        char start[128];
        std::snprintf(start, sizeof start, "%-15s  %5s  %-12s", address.c_str(), port.c_str(), model.c_str());
        console_.print(start + (name.empty() ? "" : "  " + name) + "\n");
        console_.flush(); // for who watches
    }

    bool json_;
    Console& console_;
    std::set<std::string> addresses_;
    nlohmann::ordered_json cameras_ = nlohmann::ordered_json::array();
};

void add(SearchDeviceInfo* device, void* findings) noexcept
{
    static_cast<Findings*>(findings)->add(*device);
}

void search(Findings& findings)
{
    const Sdk sdk; // its end waits for the end of the search
    if (Kx_Sdk_SearchIpc(add, &findings) != 0)
        throw sdkFailure("the search");
}

ExitCode discover(const CommandLine& line, Console& console)
{
    leaveWorkingDirectory();
    if (console.isTerminal() && !line.json)
        remark("searching the local network, six seconds or a little more");
    Findings findings(line.json, console);
    const auto begin = std::chrono::steady_clock::now();
    search(findings);
    const bool asked = std::chrono::steady_clock::now() - begin >= shortestSearch;
    if (line.json)
        findings.printAsJson();
    if (!findings.empty())
        return ExitCode::Ok;
    throw Failure(ExitCode::Unreachable, asked ? nobodyAnswered : couldNotAsk);
}

} // namespace

void addDiscover(const Verb& kxcam)
{
    kxcam.add("discover", "List the cameras of the local network", footer).does(discover);
}

} // namespace kxcam
