#pragma once
// The ground of the tests that save shows: a fresh sketch, the test's own
// settings with no template ticked, a scratch program folder (the test fills
// it with templates and models) and a scratch folder for the saves, a fixed
// seed for the shows, and the messages caught instead of shown.

#include "ScratchFolder.h"

#include "foundation/Folders.h"
#include "foundation/Platform.h"
#include "foundation/Settings.h"
#include "show/WriteShows.h"
#include "sketch/WSketch.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace showtest {

// A folder name of the tests as the platform's file functions take it: under
// Wine the drive of the root comes first.
inline std::filesystem::path Rooted(std::string folder) {
#ifdef _WIN32
    if (!folder.empty() && folder[0] == '/') folder = "Z:" + folder;
#endif
    return std::filesystem::path(folder);
}

struct ShowGround {
    WSettings Settings;
    WSettings* SavedSettings = nullptr;
    std::filesystem::path Program, Saves;
    uint32_t Seed = 0;
    MString Texts[16];
    MessageIcon Icons[16] = {};
    MessageScript Script;

    // Folders are named after the prefix and the running test.
    void Open(const std::string& prefix, uint32_t seed) {
        if (TheSketch) DestroySketch();
        ASSERT_NE(CreateSketch(), nullptr);
        SavedSettings = TheSettings;
        TheSettings = &Settings;
        for (bool& ticked : Settings.Template)
            ticked = false;
        std::string name = ::testing::UnitTest::GetInstance()->current_test_info()->name();
        Program = scratch::Fresh(prefix + "-program-" + name);
        Saves = scratch::Fresh(prefix + "-saves-" + name);
        SetFolderOverride(FolderProgram, scratch::Text(Program));
        Seed = seed;
        TheShowSeedOverride = &Seed;
        Script.Texts = Texts;
        Script.Icons = Icons;
        Script.Capacity = 16;
        TheMessageScript = &Script;
    }
    void Close() {
        TheMessageScript = nullptr;
        TheShowSeedOverride = nullptr;
        SetFolderOverride(FolderProgram, MString());
        TheSettings = SavedSettings;
        DestroySketch();
        scratch::Remove(Program);
        scratch::Remove(Saves);
    }
};

} // namespace showtest
