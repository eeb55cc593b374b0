#pragma once
// The corpus of foreign and broken files in tests/data/foreign, made by
// tests/data/make_foreign_files.py. Only whole files are kept there; the
// broken copies are made here by fixed rules: the cut at place k of 10
// keeps the first k * size / 11 bytes, and the flipped copy inverts every
// byte at an offset size * j / 13 for j = 1 to 12.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace foreign {

namespace fs = std::filesystem;

inline fs::path Folder() {
    std::string root = TEST_SOURCE_DIR;
#ifdef _WIN32
    // Wine shows the machine's root as drive Z.
    if (!root.empty() && root[0] == '/') root = "Z:" + root;
#endif
    return fs::path(root) / "tests" / "data" / "foreign";
}

inline std::string Bytes(const std::string& name) {
    std::ifstream in(Folder() / name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

struct BrokenCopy {
    std::string Name;  // the whole file's name with ".cutK" or ".flip" before its extension
    std::string Bytes; // what is left of the file, or the file with its bytes flipped
};

inline std::vector<BrokenCopy> BrokenCopies(const std::string& name) {
    std::string whole = Bytes(name);
    size_t dot = name.rfind('.');
    std::string stem = name.substr(0, dot), extension = name.substr(dot);
    std::vector<BrokenCopy> copies;
    size_t size = whole.size();
    for (size_t k = 1; k <= 10; k++)
        copies.push_back(
            {stem + ".cut" + std::to_string(k) + extension, whole.substr(0, k * size / 11)});
    std::string flipped = whole;
    for (size_t j = 1; j <= 12; j++)
        flipped[size * j / 13] = char(~uint8_t(flipped[size * j / 13]));
    copies.push_back({stem + ".flip" + extension, flipped});
    return copies;
}

// Every file of the corpus whose name ends in the extension.
inline std::vector<std::string> Names(const std::string& extension) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(Folder())) {
        std::string name = entry.path().filename().string();
        if (name.size() > extension.size() &&
            name.compare(name.size() - extension.size(), extension.size(), extension) == 0)
            names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace foreign
