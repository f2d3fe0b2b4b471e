// Feeds files, and the files of folders, to a fuzz target: how the inputs that were kept are tried without a fuzzer.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

int g_inputs = 0;

void Replay(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(file), {}};
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);  // the last name that is seen is that of the input that ended the run
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
    ++g_inputs;
}

}  // namespace

int main(int count, char** arguments) {
    for (int i = 1; i < count; ++i) {
        if (!std::filesystem::is_directory(arguments[i])) {
            Replay(arguments[i]);
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i]))
            Replay(entry.path());
    }
    return g_inputs > 0 ? 0 : 1;
}
