// Gives the files of the directories named to a fuzz target, one after the other: for compilers without libFuzzer.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dados, std::size_t tamanho);

int main(int quantos, char** argumentos) {
    std::vector<std::filesystem::path> sementes;
    for (int k = 1; k < quantos; ++k) {
        for (const auto& x : std::filesystem::directory_iterator(argumentos[k])) {
            sementes.push_back(x.path());
        }
    }
    std::ranges::sort(sementes);
    for (const auto& semente : sementes) {
        std::printf("%s\n", semente.c_str());
        std::fflush(stdout);  // the last one named is the one that failed
        std::ifstream arquivo(semente, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(arquivo), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    return sementes.empty() ? 1 : 0;
}
