#pragma once
// Scratch folders of the tests: one tree per test process, named with the
// process id, so that test processes running at once (ctest -j, two build
// folders) never meet in the temporary folder. A test either asks for a
// folder made afresh (Fresh, removed again by Remove) or for a folder that
// lasts while the process runs (Kept); the whole tree goes when the test
// program ends.

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

// Removes the process's tree at the end of the test program, whatever its
// tests left in it.
struct RootRemover {
    ~RootRemover() {
        std::error_code ignored;
        fs::remove_all(Root(), ignored);
    }
};

inline void RemoveRootAtExit() {
    static RootRemover remover; // one for the program: the function is inline
    (void)remover;
}

// An empty folder of the given name below the process's root.
inline fs::path Fresh(const std::string& name) {
    RemoveRootAtExit();
    fs::path folder = Root() / name;
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    fs::create_directories(folder);
    return folder;
}

// A folder of the given name below the process's root, made if missing and
// kept, with what it holds, until the test program ends.
inline fs::path Kept(const std::string& name) {
    RemoveRootAtExit();
    fs::path folder = Root() / name;
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
