// Drives a fuzz entry point without a coverage engine: every seed as it stands, cut at every tenth, with
// bytes flipped, doubled and taken out, and inputs of plain noise. The run is the same each time. Usage:
// program COUNT SEED_FOLDER
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize);

namespace {

using Bytes = std::vector<std::uint8_t>;

long g_nInputs = 0;

void Run(const Bytes& bytes) {
    ++g_nInputs;
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

Bytes Damage(Bytes bytes, std::mt19937& random) {
    for (auto nTimes = 1 + random() % 8; nTimes > 0; --nTimes) {
        const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(random() % (bytes.size() + 1));
        const auto nKind = random() % 5;
        if (nKind == 0) {
            bytes.insert(at, static_cast<std::uint8_t>(random()));
        } else if (nKind == 1) {
            const Bytes tail(at, bytes.end());
            bytes.insert(bytes.end(), tail.begin(), tail.end());
        } else if (nKind == 2) {
            bytes.erase(at, bytes.end());
        } else if (at != bytes.end()) {
            if (nKind == 3)
                bytes.erase(at);
            else
                *at ^= static_cast<std::uint8_t>(1U << (random() % 8));
        }
    }
    return bytes;
}

} // namespace

int main(int argc, char** argv) {
    const long nCount = argc > 1 ? std::atol(argv[1]) : 1000;
    std::vector<Bytes> seeds{Bytes{}};
    if (argc > 2 && std::filesystem::is_directory(argv[2])) {
        for (const auto& entry : std::filesystem::directory_iterator(argv[2])) {
            std::ifstream file(entry.path(), std::ios::binary);
            seeds.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
        }
    }
    for (const auto& seed : seeds) {
        Run(seed);
        for (std::size_t nTenth = 0; nTenth < 10; ++nTenth)
            Run(Bytes(seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(seed.size() * nTenth / 10)));
    }
    std::mt19937 random(20071113);
    while (g_nInputs < nCount) {
        Bytes bytes = seeds[random() % seeds.size()];
        if (random() % 16 == 0) {
            bytes.resize(random() % 4096);
            for (auto& byte : bytes)
                byte = static_cast<std::uint8_t>(random());
        }
        Run(Damage(std::move(bytes), random));
    }
    std::printf("%ld inputs\n", g_nInputs);
    return 0;
}
