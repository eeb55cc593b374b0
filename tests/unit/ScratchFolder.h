#pragma once
// Scratch folders for the tests of folders, prompts and settings: one tree
// per test process, so that parallel runs of the suite never meet, removed
// and made afresh for each test that asks.

#include "foundation/Folders.h"
#include "foundation/MString.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#ifdef _WIN32
#include <process.h>
#else
#include <unistd.h>
#endif

namespace scratch {

namespace fs = std::filesystem;

inline fs::path Root() {
#ifdef _WIN32
    int pid = _getpid();
#else
    int pid = int(getpid());
#endif
    return fs::temp_directory_path() / ("quillmere-unit-" + std::to_string(pid));
}

// An empty folder of the given name below the process's root.
inline fs::path Fresh(const std::string& name) {
    fs::path folder = Root() / name;
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    fs::create_directories(folder);
    return folder;
}

// Removes a folder made by Fresh, and the process's root once it is empty.
inline void Remove(const fs::path& folder) {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    fs::remove(Root(), ignored);
}

// The path as the system's string, with the build's own separator.
inline MString Text(const fs::path& path) {
    return NormalisePath(MString(path.u16string().c_str()));
}

inline fs::path Path(const MString& text) {
    return fs::path(std::u16string(text.Chars()));
}

inline void WriteBytes(const fs::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), std::streamsize(bytes.size()));
}

inline std::string ReadBytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline std::u16string U16(const MString& text) {
    return std::u16string(text.Chars());
}

} // namespace scratch
