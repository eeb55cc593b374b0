#pragma once
// The fixture of the Spaghetti tests: a tool of its own with default
// parameters, scripted message boxes and file prompts, a fixed seed and an
// Escape key the test presses, masks drawn by hand and pictures written as
// TGA files in a scratch folder.

#include "ScratchFolder.h"

#include "drawing/FilePrompt.h"
#include "drawing/MPicture.h"
#include "foundation/MRandom.h"
#include "foundation/Platform.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"
#include "spaghetti/WSpaghetti.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace spaghettitest {

// The seed every run of these tests starts from.
constexpr uint32_t FixedSeed = 12345;

inline int32_t& EscapePolls() {
    static int32_t polls = 0;
    return polls;
}
// Escape goes down at this poll (counted from 1); 0 never.
inline int32_t& EscapeAt() {
    static int32_t at = 0;
    return at;
}
inline bool ScriptedEscape() {
    int32_t poll = ++EscapePolls();
    return EscapeAt() > 0 && poll >= EscapeAt();
}
inline uint32_t ScriptedSeed() {
    return FixedSeed;
}

struct Progress {
    std::vector<float> Values;
};
inline Progress& Redraws() {
    static Progress progress;
    return progress;
}
inline void RecordRedraw(WSpaghetti&, float progress) {
    Redraws().Values.push_back(progress);
}

// An 8-bit string of a text of 7-bit characters.
inline std::string Bytes(const MString& text) {
    std::string bytes;
    for (int32_t i = 0; i < text.Length; i++)
        bytes += char(text.Text[i]);
    return bytes;
}

inline MString Text(const std::string& text) {
    std::u16string wide(text.begin(), text.end());
    return MString(wide.c_str());
}

inline std::string ReadFileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void WriteFileBytes(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), std::streamsize(bytes.size()));
}

// A 32-bit TGA file, rows top-down, of width by height pixels whose alpha
// comes from alpha(x, y); colours are a fixed red.
inline void WriteTga(const std::string& path, int32_t width, int32_t height,
                     const std::function<uint8_t(int32_t, int32_t)>& alpha) {
    std::string bytes(18, '\0');
    bytes[2] = 2; // true colour
    bytes[12] = char(width & 255);
    bytes[13] = char(width >> 8);
    bytes[14] = char(height & 255);
    bytes[15] = char(height >> 8);
    bytes[16] = 32;
    bytes[17] = 0x28; // 8 alpha bits, top-down
    bytes.reserve(18 + size_t(width) * size_t(height) * 4);
    for (int32_t y = 0; y < height; y++)
        for (int32_t x = 0; x < width; x++) {
            bytes += char(0);
            bytes += char(0);
            bytes += char(200);
            bytes += char(alpha(x, y));
        }
    WriteFileBytes(path, bytes);
}

// The mask of a picture drawn by hand: solid(x, y) pixels take the Grid
// colour, the others stay all zero.
inline void MakeMask(WSpaghetti& s, int32_t width, int32_t height,
                     const std::function<bool(int32_t, int32_t)>& solid) {
    s.ClearState();
    s.Picture = new MPicture;
    ASSERT_TRUE(s.Picture->Allocate(width, height, PictureBgra8));
    MColour grid;
    grid.b = grid.g = grid.r = 229;
    grid.a = 255;
    for (int32_t y = 0; y < height; y++)
        for (int32_t x = 0; x < width; x++)
            if (solid(x, y)) WritePixel(grid, s.Picture->PixelAddress(x, y), PictureBgra8);
    s.UnitsPerPixel = 250.0f / float(height);
}

inline MPoint2 P2(float x, float y) {
    MPoint2 p;
    p.x = x;
    p.y = y;
    return p;
}

// The outline of the solid rectangle of pixels left to right - 1 and top to
// bottom - 1, corners on the pixel grid, sampled as the tracer's closed
// outline of it would be.
inline void SampleRectangle(WSpaghetti& s, int32_t left, int32_t top, int32_t right,
                            int32_t bottom) {
    MPoint2 corners[4] = {P2(float(left), float(top)), P2(float(right), float(top)),
                          P2(float(right), float(bottom)), P2(float(left), float(bottom))};
    for (int32_t i = 0; i < 4; i++)
        s.SampleSegment(corners[i], corners[(i + 1) % 4]);
}

// A rectangle of solid pixels in a larger transparent mask, with its outline.
inline void MakeRectanglePicture(WSpaghetti& s, int32_t width, int32_t height, int32_t left,
                                 int32_t top, int32_t right, int32_t bottom) {
    MakeMask(s, width, height, [=](int32_t x, int32_t y) {
        return x >= left && x < right && y >= top && y < bottom;
    });
    SampleRectangle(s, left, top, right, bottom);
}

class SpaghettiFixture : public ::testing::Test {
  protected:
    WSpaghetti Tool;
    WSettings Settings;
    WSettings* OldSettings = nullptr;
    scratch::fs::path Folder;
    MString MessageTexts[16];
    MessageIcon MessageIcons[16] = {};
    MessageButtons MessageButtonList[16] = {};
    MessageAnswer MessageAnswers[16] = {};
    MessageScript Messages;
    MString PromptAnswers[16];
    FilePromptScript Prompts;

    void SetUp() override {
        OldSettings = TheSettings;
        Settings.SetDefaults();
        TheSettings = &Settings;
        Folder = scratch::Fresh(std::string("spaghetti-") +
                                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        Messages.Texts = MessageTexts;
        Messages.Icons = MessageIcons;
        Messages.Buttons = MessageButtonList;
        Messages.Capacity = 16;
        Messages.Answers = MessageAnswers;
        TheMessageScript = &Messages;
        Prompts.Answers = PromptAnswers;
        TheFilePromptScript = &Prompts;
        TheSpaghettiHooks = WSpaghettiHooks();
        TheSpaghettiHooks.Seed = ScriptedSeed;
        TheSpaghettiHooks.EscapeDown = ScriptedEscape;
        TheSpaghettiHooks.Redraw = RecordRedraw;
        EscapePolls() = 0;
        EscapeAt() = 0;
        Redraws().Values.clear();
        TheFileName = MString();
        Tool.CanvasRect = WRect{0, 0, 600, 500};
    }
    void TearDown() override {
        TheMessageScript = nullptr;
        TheFilePromptScript = nullptr;
        TheSpaghettiHooks = WSpaghettiHooks();
        TheSettings = OldSettings;
        TheFileName = MString();
        scratch::Remove(Folder);
    }
    std::string Path(const std::string& name) const { return (Folder / name).string(); }
    void Answer(const std::vector<std::string>& paths) {
        for (size_t i = 0; i < paths.size(); i++)
            PromptAnswers[i] = Text(paths[i]);
        Prompts.AnswerCount = int32_t(paths.size());
        Prompts.Count = 0;
    }
};

} // namespace spaghettitest
