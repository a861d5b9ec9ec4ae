// kxcam ptz: steers a camera, its presets and its lights.
#include "verbs/Ptz.h"

#include <nlohmann/json.hpp>

#include "Carriable.h"
#include "Json.h"

namespace kxcam
{
namespace
{

constexpr char footer[] = R"(
A movement goes on until 'ptz stop', or for as long as --for says: the camera is then
stopped also when kxcam is interrupted. Without --for, kxcam does not wait. Cameras do not
say what they make of a command; 'ptz status' shows some of it.

Examples:
  kxcam --host 192.168.1.20 ptz move left --for 1.5
  kxcam --host 192.168.1.20 ptz zoom 40
  kxcam --host 192.168.1.20 ptz preset set 3 "loading bay"
  kxcam --host 192.168.1.20 ptz preset go 3
  kxcam --host 192.168.1.20 ptz tracking schedule 1 08:00-18:30 20:00-22:00
  kxcam --host 192.168.1.20 ptz status --json

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)";

struct Options
{
    PtzOrder order;
    std::string led;
};

void require(bool done, const char* what, const CommandLine& line)
{
    if (!done)
        throw sdkFailure(std::string(what) + " of " + line.target.address());
}

std::string presetNumber(const Options& options)
{
    return "preset " + std::to_string(options.order.preset);
}

template <KxPtzCommand Code>
void sendPreset(const Options& options, const CommandLine& line)
{
    PtzOrder order = options.order;
    order.code = Code;
    require(sendOrder(Session(line.target), order), presetNumber(options).c_str(), line);
}

ExitCode setPreset(const Options& options, const CommandLine& line, Console& console)
{
    if (const auto why = obstacle(options.order.name))
        throw Failure(ExitCode::Usage, "the name '" + printable(options.order.name) + "' " + *why);
    sendPreset<KX_PTZ_SET_PRESET>(options, line);
    reportDone("set " + presetNumber(options), line.json, console);
    return ExitCode::Ok;
}

ExitCode goToPreset(const Options& options, const CommandLine& line, Console& console)
{
    sendPreset<KX_PTZ_GO_TO_PRESET>(options, line);
    reportDone("going to " + presetNumber(options), line.json, console);
    return ExitCode::Ok;
}

ExitCode clearPreset(const Options& options, const CommandLine& line, Console& console)
{
    sendPreset<KX_PTZ_CLEAR_PRESET>(options, line);
    reportDone("cleared " + presetNumber(options), line.json, console);
    return ExitCode::Ok;
}

ExitCode switchLed(const Options& options, const CommandLine& line, Console& console)
{
    const int status = options.led == "on" ? 1 : 0;
    require(Kx_Ipc_SetWhiteLEDStatus(Session(line.target).userId(), status) == 0, "switching the white LED",
            line);
    reportDone("led " + options.led, line.json, console);
    return ExitCode::Ok;
}

void addPresets(const Verb& ptz)
{
    const auto options = std::make_shared<Options>();
    const Verb preset = ptz.add("preset", "Keep positions, and go back to them", noFooter);
    const auto addNumbered = [&](const char* name, const char* help, auto work) {
        const Verb verb = preset.add(name, help).does(work, options);
        verb.argument("NUMBER", &options->order.preset, "The preset's number").required().notNegative();
        addView(verb, options->order);
        return verb;
    };
    addNumbered("set", "Keep where the camera looks", setPreset)
        .argument("NAME", &options->order.name, "The preset's name");
    addNumbered("go", "Look where a preset says", goToPreset);
    addNumbered("clear", "Forget a preset", clearPreset);
}

void addLed(const Verb& ptz)
{
    const auto options = std::make_shared<Options>();
    addSwitch(ptz.add("led", "Switch the white LED on or off").does(switchLed, options), &options->led);
}

} // namespace

bool sendOrder(const Session& session, const PtzOrder& order)
{
    const bool isOfView = order.view >= 0;
    return Kx_Ipc_PTZControl(session.userId(), order.code, order.preset, order.name.c_str(), isOfView ? 1 : 0,
                             isOfView ? order.view : 0, order.speed) == 0;
}

void addView(const Verb& verb, PtzOrder& order)
{
    verb.option("--view", "N", &order.view, "Which view of a fisheye camera, from 0").notNegative();
}

void addSwitch(const Verb& verb, std::string* word)
{
    verb.argument("WORD", word, "on or off").required().oneOf({"on", "off"});
}

void reportDone(const std::string& what, bool json, Console& console)
{
    if (json)
        printJson({{"done", what}}, console);
    else
        console.print(what + "\n");
}

void addPtz(const Verb& kxcam)
{
    const Verb ptz = kxcam.add("ptz", "Move the camera, its lens and its lights", footer);
    addPtzMoves(ptz);
    addPresets(ptz);
    addLed(ptz);
    addPtzTracking(ptz);
    addPtzStatus(ptz);
}

} // namespace kxcam
