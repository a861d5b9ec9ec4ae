// kxcam ptz move|zoom|focus|iris|stop|patrol|light|wiper: commands that are a word.
#include <algorithm>
#include <chrono>
#include <iterator>

#include "Interruption.h"
#include "verbs/Ptz.h"

namespace kxcam
{
namespace
{

struct Word
{
    std::string_view verb;
    std::string_view word; // empty: the verb has none
    KxPtzCommand code;
    bool goesOn = false; // until the camera is stopped
};

constexpr Word words[] = {
    {"move", "up", KX_PTZ_UP, true},
    {"move", "down", KX_PTZ_DOWN, true},
    {"move", "left", KX_PTZ_LEFT, true},
    {"move", "right", KX_PTZ_RIGHT, true},
    {"move", "up-left", KX_PTZ_UP_LEFT, true},
    {"move", "up-right", KX_PTZ_UP_RIGHT, true},
    {"move", "down-left", KX_PTZ_DOWN_LEFT, true},
    {"move", "down-right", KX_PTZ_DOWN_RIGHT, true},
    {"move", "scan", KX_PTZ_AUTO_SCAN, true},
    {"zoom", "in", KX_PTZ_ZOOM_IN, true},
    {"zoom", "out", KX_PTZ_ZOOM_OUT, true},
    {"focus", "near", KX_PTZ_FOCUS_NEAR, true},
    {"focus", "far", KX_PTZ_FOCUS_FAR, true},
    {"focus", "once", KX_PTZ_AUTO_FOCUS_ONCE},
    {"focus", "auto", KX_PTZ_AUTO_FOCUS},
    {"focus", "reset", KX_PTZ_RESET_FOCUS},
    {"iris", "open", KX_PTZ_IRIS_OPEN, true},
    {"iris", "close", KX_PTZ_IRIS_CLOSE, true},
    {"iris", "mode0", KX_PTZ_IRIS_MODE_0},
    {"iris", "mode1", KX_PTZ_IRIS_MODE_1},
    {"light", "on", KX_PTZ_LIGHT_ON},
    {"light", "off", KX_PTZ_LIGHT_OFF},
    {"wiper", "on", KX_PTZ_WIPER_ON},
    {"wiper", "off", KX_PTZ_WIPER_OFF},
    {"patrol", "", KX_PTZ_PATROL},
    {"stop", "", KX_PTZ_STOP},
};

struct Options
{
    std::string verb;
    std::string word;
    double seconds = 0; // 0: not given
    PtzOrder order;

    std::string what() const { return verb + (word.empty() ? "" : " " + word); }
};

const Word* findWord(const Options& options)
{
    const auto* found = std::find_if(std::begin(words), std::end(words), [&](const Word& candidate) {
        return candidate.verb == options.verb && candidate.word == options.word;
    });
    return found == std::end(words) ? nullptr : found;
}

Failure failureOf(const Options& options, const CommandLine& line)
{
    return sdkFailure("'" + options.what() + "' at " + line.target.address());
}

PtzOrder stopOf(const PtzOrder& order)
{
    PtzOrder stop;
    stop.view = order.view;
    return stop;
}

/// A camera that did not hear it moves on, so it is told more than once if need be.
void requireStop(const Session& session, const PtzOrder& stop, const CommandLine& line)
{
    constexpr int attempts = 3;
    for (int i = 0; i < attempts; ++i)
        if (sendOrder(session, stop))
            return;
    const std::string view = stop.view < 0 ? "" : " --view " + std::to_string(stop.view);
    remark("the camera may still be moving! Try: " + line.target.commandLine() + " ptz stop" + view);
    throw sdkFailure("stopping " + line.target.address());
}

/// A camera that did not answer the order may follow it all the same, and is stopped, too.
void moveAndStop(const Session& session, const Options& options, const CommandLine& line)
{
    SignalHold signals(SignalHold::Held);
    if (!sendOrder(session, options.order)) {
        const Failure why = failureOf(options, line);
        sendOrder(session, stopOf(options.order));
        throw why;
    }
    signals.pause(
        std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(options.seconds)));
    requireStop(session, stopOf(options.order), line);
    if (signals.hasCome())
        remark("interrupted; the camera is stopped");
    signals.letThrough();
}

void send(const Session& session, const Options& options, const CommandLine& line)
{
    if (options.seconds > 0)
        moveAndStop(session, options, line);
    else if (options.order.code == KX_PTZ_STOP)
        requireStop(session, options.order, line);
    else if (!sendOrder(session, options.order))
        throw failureOf(options, line);
}

void zoomTo(const Session& session, const Options& options, const CommandLine& line)
{
    if (Kx_Ipc_SetPTZZoom(session.userId(), std::stoi(options.word, nullptr, 0)) != 0)
        throw failureOf(options, line);
}

/// A word that is not in the table is a zoom position.
ExitCode run(const Options& given, const CommandLine& line, Console& console)
{
    Options options = given;
    const Word* word = findWord(options);
    if (options.seconds > 0 && (word == nullptr || !word->goesOn))
        throw Failure(ExitCode::Usage, "'" + options.what() + "' ends by itself: leave --for out");
    const Session session(line.target);
    if (word == nullptr) {
        zoomTo(session, options, line);
    } else {
        options.order.code = word->code;
        send(session, options, line);
    }
    reportDone(options.what() + (options.seconds > 0 ? ", stopped" : ""), line.json, console);
    return ExitCode::Ok;
}

std::vector<std::string> wordsOf(const std::string& verb)
{
    std::vector<std::string> found;
    for (const Word& candidate : words)
        if (candidate.verb == verb && !candidate.word.empty())
            found.emplace_back(candidate.word);
    return found;
}

/// What a verb of the table can be given besides its word.
enum Takes : unsigned
{
    Nothing = 0,
    View = 1,
    Speed = 2,
    Duration = 4
};

void addOptions(const Verb& verb, unsigned takes, Options& options)
{
    if ((takes & View) != 0)
        addView(verb, options.order);
    if ((takes & Speed) != 0)
        verb.option("--speed", "N", &options.order.speed, "How fast, on the camera's own scale")
            .notNegative();
    if ((takes & Duration) != 0)
        verb.option("--for", "SECONDS", &options.seconds,
                    "Stop after so long, also when kxcam is interrupted")
            .within(0.01, 86'400.0);
}

void addWord(const Verb& verb, Options& options)
{
    const std::vector<std::string> choice = wordsOf(options.verb);
    if (options.verb == "zoom")
        verb.argument("WORD", &options.word, "in, out, or a position from 0 to 100")
            .required()
            .oneOfOrWithin(choice, 0, 100);
    else if (!choice.empty())
        verb.argument("WORD", &options.word, joined(choice, ", ")).required().oneOf(choice);
}

void addMove(const Verb& ptz, const char* name, const char* help, unsigned takes)
{
    const auto options = std::make_shared<Options>();
    options->verb = name;
    const Verb verb = ptz.add(name, help).does(run, options);
    addWord(verb, *options);
    addOptions(verb, takes, *options);
}

} // namespace

void addPtzMoves(const Verb& ptz)
{
    addMove(ptz, "move", "Turn the camera", View | Speed | Duration);
    addMove(ptz, "stop", "End any movement", View);
    addMove(ptz, "zoom", "Zoom, or go to a position", View | Speed | Duration);
    addMove(ptz, "focus", "Set the focus", Duration);
    addMove(ptz, "iris", "Set the iris", Speed | Duration);
    addMove(ptz, "patrol", "Go from preset to preset until stopped", Nothing);
    addMove(ptz, "light", "Switch the light on or off", Nothing);
    addMove(ptz, "wiper", "Switch the wiper on or off", Nothing);
}

} // namespace kxcam
