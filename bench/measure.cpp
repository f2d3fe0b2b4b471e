#include "bench/measure.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <string_view>

#include <fmt/format.h>

namespace Quill::Bench {

namespace {

constexpr char Separator[] = " | ";  // between work, what it is measured against, and note in a run's label

// Halfway to quadratic: between two sizes caches may overflow, which costs once.
constexpr double GrowthLimit = 1.5;

std::string Duration(double seconds) {
    struct Unit {
        const char* name;
        double seconds;
    };
    constexpr Unit Units[] = {{"s", 1}, {"ms", 1e-3}, {"µs", 1e-6}};
    for (const Unit& unit : Units)
        if (seconds >= unit.seconds) return fmt::format("{:.3g} {}", seconds / unit.seconds, unit.name);
    return fmt::format("{:.3g} ns", seconds * 1e9);
}

class TableReporter final : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override {
        std::puts("| Work | Size | Ours | Measured against | It takes | Ratio | Limit | Growth |");
        std::puts("| --- | ---: | ---: | --- | ---: | ---: | ---: | ---: |");
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration) Report(run);
        std::fflush(stdout);
    }

    bool failed = false;

private:
    void Report(const Run& run) {
        if (run.error_occurred) {
            failed = true;
            fmt::print("| {} | | | **{}** | | | | |\n", run.benchmark_name(), run.error_message);
            return;
        }
        const auto counter = [&](const char* name) {
            const auto found = run.counters.find(name);
            return found == run.counters.end() ? 0.0 : found->second.value;
        };
        std::string_view rest = run.report_label;
        const auto next = [&rest] {
            const std::string_view part = rest.substr(0, rest.find(Separator));
            rest.remove_prefix(std::min(rest.size(), part.size() + sizeof(Separator) - 1));
            return std::string(part);
        };
        const std::string work = next(), against = next(), note = next();
        const double size = counter("size"), ours = counter("ours"), limit = counter("limit"), ratio = counter("ratio");
        const std::string growth = Growth(work, size, ours);
        const bool missed = limit > 0 && ratio > limit;
        failed = failed || missed;
        std::string held = " |  |  |  | ";
        if (ratio > 0)
            held = fmt::format("{} | {} | {:.2f}{} | {} | ", against, Duration(counter("yardstick")), ratio,
                               missed ? " **missed**" : "", limit > 0 ? fmt::format("{:.4g}", limit) : "");
        fmt::print("| {}{}{} | {} | {} | {}{} |\n", work, note.empty() ? "" : "; ", note,
                   size > 0 ? fmt::format("{:.0f}", size) : "", Duration(ours), held, growth);
    }

    // The power of the size by which the time grew since the smallest size.
    std::string Growth(const std::string& work, double size, double ours) {
        if (size <= 0) return "";
        const auto [first, isFirst] = m_firsts.try_emplace(work, First{size, ours});
        if (isFirst || first->second.size >= size || first->second.ours <= 0) return "";
        const double growth = std::log(ours / first->second.ours) / std::log(size / first->second.size);
        failed = failed || growth > GrowthLimit;
        return fmt::format("{:.2f}{}", growth, growth > GrowthLimit ? " **too fast**" : "");
    }

    struct First {
        double size;
        double ours;
    };
    std::map<std::string, First> m_firsts;
};

}  // namespace

void Tell(benchmark::State& state, const Row& row) {
    state.SetLabel(row.work + Separator + row.against + Separator + row.note);
    state.counters["size"] = row.size;
    state.counters["operations"] = row.operations;
    state.counters["ours"] = row.ours / row.operations;
    if (row.yardstick <= 0) return;
    state.counters["yardstick"] = row.yardstick / row.operations;
    state.counters["ratio"] = row.ours / row.yardstick;
    state.counters["limit"] = row.limit;
}

int PrintTable() {
    TableReporter table;
    benchmark::RunSpecifiedBenchmarks(&table);
    return table.failed ? 1 : 0;
}

}  // namespace Quill::Bench
