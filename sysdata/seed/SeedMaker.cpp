// Makes the seed database from its script: SeedMaker SCRIPT DATABASE. The file appears whole or not at all.
#include <SQLiteCpp/Database.h>

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

namespace {

void MakeSeed(const std::filesystem::path& script, const std::filesystem::path& target) {
    std::ifstream file(script, std::ios::binary);
    if (!file)
        throw std::runtime_error("can't read " + script.string());
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const std::filesystem::path draft = target.string() + ".new";
    std::filesystem::create_directories(target.parent_path());
    std::filesystem::remove(draft);
    {
        SQLite::Database database(draft.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        database.exec(text);
    }
    std::filesystem::rename(draft, target);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: " << argv[0] << " SCRIPT DATABASE\n";
        return 2;
    }
    try {
        MakeSeed(argv[1], argv[2]);
    } catch (const std::exception& failure) {
        std::cerr << argv[0] << ": " << failure.what() << '\n';
        return 1;
    }
    return 0;
}
