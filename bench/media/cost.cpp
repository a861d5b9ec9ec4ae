// What a frame costs: a long and a short run, whose difference leaves out what it takes to start and end.
#include "Modes.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <limits>
#include <map>
#include <sstream>
#include <stdexcept>

#include "Contenders.h"
#include "Scratch.h"

namespace
{

constexpr unsigned shortRun = 25;
constexpr double cameraRate = 25; // frames a second
constexpr std::size_t crowds[] = {1, 4, 8};

/// The least of all repetitions, see Best.h.
struct Least
{
    Usage of{std::numeric_limits<double>::max(), std::numeric_limits<double>::max(),
             std::numeric_limits<double>::max()};

    void take(const Usage& usage)
    {
        of.cpu = std::min(of.cpu, usage.cpu);
        of.time = std::min(of.time, usage.time);
        of.memory = std::min(of.memory, usage.memory);
    }
};

struct Runs
{
    Least longOnes;
    Least shortOnes;
};

void tell(const std::string& what, const char* contender, std::size_t streams, double value)
{
    std::fprintf(stderr, "%s/%s/%zu %.0f\n", what.c_str(), contender, streams, value);
}

void tellCost(const std::string& task, const char* contender, std::size_t streams, unsigned frames,
              const Runs& runs)
{
    const Usage& all = runs.longOnes.of;
    const Usage& start = runs.shortOnes.of;
    const double more = frames - shortRun;
    const double pace = more / (all.time - start.time);
    if (!(pace > 0 && pace < 2 * cameraRate))
        throw std::runtime_error(std::string(contender) + " does not wait for the frames");
    tell("frame_cpu/" + task, contender, streams,
         (all.cpu - start.cpu) / (more * static_cast<double>(streams)) * 1e9);
    tell("run_cpu/" + task, contender, streams, all.cpu * 1e9);
    tell("pace/" + task, contender, streams, pace * 1000);
    tell("memory/" + task, contender, streams, all.memory);
}

/// Contenders take turns, so that what else the machine does hits them alike.
void compare(const std::string& task, const std::vector<Contender>& contenders, EndpointSpan cameras,
             unsigned frames, unsigned repetitions)
{
    std::map<std::string, Runs> runs;
    for (unsigned i = 0; i < repetitions; ++i) {
        for (const Contender& contender : contenders) {
            Runs& its = runs[contender.name];
            its.shortOnes.take(run(contender.commands(shortRun, cameras)));
            its.longOnes.take(run(contender.commands(frames, cameras)));
        }
    }
    for (const Contender& contender : contenders)
        tellCost(task, contender.name, cameras.size(), frames, runs[contender.name]);
}

void compareAll(const std::string& task, const std::vector<Contender>& contenders, EndpointSpan cameras,
                unsigned frames, unsigned repetitions)
{
    if (frames <= shortRun || repetitions == 0)
        throw std::runtime_error("too few frames or repetitions");
    for (const std::size_t streams : crowds)
        compare(task, contenders, cameras.first(streams), frames, repetitions);
}

/// Of strace's summary, whose last line has the sum.
double countSystemCalls(Command command, const std::string& summary)
{
    const Command tracer{"strace", "-f", "-c", "-o", summary};
    command.insert(command.begin(), tracer.begin(), tracer.end());
    run({command});
    std::ifstream file(summary);
    std::string last;
    for (std::string line; std::getline(file, line);)
        last = line;
    double percent = 0, seconds = 0, each = 0, calls = 0;
    if (!(std::istringstream(last) >> percent >> seconds >> each >> calls))
        throw std::runtime_error("strace tells no number of calls");
    return calls;
}

} // namespace

void measureDecoding(EndpointSpan cameras, unsigned frames, unsigned repetitions)
{
    compareAll("decode", decoders(), cameras, frames, repetitions);
}

void measureRecording(EndpointSpan cameras, unsigned frames, unsigned repetitions)
{
    const Scratch scratch;
    compareAll("record", recorders(scratch.path()), cameras, frames, repetitions);
}

void measureSystemCalls(EndpointSpan cameras, unsigned frames)
{
    const Scratch scratch;
    for (const char* contender : {"sdk", "floor"}) {
        const auto count = [&](unsigned number) {
            return countSystemCalls(client(std::string("watch-") + contender, number, cameras.first(1)),
                                    scratch.path() + "/calls");
        };
        const double calls = count(frames) - count(shortRun);
        std::fprintf(stderr, "calls/%s %.1f\n", contender, calls / (frames - shortRun));
    }
}
