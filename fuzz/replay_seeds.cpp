// Gives the files of the directories named to a fuzz target, one after the other: for compilers without libFuzzer.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int count, char** arguments) {
    std::vector<std::filesystem::path> seeds;
    for (int k = 1; k < count; ++k) {
        for (const auto& x : std::filesystem::directory_iterator(arguments[k])) {
            seeds.push_back(x.path());
        }
    }
    std::ranges::sort(seeds);
    for (const auto& seed : seeds) {
        std::printf("%s\n", seed.c_str());
        std::fflush(stdout);  // the last one named is the one that failed
        std::ifstream file(seed, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    return seeds.empty() ? 1 : 0;
}
