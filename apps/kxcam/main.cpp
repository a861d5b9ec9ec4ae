// kxcam: a command-line console for network cameras, made of the public calls of KxIpcSDK.
#include <exception>

#include "Interruption.h"
#include "verbs/CommandLine.h"

namespace
{

using namespace kxcam;

ExitCode run(int argc, char** argv)
{
    Console console;
    CommandLine line;
    auto code = parse(argc, argv, line, console);
    if (!code) {
        if (!line.verbose)
            console.hideDiagnostics();
        code = line.work(line, console);
    }
    console.finish();
    return *code;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return static_cast<int>(run(argc, argv));
    } catch (const Interruption& interruption) {
        remark(interruption.what());
        Interruption::endBySignal();
        return static_cast<int>(interruption.code());
    } catch (const Failure& failure) {
        remark(failure.what());
        return static_cast<int>(failure.code());
    } catch (const std::exception& error) {
        remark(error.what());
        return static_cast<int>(ExitCode::ThisComputer);
    }
}
