// What the benchmarks share: clocks, and the rows of the table that bench/report.sh prints.
#pragma once

#include <string>

#include <benchmark/benchmark.h>
#include <time.h>

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else
#define CALLGRIND_TOGGLE_COLLECT static_cast<void>(0)
#endif

namespace Quill::Bench {

// Seconds that the work takes: by default this thread's own time, which other work on the machine disturbs least.
template <class Work>
double Seconds(Work&& work, clockid_t clock = CLOCK_THREAD_CPUTIME_ID) {
    const auto now = [clock] {
        timespec time{};
        clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    };
    const double begin = now();
    work();
    return now() - begin;
}

// The same for work of the library. Its instructions are those that bench/instructions.sh counts.
template <class Work>
double OurSeconds(Work&& work, clockid_t clock = CLOCK_THREAD_CPUTIME_ID) {
    CALLGRIND_TOGGLE_COLLECT;
    const double seconds = Seconds(work, clock);
    CALLGRIND_TOGGLE_COLLECT;
    return seconds;
}

// A row of the table. Rows of one `work` with different sizes show how its time grows.
struct Row {
    std::string work;
    std::string against = {};  // what it is measured against in the same run; empty for nothing
    double size = 0;           // of what is worked on; 0 when the time does not depend on it
    double operations = 1;     // how many times the work was done in `ours`, and the other in `yardstick`
    double ours = 0;           // seconds
    double yardstick = 0;      // seconds
    double limit = 0;          // for ours / yardstick; 0 for none
    std::string note = {};
};

// Makes the benchmark's run that row.
void Tell(benchmark::State& state, const Row& row);

// Runs the benchmarks that the command line chose and prints their rows as a table in Markdown. Gives 1 when a limit is
// missed or a benchmark failed, else 0.
int PrintTable();

}  // namespace Quill::Bench
