// From schematic text to numbered pages: over 50 MB of text a second on one core, in less than ten times its memory.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <malloc.h>

#include "bench/measure.h"
#include "designdb/database.h"
#include "interchange/kicad_import.h"
#include "pages/page_traverser.h"

namespace {

namespace fs = std::filesystem;
using namespace Quill;

constexpr double LimitBytes = 50e6;  // a second
constexpr double LimitMemory = 10;   // of the process so far, in sizes of the text, so the largest run says most

fs::path DesignsFolder() {
    const char* const chosen = std::getenv("QUILL_DESIGNS");
    return chosen != nullptr ? chosen : QUILL_DESIGNS_FOLDER;
}

std::string TextOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::size_t BytesOfSchematics(const fs::path& folder) {
    std::size_t bytes = 0;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.path().extension() == ".kicad_sch") bytes += entry.file_size();
    return bytes;
}

struct Design {
    fs::path root;
    std::size_t bytes = 0;
};

// The design with the most text; its root is the schematic beside which a project file stands.
Design LargestDesign() {
    Design largest;
    std::error_code none;
    for (const auto& folder : fs::directory_iterator(DesignsFolder(), none)) {
        if (!folder.is_directory()) continue;
        const std::size_t bytes = BytesOfSchematics(folder);
        if (bytes <= largest.bytes) continue;
        for (const auto& entry : fs::directory_iterator(folder)) {
            fs::path root = entry.path();
            if (root.extension() != ".kicad_pro" || !fs::exists(root.replace_extension(".kicad_sch"))) continue;
            largest = {root, bytes};
        }
    }
    return largest;
}

// Ten copies of the design below one root, each with the places of its own hierarchy.
Design TenTimesLarger(const Design& design) {
    const fs::path folder = fs::temp_directory_path() / "quill_bench_schematics";
    fs::remove_all(folder);
    const std::string rootText = TextOf(design.root);
    std::string uuid = rootText.substr(rootText.find("(uuid ") + 6, 40);
    uuid.erase(std::remove(uuid.begin(), uuid.end(), '"'), uuid.end());
    uuid.resize(36);
    const std::string name = design.root.filename().string();
    std::string sheets;
    for (int copy = 0; copy < 10; ++copy) {
        const std::string number = std::to_string(copy);
        fs::create_directories(folder / number);
        for (const auto& entry : fs::directory_iterator(design.root.parent_path())) {
            if (entry.path().extension() != ".kicad_sch") continue;
            std::string text = TextOf(entry.path());
            const std::string from = "\"/" + uuid;
            const std::string to = "\"/top/" + number;
            for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
                text.replace(at, from.size(), to);
            std::ofstream(folder / number / entry.path().filename(), std::ios::binary) << text;
        }
        sheets += "(sheet (at 1 1) (size 9 9) (uuid \"" + number + "\") (property \"Sheetname\" \"" + number +
                  "\") (property \"Sheetfile\" \"" + number + "/" + name + "\"))\n";
    }
    std::ofstream(folder / name) << "(kicad_sch (version 20231120) (uuid \"top\")\n" << sheets << ")\n";
    return {folder / name, BytesOfSchematics(folder)};
}

std::size_t ResidentBytes() {
    std::ifstream file("/proc/self/statm");
    std::size_t pages = 0;
    file >> pages >> pages;
    return pages * 4096;
}

// The most memory that was resident since ForgetPeak.
std::size_t PeakBytes() {
    std::ifstream file("/proc/self/status");
    std::string word;
    while (file >> word)
        if (std::size_t kilobytes = 0; word == "VmHWM:" && file >> kilobytes) return kilobytes * 1024;
    return 0;
}
void ForgetPeak() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5;
}

// A fault's text; "" when the pages were numbered.
std::string NumberPages(const fs::path& root, unsigned& pages) {
    Orin::DesignDb::Database database;
    if (!Orin::DesignDb::Database::Create(database, "bench")) return "no database";
    const std::unique_ptr<Orin::OrinPI> client = database.Connect("bench");
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
    if (!client->GetSnapshotByName(snapshot, Orin::DesignDb::WorkingSnapshot)) return "no snapshot";
    Orin::String name;
    std::vector<Interchange::KicadMessage> warnings;
    if (const auto fault = Interchange::ImportKicad(root, {}, snapshot, name, warnings)) return fault->Message();
    PageTraverser traverser(snapshot, std::string(name.View()), EViewMode::Logical);
    traverser.setAlgorithm(EAlgorithm::DepthFirst, ECompAlgorithm::Default);
    traverser.update();
    pages = traverser.pagesCount();
    return "";
}

void ImportSchematics(benchmark::State& state, const Design& design) {
    if (design.root.empty()) return state.SkipWithError("no designs; set QUILL_DESIGNS");
    unsigned pages = 0;
    ForgetPeak();
    const std::size_t before = ResidentBytes();
    double ours = 0;
    for (auto _ : state) {
        std::string fault;
        const double own = Bench::OurSeconds([&] { fault = NumberPages(design.root, pages); });
        if (!fault.empty()) return state.SkipWithError(fault.c_str());
        ours += own;
        state.SetIterationTime(own);
    }
    const auto bytes = static_cast<double>(design.bytes);
    const double memory = static_cast<double>(PeakBytes() - before) / bytes;
    if (memory > LimitMemory) return state.SkipWithError("more than ten times the memory of the text");
    const auto imports = static_cast<double>(state.iterations());
    Bench::Tell(state, {.work = "schematics to numbered pages, by bytes of their text",
                        .against = "50 MB a second",
                        .size = bytes,
                        .operations = imports,
                        .ours = ours,
                        .yardstick = imports * bytes / LimitBytes,
                        .limit = 1,
                        .note = fmt::format("{} pages, {:.0f} MB/s, memory {:.1f} times the text", pages,
                                            imports * bytes / ours / 1e6, memory)});
}

void ImportLargestDesign(benchmark::State& state) {
    ImportSchematics(state, LargestDesign());
}
BENCHMARK(ImportLargestDesign)->UseManualTime()->Unit(benchmark::kMillisecond);

void ImportTenTimesTheLargestDesign(benchmark::State& state) {
    const Design largest = LargestDesign();
    ImportSchematics(state, largest.root.empty() ? largest : TenTimesLarger(largest));
}
BENCHMARK(ImportTenTimesTheLargestDesign)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
