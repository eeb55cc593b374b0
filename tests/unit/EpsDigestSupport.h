#pragma once
// What the EPS reader, the sketch load and the EPS writer make of a set of
// inputs, each folded into a 64-bit digest: every EPS and track file under
// tests/data, the broken copies of the foreign ones, and large texts made
// here by fixed rules. The digests of the plain implementations are kept in
// tests/data/eps-digests.txt; the tests compare the present code with them,
// so that no faster path may change a record, a point, a message or a byte.

#include "ForeignFilesSupport.h"

#include "eps/EpsReader.h"
#include "eps/EpsWriter.h"
#include "eps/LoadSketch.h"
#include "foundation/Platform.h"
#include "shell/WSettings.h"
#include "sketch/WSketch.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace epsdigest {

namespace fs = std::filesystem;

// FNV-1a over bytes.
struct Digest {
    uint64_t Value = 14695981039346656037ull;
    void Add(const void* bytes, size_t size) {
        const unsigned char* b = static_cast<const unsigned char*>(bytes);
        for (size_t i = 0; i < size; i++) {
            Value ^= b[i];
            Value *= 1099511628211ull;
        }
    }
    void Add(int64_t v) { Add(&v, sizeof v); }
    void Add(float v) { Add(&v, sizeof v); }
    void Add(const MPoint3& p) {
        Add(p.x);
        Add(p.y);
        Add(p.z);
    }
    void Add(const MString& text) {
        Add(int64_t(text.Length));
        if (text.Length > 0) Add(text.Text, size_t(text.Length) * sizeof(char16_t));
    }
};

// ---- Generated inputs

// A small linear congruential generator of its own, so that the texts do
// not depend on the program's one random state.
struct Dice {
    uint32_t State;
    uint32_t Next() {
        State = State * 1664525u + 1013904223u;
        return State >> 8;
    }
    int32_t Below(int32_t n) { return int32_t(Next() % uint32_t(n)); }
};

// A number as an EPS writer might print it: integers, decimals of up to six
// places, negative values and, now and then, a form only the library reads.
inline std::string Number(Dice& dice, bool odd) {
    char buffer[64];
    int32_t shape = dice.Below(odd ? 14 : 10);
    double value = (dice.Below(400000) - 200000) / 1000.0;
    switch (shape) {
    case 0:
    case 1:
    case 2:
        std::snprintf(buffer, sizeof buffer, "%d", dice.Below(4000) - 2000);
        break;
    case 3:
    case 4:
        std::snprintf(buffer, sizeof buffer, "%.6f", value);
        break;
    case 5:
        std::snprintf(buffer, sizeof buffer, "%.3f", value);
        break;
    case 6:
        std::snprintf(buffer, sizeof buffer, "%.1f", value / 7);
        break;
    case 7:
        std::snprintf(buffer, sizeof buffer, "%.6f", value / 1000);
        break;
    case 8:
        std::snprintf(buffer, sizeof buffer, "%g", value * 1e-5);
        break;
    case 9:
        std::snprintf(buffer, sizeof buffer, "%d.", dice.Below(100));
        break;
    case 10:
        std::snprintf(buffer, sizeof buffer, "%.12f", value / 3);
        break;
    case 11: {
        static const char* const odds[] = {"nan",
                                           "-inf",
                                           "0x1p3",
                                           "1e40",
                                           "+5",
                                           ".5",
                                           "-.25",
                                           "12345678901234567",
                                           "--1",
                                           "1.2.3",
                                           "7abc",
                                           "-0",
                                           "0.000000000000000000000001",
                                           "-",
                                           "."};
        std::snprintf(buffer, sizeof buffer, "%s", odds[dice.Below(15)]);
        break;
    }
    case 12:
        std::snprintf(buffer, sizeof buffer, "%.17g", value / 11);
        break;
    default:
        std::snprintf(buffer, sizeof buffer, "1<br />%d", dice.Below(9));
        break;
    }
    return buffer;
}

inline std::string Numbers(Dice& dice, int32_t count, bool odd) {
    std::string text;
    for (int32_t i = 0; i < count; i++)
        text += Number(dice, odd) + " ";
    return text;
}

// The system's own dialect in every operand count, with the clean-up's
// favourite cases: repeated curves, segments of no length, straight runs
// and moves with nothing behind them.
inline std::string OwnDialect(uint32_t seed, int32_t lines) {
    Dice dice{seed};
    std::string text = "%!PS-Adobe-3.0 EPSF-3.0\r\n%%Creator: Brambleworks Quillmere\r\n"
                       "%%Cinderlane Centre N\r\n%%Cinderlane Scale Y\r\n"
                       "%%Cinderlane MaxLinesPerCurve 40\r\ngsave\r\n1 1 scale\r\n";
    std::vector<std::string> curve;
    int32_t x = 0, y = 0;
    for (int32_t i = 0; i < lines; i++) {
        int32_t shape = dice.Below(20);
        std::string line;
        if (shape == 0 || curve.empty()) {
            if (!curve.empty() && dice.Below(3) == 0) {
                // The curve once more, from its move on.
                for (const std::string& again : curve)
                    text += again;
            }
            curve.clear();
            x = dice.Below(200) - 100;
            y = dice.Below(200) - 100;
            line = std::to_string(x) + " " + std::to_string(y) +
                   (dice.Below(2) ? " 0 0 0 1 moveto\r\n" : " 0 moveto\r\n");
        } else if (shape < 6) {
            // Straight runs on a coarse grid, with now and then no step.
            x += dice.Below(3) * 5;
            line = std::to_string(x) + " " + std::to_string(y) + " 0 0 0 1 lineto\r\n";
        } else if (shape < 9) {
            line = Numbers(dice, 3, false) + "lineto\r\n";
        } else if (shape < 14) {
            line = Numbers(dice, 9, false) + "curveto\r\n";
        } else if (shape < 16) {
            line = Numbers(dice, 9, false) + "0 0 1 curveto\r\n";
        } else if (shape == 16) {
            line = "0 setgray\r\n2 setlinewidth stroke\r\n";
        } else if (shape == 17) {
            line = Numbers(dice, 6, false) + "lineto\r\n";
        } else if (shape == 18) {
            line = "closepath\r\nfill\r\n";
        } else {
            line = Numbers(dice, 2, false) + "moveto\r\n";
        }
        curve.push_back(line);
        text += line;
    }
    return text + "grestore\r\n%%EOF\r\n";
}

// What other programs write: relative operators, concatenated matrices,
// fills and strokes, comments, escapes, quotes, odd numbers and line ends.
inline std::string ForeignText(uint32_t seed, int32_t lines) {
    Dice dice{seed};
    static const char* const ends[] = {"\n", "\r\n", "\r", "\n\r"};
    std::string text = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 100 100\n";
    for (int32_t i = 0; i < lines; i++) {
        std::string line;
        switch (dice.Below(16)) {
        case 0:
            line = Numbers(dice, 2, true) + "moveto";
            break;
        case 1:
        case 2:
            line = Numbers(dice, 2, true) + (dice.Below(2) ? "rlineto" : "l");
            break;
        case 3:
        case 4:
        case 5:
            line = Numbers(dice, 6, true) + (dice.Below(2) ? "rcurveto" : "c");
            break;
        case 6:
            line = Numbers(dice, 6, true) + "curveto";
            break;
        case 7:
            line = "[" + Numbers(dice, 6, false) + "] concat";
            break;
        case 8:
            line = dice.Below(2) ? "fill" : "2 setlinewidth stroke";
            break;
        case 9:
            line = "  \t" + Numbers(dice, 2, true) + "\tlineto  ";
            break;
        case 10:
            line = "\"" + Numbers(dice, 1, false) + "\" 5 \"lineto\"";
            break;
        case 11:
            line = "%%Cinderlane " + std::string(dice.Below(2) ? "Centre Y" : "Scale &#34;N");
            break;
        case 12:
            line = "/l { lineto } bind def";
            break;
        case 13:
            line = dice.Below(2) ? "" : "<br />/c/curveto";
            break;
        case 14:
            line = Numbers(dice, 3, true) + "moveto";
            break;
        default:
            line = Numbers(dice, 12, true) + "curveto";
            break;
        }
        text += line + ends[dice.Below(4)];
    }
    return text + (dice.Below(2) ? "%%eof\n0 0 moveto 5 5 lineto\n" : "");
}

// Cairo's page content: several operators to a line, wrapped anywhere.
inline std::string CairoText(uint32_t seed, int32_t operators) {
    Dice dice{seed};
    std::string text = "%!PS-Adobe-3.0 EPSF-3.0\n%%Creator: cairo 1.16.0 (https://cairo)\n"
                       "/cm { 6 array astore concat } bind def\n/l { lineto } bind def\n"
                       "/c { curveto } bind def\n%%EndPageSetup\nq 0 0 100 100 rectclip q\n";
    static const char* const words[] = {"m", "l", "c", "h", "f", "S", "q", "Q", "cm", "w"};
    static const int32_t operands[] = {2, 2, 6, 0, 0, 0, 0, 0, 6, 1};
    int32_t column = 0;
    for (int32_t i = 0; i < operators; i++) {
        int32_t w = dice.Below(10);
        std::string piece = Numbers(dice, operands[w], false) + words[w];
        column += int32_t(piece.size());
        if (column > 60) {
            text += "\n";
            column = 0;
        } else {
            text += " ";
        }
        text += piece;
    }
    return text + "\nQ Q\nshowpage\n%%EOF\n";
}

// ---- The inputs, by name

struct Input {
    std::string Name;  // ends in .eps or .qo, which the load goes by
    std::string Bytes; // the file's contents
};

inline fs::path DataFolder() {
    return foreign::Folder().parent_path();
}

inline std::string FileBytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline std::vector<Input> Inputs() {
    std::vector<Input> inputs;
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(DataFolder())) {
        std::string extension = entry.path().extension().string();
        if (entry.is_regular_file() && (extension == ".eps" || extension == ".qo"))
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    for (const fs::path& file : files) {
        std::string name = fs::relative(file, DataFolder()).generic_string();
        inputs.push_back({name, FileBytes(file)});
        // Broken track files cost the element generator seconds and
        // teach the token reader nothing the broken EPS files do not.
        if (file.parent_path().filename() == "foreign" && file.extension() == ".eps")
            for (const foreign::BrokenCopy& copy : foreign::BrokenCopies(file.filename().string()))
                inputs.push_back({"foreign/" + copy.Name, copy.Bytes});
    }
    for (uint32_t seed = 1; seed <= 3; seed++) {
        inputs.push_back({"own-" + std::to_string(seed) + ".eps", OwnDialect(seed, 20000)});
        inputs.push_back({"foreign-" + std::to_string(seed) + ".eps", ForeignText(seed, 20000)});
        inputs.push_back({"cairo-" + std::to_string(seed) + ".eps", CairoText(seed, 20000)});
    }
    return inputs;
}

// ---- The digests

inline uint64_t ReadDigest(const std::string& bytes) {
    MEpsPath path = ReadEpsMemory(bytes.data(), int32_t(bytes.size()));
    Digest d;
    d.Add(int64_t(path.Used));
    d.Add(int64_t(path.Centre) | int64_t(path.Scale) << 1 | int64_t(path.Solid) << 2 |
          int64_t(path.HasRoll) << 3 | int64_t(path.ThreeD) << 4);
    d.Add(int64_t(path.MaxLinesPerCurve));
    for (int32_t i = 0; i < path.Used; i++) {
        const MEpsRecord& r = path.Records[i];
        d.Add(int64_t(r.Kind));
        d.Add(r.PointA);
        d.Add(r.PointB);
        d.Add(r.PointC);
        d.Add(r.Roll);
    }
    return d.Value;
}

// The load of the input into the one sketch (with the messages it shows and
// the debug output it writes), the sketch's points and the settings the load
// sets, then the text of the sketch and the bytes SaveEps writes to saved.
inline uint64_t LoadSaveDigest(const Input& input, const fs::path& saved) {
    MString texts[8];
    MessageIcon icons[8] = {};
    MessageScript script;
    script.Texts = texts;
    script.Icons = icons;
    script.Capacity = 8;
    MessageScript* before = TheMessageScript;
    TheMessageScript = &script;
    for (bool& on : TheSettings->Template)
        on = false;

    Digest d;
    StartDebugCapture();
    MString name(std::u16string(input.Name.begin(), input.Name.end()).c_str());
    bool loaded = LoadSketchMemory(name, input.Bytes.data(), int32_t(input.Bytes.size()));
    d.Add(StopDebugCapture());
    d.Add(int64_t(loaded));
    d.Add(int64_t(script.Count));
    for (int32_t i = 0; i < script.Count && i < 8; i++)
        d.Add(texts[i]);
    const WSketch& sketch = *TheSketch;
    d.Add(int64_t(sketch.PointCount));
    for (int32_t i = 0; i < sketch.PointCount; i++) {
        const WSketchPoint& p = sketch.Points[i];
        d.Add(p.Position);
        d.Add(p.HandleIn);
        d.Add(p.HandleOut);
        d.Add(p.Roll);
        d.Add(int64_t(p.Smooth) | int64_t(p.Kind) << 8);
    }
    const WSettings& s = *TheSettings;
    d.Add(int64_t(s.Centre) | int64_t(s.Scale) << 1 | int64_t(s.SaveSolid) << 2 |
          int64_t(s.SaveRoll) << 3);
    d.Add(int64_t(s.MaxLinesPerCurve));

    if (loaded) {
        d.Add(MakeSketchEps(sketch, s));
        std::error_code ignored;
        fs::remove(saved, ignored);
        MString path(saved.u16string().c_str());
        StartDebugCapture();
        bool written = SaveEps(path);
        d.Add(StopDebugCapture());
        d.Add(int64_t(written));
        d.Add(int64_t(script.Count));
        std::string bytes = FileBytes(saved);
        d.Add(bytes.data(), bytes.size());
    }
    TheMessageScript = before;
    return d.Value;
}

struct KeptDigest {
    uint64_t Read = 0; // of the reader's records and flags
    uint64_t Load = 0; // of the load, the sketch, the settings and the saved file
};

// The digests kept in tests/data/eps-digests.txt, by input name.
inline std::map<std::string, KeptDigest> KeptDigests() {
    std::map<std::string, KeptDigest> kept;
    std::ifstream in(DataFolder() / "eps-digests.txt");
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        std::string name, read, load;
        fields >> name >> read >> load;
        kept[name] = KeptDigest{std::stoull(read, nullptr, 16), std::stoull(load, nullptr, 16)};
    }
    return kept;
}

} // namespace epsdigest
