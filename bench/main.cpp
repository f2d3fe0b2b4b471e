// Measures the library: as Google Benchmark prints it, or with --table as the table of bench/report.sh.
#include <algorithm>
#include <string_view>

#include "bench/measure.h"

int main(int argc, char** argv) {
    char** const end = std::remove_if(argv, argv + argc, [](std::string_view word) { return word == "--table"; });
    const bool asTable = end != argv + argc;
    argc = static_cast<int>(end - argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    if (asTable) return Quill::Bench::PrintTable();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
