// kx_bench: times by Google Benchmark, with its options; or
//   kx_bench --instructions COUNT   under callgrind, see countInstructions
//   kx_bench --heap COUNT           see measureHeapGrowth
//   kx_bench --upload-heap          see measureUploadHeap
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string_view>

#include <benchmark/benchmark.h>

#include "Clients.h"
#include "Modes.h"

namespace
{

int time(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

int run(int argc, char** argv)
{
    if (argc == 2 && argv[1] == std::string_view("--upload-heap"))
        return measureUploadHeap();
    const std::string_view mode = argc == 3 ? argv[1] : "";
    if (mode == "--heap")
        return measureHeapGrowth(static_cast<unsigned>(std::atoi(argv[2])));
    curl_global_init(CURL_GLOBAL_DEFAULT);
    requireSameWork();
    if (mode == "--instructions")
        return countInstructions(static_cast<unsigned>(std::atoi(argv[2])));
    return time(argc, argv);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "kx_bench: " << error.what() << '\n';
        return 1;
    }
}
