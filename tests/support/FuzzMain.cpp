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
    const auto at = [&](std::size_t nEnd) { return nEnd == 0 ? 0 : random() % nEnd; };
    for (auto nTimes = 1 + random() % 8; nTimes > 0; --nTimes) {
        switch (random() % 5) {
        case 0:
            if (!bytes.empty())
                bytes[at(bytes.size())] ^= static_cast<std::uint8_t>(1U << (random() % 8));
            break;
        case 1:
            bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at(bytes.size() + 1)),
                         static_cast<std::uint8_t>(random()));
            break;
        case 2:
            if (!bytes.empty())
                bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(at(bytes.size())));
            break;
        case 3:
            bytes.resize(at(bytes.size() + 1));
            break;
        default: {
            const Bytes copy(bytes.begin() + static_cast<std::ptrdiff_t>(at(bytes.size() + 1)), bytes.end());
            bytes.insert(bytes.end(), copy.begin(), copy.end());
            break;
        }
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
