// kxcam ptz move|zoom|focus|iris|stop|patrol|light|wiper: commands that are a word.
#include <algorithm>
#include <chrono>
#include <iterator>
#include <memory>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "Interruption.h"
#include "Json.h"
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
    Interruption interruption;
    if (!sendOrder(session, options.order)) {
        const Failure why = failureOf(options, line);
        sendOrder(session, stopOf(options.order));
        throw why;
    }
    interruption.pause(
        std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(options.seconds)));
    requireStop(session, stopOf(options.order), line);
    if (interruption.hasCome())
        remark("interrupted; the camera is stopped");
    interruption.letThrough();
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
ExitCode run(Options options, const CommandLine& line, Console& console)
{
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

/// A verb of the table, with its words.
struct Verb
{
    CLI::App* app;
    CLI::Option* word; // null: it has none
    std::shared_ptr<Options> options;
};

Verb addVerb(CLI::App& ptz, const char* name, const char* help, CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    options->verb = name;
    CLI::App* app = ptz.add_subcommand(name, help);
    app->callback([options, &line] {
        line.verb = [options, &line](Console& console) { return run(*options, line, console); };
    });
    const std::vector<std::string> choice = wordsOf(name);
    CLI::Option* word = nullptr;
    if (!choice.empty())
        word = app->add_option("WORD", options->word, CLI::detail::join(choice, ", "))
                   ->type_name("")
                   ->required();
    return {app, word, options};
}

void checkWord(const Verb& verb)
{
    verb.word->check(CLI::IsMember(wordsOf(verb.options->verb)).description(""));
}

void addSpeed(const Verb& verb)
{
    verb.app->add_option("--speed", verb.options->order.speed, "How fast, on the camera's own scale")
        ->type_name("N")
        ->check(CLI::NonNegativeNumber.description(""));
}

void addDuration(const Verb& verb)
{
    verb.app->add_option("--for", verb.options->seconds, "Stop after so long, also when kxcam is interrupted")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.01, 86'400.0).description(""));
}

} // namespace

void addPtzMoves(CLI::App& ptz, CommandLine& line)
{
    const Verb move = addVerb(ptz, "move", "Turn the camera", line);
    const Verb stop = addVerb(ptz, "stop", "End any movement", line);
    const Verb zoom = addVerb(ptz, "zoom", "Zoom, or go to a position", line);
    const Verb focus = addVerb(ptz, "focus", "Set the focus", line);
    const Verb iris = addVerb(ptz, "iris", "Set the iris", line);
    addVerb(ptz, "patrol", "Go from preset to preset until stopped", line);
    checkWord(addVerb(ptz, "light", "Switch the light on or off", line));
    checkWord(addVerb(ptz, "wiper", "Switch the wiper on or off", line));
    for (const Verb& verb : {move, focus, iris})
        checkWord(verb);
    zoom.word->check((CLI::IsMember(wordsOf("zoom")) | CLI::Range(0, 100)).description(""));
    zoom.word->description("in, out, or a position from 0 to 100");
    for (const Verb& verb : {move, stop, zoom})
        addView(*verb.app, verb.options->order);
    for (const Verb& verb : {move, zoom, iris})
        addSpeed(verb);
    for (const Verb& verb : {move, zoom, focus, iris})
        addDuration(verb);
}

} // namespace kxcam
