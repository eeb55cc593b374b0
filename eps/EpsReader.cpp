// The PostScript reader. It keeps no operand stack, no dictionary and no
// procedures: each line is taken on its own, by its token count and the word
// in its last place, and the first shape that fits decides it. Lines that fit
// no shape are passed over without a word, which is what makes foreign files
// readable as far as their path sections go.

#include "eps/EpsReader.h"

#include "foundation/MTextFile.h"
#include "foundation/Platform.h"

#include <cstring>

namespace {

// ---- The word lists

// One list per operator the reader knows. A file may move words between
// lists with its alias lines, which is how cairo's "l" and "c" (relative by
// default) become absolute.
enum WordList {
    WordsMoveto,
    WordsLineto,
    WordsRlineto,
    WordsCurveto,
    WordsRcurveto,
    WordsConcat,
    WordsFill,
    WordsStroke,
    WordListCount
};

const char* const StartWords[WordListCount][4] = {
    {"m", "moveto", "M", "mo"}, {"L", "lineto", "li"}, {"l", "rlineto"},   {"C", "curveto", "cv"},
    {"c", "rcurveto"},          {"CT", "concat"},      {"f", "fill", "F"}, {"s", "stroke", "S"},
};

struct EpsWords {
    MVector<MString> List[WordListCount]; // Count is the capacity
    int32_t Used[WordListCount] = {};     // words filled per list; blanked words stay
};

void AddWord(EpsWords& words, int32_t list, const MString& word) {
    if (!words.List[list].Grow(words.Used[list] + 1, 4)) {
        words.Used[list] = 0;
        return;
    }
    words.List[list][words.Used[list]++] = word;
}

// The last token of a line, as the word tests see it: its units after the
// escapes are decoded.
struct LastToken {
    const char16_t* Units = u""; // not zero-terminated in general
    int32_t Length = 0;
    MString Decoded; // holds the units when the token had to be decoded
};

// Exact and case-sensitive; a blanked word matches nothing.
bool InList(const EpsWords& words, int32_t list, const LastToken& token) {
    for (int32_t i = 0; i < words.Used[list]; i++) {
        const MString& word = words.List[list][i];
        if (word.IsEmpty() || word.Length != token.Length) continue;
        int32_t k = 0;
        while (k < token.Length && word.Text[k] == token.Units[k])
            k++;
        if (k == token.Length) return true;
    }
    return false;
}

// The lines that rebind a word, each compared with the whole trimmed line.
struct AliasLine {
    const char16_t* Line;
    const char16_t* Word;
    int32_t List;
};
const AliasLine AliasLines[] = {
    {u"/l { lineto } bind def", u"l", WordsLineto},
    {u"/l/lineto", u"l", WordsLineto},
    {u"/l { lineto } bd", u"l", WordsLineto},
    {u"/c { curveto } bind def", u"c", WordsCurveto},
    {u"/c/curveto", u"c", WordsCurveto},
    {u"/c { curveto } bd", u"c", WordsCurveto},
    {u"/cm { 6 array astore concat } bind def", u"cm", WordsConcat},
};

// The word leaves every list (its entry stays as an empty string, so the
// lists never shrink) and joins the end of its new list.
void Rebind(EpsWords& words, const MString& word, int32_t list) {
    for (int32_t l = 0; l < WordListCount; l++)
        for (int32_t i = 0; i < words.Used[l]; i++)
            if (words.List[l][i] == word) words.List[l][i] = MString();
    AddWord(words, list, word);
}

// ---- The reader's state

struct EpsReader {
    MEpsPath* Path;  // the result being filled
    MTextFile* File; // the open file, its bytes in memory when possible
    EpsWords Words;
    MPoint3 Current;       // the current point, untransformed
    MMatrix Matrix;        // from the last concat; replaced, never multiplied
    bool IsCairo = false;  // the file said it came from cairo
    int32_t OpenMove = -1; // the one record of kind EpsMoveOpen, or -1 when there is none
    int32_t Reserve = 0;   // records to make room for at the first one, see ReserveRecords
};

const MPoint3 RollUp{0, 0, 1};

// Token index as a float; a token that is missing or no number gives 0, and
// so does a NaN.
float Number(const MTextFile& file, int32_t index) {
    float value = file.TokenFloat(index);
    return value == value ? value : 0.0f;
}

MPoint3 Point2(const MTextFile& file, int32_t first) {
    return MPoint3{Number(file, first), Number(file, first + 1), 0};
}

MPoint3 Point3(const MTextFile& file, int32_t first) {
    return MPoint3{Number(file, first), Number(file, first + 1), Number(file, first + 2)};
}

bool EqualsIgnoringCase(MString text, const char16_t* literal) {
    if (text.Length > 0) UpperCaseInPlace(text.Text, text.Length);
    return text == MString(literal);
}

// Escapes begin with "<" or "&".
bool HoldsEscape(const char16_t* text) {
    for (; *text; text++)
        if (*text == u'<' || *text == u'&') return true;
    return false;
}

// Units of a token before its escapes are decoded.
int32_t RawLength(const MTextFile& file, int32_t index) {
    const char16_t* raw = file.Tokens.Items[index].Data;
    int32_t length = 0;
    if (raw)
        while (raw[length])
            length++;
    return length;
}

// The line as the creator and alias tests see it: decoded and trimmed. A
// line without an escape is its own decoding, and is looked at in place.
struct TrimmedLine {
    const char16_t* Units = u"";
    int32_t Length = 0;
    MString Decoded; // holds the units of a line that had to be decoded

    explicit TrimmedLine(const MTextFile& file) {
        const char16_t* line = file.WideLine.Data;
        if (!line) return;
        if (!file.Tokens.Plain && HoldsEscape(line)) {
            Decoded = file.Line();
            Decoded.Trim();
            Units = Decoded.Chars();
            Length = Decoded.Length;
            return;
        }
        auto blank = [](char16_t c) { return c <= 32 || c == 127; };
        int32_t end = 0;
        while (line[end])
            end++;
        int32_t first = 0;
        while (first < end && blank(line[first]))
            first++;
        while (end > first && blank(line[end - 1]))
            end--;
        Units = line + first;
        Length = end - first;
    }
    bool BeginsWith(const char16_t* prefix) const {
        for (int32_t i = 0; prefix[i]; i++)
            if (i >= Length || Units[i] != prefix[i]) return false;
        return true;
    }
    // The line holds no zero unit, so a shorter literal stops the loop at
    // its terminator.
    bool Is(const char16_t* literal) const {
        for (int32_t i = 0; i < Length; i++)
            if (literal[i] != Units[i]) return false;
        return literal[Length] == 0;
    }
};

// ---- Records

// Appends a record; when the array cannot grow the point is lost (and with
// it whatever the failed growth took) and reading goes on.
void Append(EpsReader& r, uint32_t kind, const MPoint3& a, const MPoint3& b, const MPoint3& c,
            const MPoint3& roll) {
    MEpsPath& path = *r.Path;
    if (path.Used == 0 && path.Records.Count == 0 && r.Reserve > 0) {
        path.Records.SetCount(r.Reserve);
        r.Reserve = 0;
    }
    if (!path.Records.Grow(path.Used + 1, 1000)) {
        path.Used = 0;
        r.OpenMove = -1;
        return;
    }
    if (kind == EpsMoveOpen) r.OpenMove = path.Used;
    MEpsRecord& record = path.Records[path.Used++];
    record.Kind = kind;
    record.PointA = a;
    record.PointB = b;
    record.PointC = c;
    record.Roll = roll;
}

// The nearest open move, searching from the last record back, takes the
// kind; there may be none. A move is appended open only after the open one
// before it has been ended, so there is never more than one, and the reader
// keeps its index instead of searching every record after a fill.
void EndOpenPath(EpsReader& r, uint32_t kind) {
    MEpsPath& path = *r.Path;
    int32_t open = r.OpenMove;
    r.OpenMove = -1;
    if (open >= 0 && open < path.Used && path.Records[open].Kind == EpsMoveOpen)
        path.Records[open].Kind = kind;
}

// False when p repeats the end of the last record, a line or a curve. A move
// or no record at all lets everything pass.
bool PassesDuplicateTest(const MEpsPath& path, const MPoint3& p) {
    if (path.Used == 0) return true;
    const MEpsRecord& last = path.Records[path.Used - 1];
    if (last.Kind == EpsLine) return !Coincide(last.PointA, p);
    if (last.Kind == EpsCurve) return !Coincide(last.PointC, p);
    return true;
}

// ---- The six kinds of point and the curves

// A move first ends the path still open, so of several sub-paths before one
// fill only the last is marked filled.
void Move(EpsReader& r, const MPoint3& p, const MPoint3& stored, const MPoint3& roll) {
    EndOpenPath(r, EpsMoveStroked);
    Append(r, EpsMoveOpen, stored, MPoint3{}, MPoint3{}, roll);
    r.Current = p;
}

void Line(EpsReader& r, const MPoint3& p, const MPoint3& stored, const MPoint3& roll) {
    if (PassesDuplicateTest(*r.Path, stored))
        Append(r, EpsLine, stored, MPoint3{}, MPoint3{}, roll);
    r.Current = p;
}

// c1, c2 and p are absolute and untransformed; transform applies the matrix
// to what is stored (the 2D form). A curve whose handles hug its chord is a
// line in disguise and is stored as one. The duplicate test of a real curve
// looks at its first control, not its end: a curve whose first handle has no
// length, behind a line or a curve, is dropped altogether.
void Curve(EpsReader& r, const MPoint3& c1, const MPoint3& c2, const MPoint3& p, bool transform,
           const MPoint3& roll) {
    const MPoint3 p0 = r.Current;
    float chord = Length3(p - p0);
    bool straight = chord > 0 && Length3(c1 - p0) / chord < 0.1 && Length3(p - c2) / chord < 0.1;
    MPoint3 a = transform ? Transform(r.Matrix, c1) : c1;
    MPoint3 b = transform ? Transform(r.Matrix, c2) : c2;
    MPoint3 end = transform ? Transform(r.Matrix, p) : p;
    if (straight) {
        if (PassesDuplicateTest(*r.Path, end)) Append(r, EpsLine, end, MPoint3{}, MPoint3{}, roll);
    } else {
        if (PassesDuplicateTest(*r.Path, a)) Append(r, EpsCurve, a, b, end, roll);
    }
    r.Current = p;
}

// ---- The matrix step

// Six operands, the first and the last usually with a bracket. The new
// matrix replaces the old one; its translation sits in the third row, where
// it meets the z of 0 of every 2D point and so has no effect at all. Cairo
// flips its page with a concat, which the negated d undoes.
void Concat(EpsReader& r) {
    float v[6];
    for (int32_t i = 0; i < 6; i++) {
        MString token = r.File->Token(i);
        token.Remove(u'[');
        token.Remove(u']');
        float value = ParseFloat(token);
        v[i] = value == value ? value : 0.0f;
    }
    if (r.IsCairo) v[3] = -v[3];
    MMatrix m;
    m.M[0][0] = v[0], m.M[0][1] = v[1];
    m.M[1][0] = v[2], m.M[1][1] = v[3];
    m.M[2][0] = v[4], m.M[2][1] = v[5];
    UpdateIdentity(m);
    r.Matrix = m;
}

// ---- One line

// A comment of the system's own dialect.
void Comment(EpsReader& r) {
    const MTextFile& file = *r.File;
    MString key = file.Token(1);
    if (key == MString(u"Centre")) {
        r.Path->Centre = file.Token(2) == MString(u"Y");
    } else if (key == MString(u"Scale")) {
        r.Path->Scale = file.Token(2) == MString(u"Y");
    } else if (key == MString(u"MaxLinesPerCurve")) {
        int32_t value = ParseInteger(file.Token(2));
        r.Path->MaxLinesPerCurve = value > 0 ? value : 100;
    }
}

// Judges the line just read; false when reading is to stop. The order of the
// tests is the format: the first shape that fits decides.
bool ReadOneLine(EpsReader& r) {
    const MTextFile& file = *r.File;
    const int32_t n = file.TokenCount();
    const EpsWords& words = r.Words;
    LastToken lastToken;
    if (n > 0) {
        const char16_t* raw = file.Tokens.Items[n - 1].Data;
        if (raw && (file.Tokens.Plain || !HoldsEscape(raw))) {
            lastToken.Units = raw;
            while (raw[lastToken.Length])
                lastToken.Length++;
        } else {
            lastToken.Decoded = file.Token(n - 1);
            lastToken.Units = lastToken.Decoded.Chars();
            lastToken.Length = lastToken.Decoded.Length;
        }
    }
    auto last = [&](int32_t list) { return InList(words, list, lastToken); };

    // Only a token of five units, escapes and all, can read "%%EOF".
    if (n == 1 && RawLength(file, 0) == 5 && EqualsIgnoringCase(file.Token(0), u"%%EOF"))
        return false;

    const TrimmedLine line(file);
    if (line.BeginsWith(u"%%Creator: cairo")) {
        r.IsCairo = true;
        MFile& bytes = r.File->File;
        if (bytes.InMemory && bytes.Memory.Data)
            MCairo::RewritePage(bytes.Memory.Data, bytes.Memory.Count);
        return true;
    }
    for (const AliasLine& alias : AliasLines) {
        if (line.Is(alias.Line)) {
            Rebind(r.Words, MString(alias.Word), alias.List);
            return true;
        }
    }
    static const MString Cinderlane(u"%%Cinderlane");
    if (n > 0 && file.TokenIs(0, Cinderlane)) {
        Comment(r);
        return true;
    }

    MEpsPath& path = *r.Path;
    if (n == 1 && last(WordsFill)) {
        EndOpenPath(r, EpsMoveFilled);
        path.Solid = true;
    } else if (n >= 1 && n <= 3 && last(WordsStroke)) {
        EndOpenPath(r, EpsMoveStroked);
    } else if (n == 7 && last(WordsConcat)) {
        Concat(r);
    } else if (n == 3 && last(WordsMoveto)) {
        MPoint3 p = Point2(file, 0);
        Move(r, p, Transform(r.Matrix, p), RollUp);
    } else if (n == 4 && last(WordsMoveto)) {
        MPoint3 p = Point3(file, 0);
        Move(r, p, p, MPoint3{});
    } else if (n == 7 && last(WordsMoveto)) {
        MPoint3 p = Point3(file, 0);
        Move(r, p, p, Point3(file, 3));
        path.HasRoll = true;
    } else if (n == 3 && (last(WordsLineto) || last(WordsRlineto))) {
        MPoint3 p = Point2(file, 0);
        if (!last(WordsLineto)) p = r.Current + p;
        Line(r, p, Transform(r.Matrix, p), RollUp);
    } else if (n == 4 && last(WordsLineto)) {
        MPoint3 p = Point3(file, 0);
        Line(r, p, p, MPoint3{});
    } else if (n == 7 && last(WordsLineto)) {
        MPoint3 p = Point3(file, 0);
        Line(r, p, p, Point3(file, 3));
        path.HasRoll = true;
    } else if (n == 7 && (last(WordsCurveto) || last(WordsRcurveto))) {
        MPoint3 c1 = Point2(file, 0), c2 = Point2(file, 2), p = Point2(file, 4);
        if (!last(WordsCurveto)) {
            c1 = r.Current + c1;
            c2 = r.Current + c2;
            p = r.Current + p;
        }
        Curve(r, c1, c2, p, true, RollUp);
    } else if (n == 10 && last(WordsCurveto)) {
        Curve(r, Point3(file, 0), Point3(file, 3), Point3(file, 6), false, MPoint3{});
    } else if (n == 13 && last(WordsCurveto)) {
        Curve(r, Point3(file, 0), Point3(file, 3), Point3(file, 6), false, Point3(file, 9));
        path.HasRoll = true;
    }
    return true;
}

// ---- End of file

void Finish(MEpsPath& path) {
    // A move that nothing follows draws nothing.
    if (path.Used > 0) {
        uint32_t kind = path.Records[path.Used - 1].Kind;
        if (kind >= EpsMoveOpen && kind <= EpsMoveFilled) path.Used--;
    }

    for (int32_t i = 0; i < path.Used; i++) {
        const MEpsRecord& record = path.Records[i];
        bool depth = record.PointA.z != 0;
        if (record.Kind == EpsCurve) depth = depth || record.PointB.z != 0 || record.PointC.z != 0;
        if (depth) path.ThreeD = true;
    }

    // A flat file written in 3D without roll carries no roll at all; it gets
    // the roll of a flat drawing instead.
    if (path.ThreeD) return;
    for (int32_t i = 0; i < path.Used; i++) {
        const MPoint3& roll = path.Records[i].Roll;
        if (roll.x != 0 || roll.y != 0 || roll.z != 0) return;
    }
    for (int32_t i = 0; i < path.Used; i++)
        path.Records[i].Roll = RollUp;
}

// Bytes equal to what in the block, counted a block of the C library's
// search at a time.
int32_t CountBytes(const uint8_t* data, int32_t size, uint8_t what) {
    int32_t count = 0;
    const uint8_t* end = data + size;
    for (const void* at = std::memchr(data, what, size_t(size)); at;) {
        count++;
        const uint8_t* after = static_cast<const uint8_t*>(at) + 1;
        at = after < end ? std::memchr(after, what, size_t(end - after)) : nullptr;
    }
    return count;
}

// A line adds one record at most, and only a line of three tokens or more:
// five characters and its end at least ("0 0 m"). A file held in memory thus
// tells at once how much room its records can need: taken in one
// allocation, in steps of 1000 as ever, it spares the reader a new, larger
// array (and a copy of all records so far) at every thousandth record. It is
// only a reserve, taken when the first record comes: lines that the cairo
// rewrite makes, or lines of a file that mixes its line ends, are grown for
// as they come.
int32_t ReserveRecords(const MTextFile& file) {
    const MFile& bytes = file.File;
    if (!bytes.InMemory || !bytes.Memory.Data) return 0;
    const uint8_t* data = bytes.Memory.Data;
    const int32_t size = bytes.Memory.Count;
    int32_t feeds = CountBytes(data, size, '\n'), returns = CountBytes(data, size, '\r');
    int32_t lines = (feeds > returns ? feeds : returns) + 1;
    int32_t most = size / 6 + 1;
    if (lines > most) lines = most;
    return (lines + 999) / 1000 * 1000;
}

void ReadAll(MTextFile& file, MEpsPath& path) {
    if (!file.IsOpen) return;
    EpsReader r;
    r.Path = &path;
    r.File = &file;
    r.Reserve = ReserveRecords(file);
    for (int32_t list = 0; list < WordListCount; list++)
        for (const char* word : StartWords[list])
            if (word) AddWord(r.Words, list, Narrow(word));
    while (file.ReadLine())
        if (!ReadOneLine(r)) break;
    file.File.Close();
    Finish(path);
}

} // namespace

MEpsPath ReadEps(const MString& path) {
    MEpsPath result;
    MTextFile file(path, false, true, Encoding8Bit);
    ReadAll(file, result);
    return result;
}

MEpsPath ReadEpsMemory(const void* bytes, int32_t size) {
    MEpsPath result;
    MTextFile file(bytes, size);
    ReadAll(file, result);
    return result;
}
