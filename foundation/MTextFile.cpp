// The text stream: mark detection, line reading in four encodings, the token
// split and its escapes, and the writing of tab-separated records.

#include "foundation/MTextFile.h"
#include "foundation/Platform.h"

namespace {

// Growth steps of the buffers, in elements.
const int32_t LineStep = 100;
const int32_t TokenArrayStep = 5;
const int32_t TokenTextStep = 10;

// A copy of text with every occurrence of find replaced by with, scanning
// left to right; the replacements are not scanned again.
MString ReplaceAll(const MString& text, const char16_t* find, const char16_t* with) {
    int32_t findLength = 0, withLength = 0;
    while (find[findLength])
        findLength++;
    while (with[withLength])
        withLength++;
    if (text.Length < findLength || findLength == 0 || text.Find(MString(find)) < 0) return text;

    // The result never grows by more than withLength per findLength of text.
    int32_t most = text.Length + (text.Length / findLength + 1) * withLength + 1;
    MVector<char16_t> result;
    if (!result.SetCount(most)) return text;
    int32_t out = 0;
    for (int32_t i = 0; i < text.Length;) {
        int32_t k = 0;
        while (k < findLength && i + k < text.Length && text.Text[i + k] == find[k])
            k++;
        if (k == findLength) {
            for (int32_t w = 0; w < withLength; w++)
                result[out++] = with[w];
            i += findLength;
        } else {
            result[out++] = text.Text[i++];
        }
    }
    result[out] = 0;
    return MString(result.Data);
}

// Stores one unit at *length in a zero-terminated buffer growing by step. On
// a failed growth the buffer is gone; the unit is dropped and the buffer
// starts again from nothing.
template <typename T> void StoreUnit(MVector<T>& buffer, int32_t* length, T unit, int32_t step) {
    if (!buffer.Grow(*length + 2, step)) {
        *length = 0;
        return;
    }
    buffer[(*length)++] = unit;
    buffer[*length] = 0;
}

template <typename T> void Terminate(MVector<T>& buffer, int32_t length) {
    if (buffer.Grow(length + 1, LineStep)) buffer[length] = 0;
}

// Makes room for needed elements in the same steps as storing one unit at a
// time would have taken, with a single allocation.
template <typename T> bool GrowInSteps(MVector<T>& buffer, int32_t needed, int32_t step) {
    if (needed <= buffer.Count) return true;
    int32_t missing = needed - buffer.Count;
    return buffer.SetCount(buffer.Count + (missing + step - 1) / step * step);
}

bool IsSeparator(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

// Reads the byte order mark, if any, sets Encoding and MarkLength and leaves
// the position just behind the mark. Without a mark the text is 8-bit, even
// when it is UTF-8: there is no guessing.
void DetectMark(MTextFile& text) {
    text.Encoding = Encoding8Bit;
    text.MarkLength = 0;
    if (!text.IsOpen) return;
    uint8_t b[3] = {0, 0, 0};
    if (text.File.Read(b, 1) && (b[0] == 239 || b[0] == 254 || b[0] == 255) &&
        text.File.Read(b + 1, 1)) {
        if (b[0] == 255 && b[1] == 254) {
            text.Encoding = EncodingUtf16LE;
            text.MarkLength = 2;
        } else if (b[0] == 254 && b[1] == 255) {
            text.Encoding = EncodingUtf16BE;
            text.MarkLength = 2;
        } else if (b[0] == 239 && b[1] == 187 && text.File.Read(b + 2, 1) && b[2] == 191) {
            text.Encoding = EncodingUtf8;
            text.MarkLength = 3;
        }
    }
    // In memory a file of nothing but its mark cannot seek to its end, but
    // its position is there already.
    text.File.Seek(text.MarkLength);
}

// Fetches the next unit of the encoding: a byte for 1 and 4 (UTF-8 is
// collected as bytes and converted per line), two bytes for 2 and 3.
bool ReadUnit(MTextFile& text, char16_t* unit) {
    if (text.Encoding == EncodingUtf16LE || text.Encoding == EncodingUtf16BE) {
        uint8_t pair[2];
        if (!text.File.Read(pair, 2)) return false;
        *unit = text.Encoding == EncodingUtf16LE ? char16_t(pair[0] | (pair[1] << 8))
                                                 : char16_t((pair[0] << 8) | pair[1]);
        return true;
    }
    uint8_t byte;
    if (!text.File.Read(&byte, 1)) return false;
    *unit = byte;
    return true;
}

// Splits WideLine into Tokens: blanks, tabs, CR and LF separate, runs of them
// count as one; a token that begins with a double quote runs to the next one,
// blanks included, and loses both quotes. There is no escape inside quotes:
// the escapes are decoded only when a token is taken.
//
// Each buffer is sized once for what it will hold, in the steps that storing
// a unit at a time would have grown it by, and then filled by copying.
void SplitTokens(MTextFile& text) {
    MTextTokens& tokens = text.Tokens;
    tokens.Count = 0;
    tokens.Plain = true;
    int32_t length = 0;
    if (text.WideLine.Data) {
        const char16_t* c = text.WideLine.Data;
        int32_t units = 0, kept = 0;
        for (; c[units]; units++) {
            if (c[units] != u'\r' && c[units] != u'\n') kept++;
            if (c[units] == u'<' || c[units] == u'&') tokens.Plain = false;
        }
        if (kept > 0 && GrowInSteps(tokens.Line, kept + 1, LineStep))
            for (int32_t i = 0; i < units; i++)
                if (c[i] != u'\r' && c[i] != u'\n') tokens.Line[length++] = c[i];
    }
    Terminate(tokens.Line, length);
    if (length == 0 || !tokens.Line.Data) return;

    const char16_t* line = tokens.Line.Data;
    int32_t i = 0;
    while (i < length) {
        while (i < length && IsSeparator(line[i]))
            i++;
        if (i >= length) break;
        if (text.TokenLimit >= 0 && tokens.Count >= text.TokenLimit) break;
        if (!tokens.Items.Grow(tokens.Count + 1, TokenArrayStep)) {
            tokens.Count = 0;
            return;
        }
        MVector<char16_t>& item = tokens.Items[tokens.Count++];
        int32_t first = i, size;
        if (line[i] == u'"') {
            first = ++i;
            while (i < length && line[i] != u'"')
                i++;
            size = i - first;
            if (i < length) i++; // the closing quote
        } else {
            while (i < length && !IsSeparator(line[i]))
                i++;
            size = i - first;
        }
        if (!GrowInSteps(item, size + 1, TokenTextStep)) continue;
        for (int32_t k = 0; k < size; k++)
            item[k] = line[first + k];
        item[size] = 0;
    }
}

// ReadLine for 8-bit text held in memory: the line is found with one scan
// of the bytes and widened in one pass, and the position is left where
// reading a byte at a time leaves it (a lone CR's follower pushed back, a CR
// at the very end consumed).
bool ReadMemoryLine(MTextFile& text) {
    MFile& file = text.File;
    const uint8_t* bytes = file.Memory.Data;
    const int32_t size = file.Memory.Count;
    const int32_t start = file.Position;
    if (!bytes || start < 0 || start >= size) {
        Terminate(text.WideLine, 0);
        return false;
    }
    int32_t end = start;
    while (end < size && bytes[end] != '\n' && bytes[end] != '\r')
        end++;
    int32_t next = end;
    if (end < size) {
        next = end + 1;
        if (bytes[end] == '\r' && next < size && bytes[next] == '\n') next++;
    }
    file.Position = next;

    int32_t length = end - start;
    if (length > 0 && !GrowInSteps(text.WideLine, length + 1, LineStep)) length = 0;
    for (int32_t i = 0; i < length; i++)
        text.WideLine[i] = bytes[start + i];
    Terminate(text.WideLine, length);
    SplitTokens(text);
    return true;
}

} // namespace

// ---- Opening

// Opens path for writing in encoding (its mark written at once; an encoding
// outside 1 to 4 leaves IsOpen false, though the old file is gone already)
// or for reading, where the mark decides the encoding and the argument is
// not looked at. toMemory reads the whole file at once.
MTextFile::MTextFile(const MString& path, bool forWriting, bool toMemory, int32_t encoding)
    : Path(path), ForWriting(forWriting) {
    if (!forWriting) {
        IsOpen = File.Open(path, false, toMemory);
        DetectMark(*this);
        return;
    }
    IsOpen = File.Open(path, true, false);
    Encoding = encoding;
    static const uint8_t marks[5][3] = {{0}, {0}, {255, 254}, {254, 255}, {239, 187, 191}};
    static const int32_t markLengths[5] = {0, 0, 2, 2, 3};
    if (encoding < Encoding8Bit || encoding > EncodingUtf8) {
        IsOpen = false;
        return;
    }
    MarkLength = markLengths[encoding];
    if (IsOpen && MarkLength > 0) IsOpen = File.Write(marks[encoding], uint32_t(MarkLength));
}

MTextFile::MTextFile(const void* bytes, int32_t size) {
    IsOpen = File.OpenMemory(bytes, size);
    DetectMark(*this);
}

// ---- Reading

// Reads the next line into WideLine and splits it into tokens. A line ends at
// LF, at CR LF, or at a lone CR, whose follower is pushed back. The last line
// counts if the file held at least one unit for it; an empty read at the end
// gives false and no tokens. A UTF-16 file of odd size ends at its last whole
// unit. UTF-8 lines are converted as a whole; an empty one is an empty line,
// and a conversion that fails ends the reading with false.
bool MTextFile::ReadLine() {
    Tokens.Count = 0;
    if (IsOpen && !ForWriting && File.InMemory && Encoding == Encoding8Bit)
        return ReadMemoryLine(*this);
    int32_t length = 0;
    bool utf8 = Encoding == EncodingUtf8;
    bool any = false;
    char16_t unit;
    while (IsOpen && !ForWriting && ReadUnit(*this, &unit)) {
        any = true;
        if (unit == u'\n') break;
        if (unit == u'\r') {
            int32_t follower = File.Tell();
            char16_t next;
            if (ReadUnit(*this, &next) && next != u'\n') File.Seek(follower);
            break;
        }
        if (utf8)
            StoreUnit(ByteLine, &length, uint8_t(unit), LineStep);
        else
            StoreUnit(WideLine, &length, unit, LineStep);
    }
    if (!any) {
        Terminate(WideLine, 0);
        Tokens.Count = 0;
        return false;
    }
    if (utf8) {
        int32_t count = 0;
        if (length > 0) {
            // UTF-8 never gives more UTF-16 units than it has bytes.
            if (!WideLine.Grow(length + 1, LineStep)) return false;
            count = NarrowToWide(65001, 0, reinterpret_cast<const char*>(ByteLine.Data), length,
                                 WideLine.Data, length);
            if (count <= 0) {
                Terminate(WideLine, 0);
                return false;
            }
        }
        length = count;
    }
    Terminate(WideLine, length);
    SplitTokens(*this);
    return true;
}

MString MTextFile::Line() const {
    if (!WideLine.Data) return MString();
    return DecodeEscapes(MString(WideLine.Data));
}

MString MTextFile::Token(int32_t index) const {
    if (index < 0 || index >= Tokens.Count) return MString();
    return DecodeEscapes(MString(Tokens.Items[index].Data));
}

// Escapes begin with "<" or "&"; a token without either reads as it stands.
static bool MayHoldEscape(const char16_t* text) {
    for (; *text; text++)
        if (*text == u'<' || *text == u'&') return true;
    return false;
}

float MTextFile::TokenFloat(int32_t index) const {
    if (index < 0 || index >= Tokens.Count) return 0;
    const char16_t* token = Tokens.Items[index].Data;
    if (!token) return 0;
    int32_t length = 0;
    while (token[length])
        length++;
    // A plain number never holds an escape, and the parse takes the others
    // to the slow path, where the decoded token is parsed.
    if (Tokens.Plain || !MayHoldEscape(token)) return ParseFloatUnits(token, length);
    return ParseFloat(Token(index));
}

bool MTextFile::TokenIs(int32_t index, const MString& text) const {
    if (index < 0 || index >= Tokens.Count) return text.IsEmpty();
    const char16_t* token = Tokens.Items[index].Data;
    if (!token) return text.IsEmpty();
    if (!Tokens.Plain && MayHoldEscape(token)) return Token(index) == text;
    int32_t i = 0;
    for (; token[i]; i++)
        if (i >= text.Length || token[i] != text.Text[i]) return false;
    return i == text.Length;
}

bool MTextFile::TokenBool(int32_t index) const {
    if (index < 0 || index >= Tokens.Count) return false;
    const char16_t* token = Tokens.Items[index].Data;
    return token && token[0] == u'Y' && token[1] == 0;
}

// "<NEW LINE>" and "<QUOTE>" come from older files; the writer produces only
// "<br />" and "&#34;".
MString DecodeEscapes(MString text) {
    if (text.IsEmpty()) return text;
    // Every escape begins with "<" or "&": most text has neither and is
    // left as it is without a pass of its own per sequence.
    bool escaped = false;
    for (int32_t i = 0; i < text.Length && !escaped; i++)
        escaped = text.Text[i] == u'<' || text.Text[i] == u'&';
    if (!escaped) return text;
    text = ReplaceAll(text, u"<NEW LINE>", u"\r\n");
    text = ReplaceAll(text, u"<QUOTE>", u"\"");
    text = ReplaceAll(text, u"<br />", u"\r\n");
    text = ReplaceAll(text, u"&#34;", u"\"");
    return text;
}

// ---- Writing records

// Adds one text field to OutLine. Line ends and double quotes are escaped, so
// a field is always one token on one line. An empty value becomes a quoted
// empty token, with its tab even as the first field. A single tab is written
// bare and without a tab before it; any other value with a blank or tab is
// quoted.
void MTextFile::AppendText(MString value) {
    value.ReplaceLineEnds(MString(u"<br />"));
    value = ReplaceAll(value, u"\"", u"&#34;");
    if (value.IsEmpty()) {
        OutLine += MString(u"\t\"\"");
        return;
    }
    bool singleTab = value.Length == 1 && value.Text[0] == u'\t';
    if (!OutLine.IsEmpty() && !singleTab) OutLine += MString(u"\t");
    bool quoted = false;
    for (int32_t i = 0; i < value.Length && !singleTab; i++)
        if (value.Text[i] == u' ' || value.Text[i] == u'\t') quoted = true;
    if (quoted)
        OutLine += MString(u"\"") + value + '"';
    else
        OutLine += value;
}

void MTextFile::AppendInteger(int32_t value) {
    if (!OutLine.IsEmpty()) OutLine += MString(u"\t");
    OutLine += IntegerText(value);
}

void MTextFile::AppendBool(bool value) {
    if (!OutLine.IsEmpty()) OutLine += MString(u"\t");
    OutLine += MString(value ? u"Y" : u"N");
}

namespace {
void EndRecord(MTextFile& text) {
    text.OutLine += MString(u"\r\n");
    text.WriteRaw(text.OutLine);
    text.OutLine = MString();
}
} // namespace

void MTextFile::WriteKey(const MString& key, const MString& value) {
    AppendText(key);
    AppendText(value);
    EndRecord(*this);
}

void MTextFile::WriteKey(const MString& key, int32_t value) {
    AppendText(key);
    AppendInteger(value);
    EndRecord(*this);
}

void MTextFile::WriteKey(const MString& key, bool value) {
    AppendText(key);
    AppendBool(value);
    EndRecord(*this);
}

// Writes text in Encoding, unbuffered: 8-bit keeps only the low byte of each
// character (higher characters are damaged without a report), UTF-16 goes a
// character at a time, UTF-8 is converted as a whole. Dropped when the file
// is not open for writing.
void MTextFile::WriteRaw(const MString& text) {
    if (!IsOpen || !ForWriting || text.Length <= 0) return;
    if (Encoding == EncodingUtf8) {
        MVector<char> block;
        if (!block.SetCount(text.Length * 4)) return;
        int32_t count = WideToNarrow(65001, text.Text, text.Length, block.Data, block.Count);
        if (count > 0) File.Write(block.Data, uint32_t(count));
        return;
    }
    for (int32_t i = 0; i < text.Length; i++) {
        char16_t c = text.Text[i];
        if (Encoding == Encoding8Bit) {
            uint8_t byte = uint8_t(c & 0xFF);
            File.Write(&byte, 1);
        } else {
            uint8_t low = uint8_t(c & 0xFF), high = uint8_t(c >> 8);
            uint8_t pair[2] = {low, high};
            if (Encoding == EncodingUtf16BE) {
                pair[0] = high;
                pair[1] = low;
            }
            File.Write(pair, 2);
        }
    }
}

// ---- Whole files

bool WriteTextFile(const MString& text, const MString& path, int32_t encoding) {
    if (text.IsEmpty()) return true;
    MTextFile file(path, true, false, encoding);
    if (!file.IsOpen) return false;
    file.WriteRaw(text);
    return true;
}

namespace {

// Reads everything behind the mark into a block with zero bytes after it and
// decodes it by the encoding. A trailing odd byte of UTF-16 pairs with a zero.
MString ReadWhole(MTextFile& text) {
    if (!text.IsOpen) return MString();
    int32_t count = text.File.FileSize() - text.MarkLength;
    if (count <= 0) return MString();
    MVector<uint8_t> block; // zeroed by SetCount
    if (!block.SetCount(count + 4)) return MString();
    if (!text.File.Read(block.Data, uint32_t(count))) return MString();

    MString result;
    const char* narrow = reinterpret_cast<const char*>(block.Data);
    switch (text.Encoding) {
    case EncodingUtf16LE:
    case EncodingUtf16BE: {
        int32_t units = (count + 1) / 2;
        MVector<char16_t> wide;
        if (!wide.SetCount(units + 1)) return MString();
        for (int32_t i = 0; i < units; i++) {
            uint8_t first = block[2 * i], second = block[2 * i + 1];
            wide[i] = text.Encoding == EncodingUtf16LE ? char16_t(first | (second << 8))
                                                       : char16_t((first << 8) | second);
        }
        result = MString(wide.Data);
        break;
    }
    case EncodingUtf8:
        result.AssignNarrow(narrow, 65001);
        break;
    default:
        result.AssignNarrow(narrow, 0);
        break;
    }
    return result;
}

} // namespace

MString ReadTextFile(const MString& path) {
    MTextFile file(path, false, false, Encoding8Bit);
    return ReadWhole(file);
}

MString ReadTextMemory(const void* bytes, int32_t size) {
    MTextFile file(bytes, size);
    return ReadWhole(file);
}
