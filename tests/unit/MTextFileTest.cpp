// MTextFile: marks, line ends, tokens, escapes and records in the four
// encodings, from files and from memory.

#include "foundation/MTextFile.h"

#include "ScratchFolder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace {

namespace fs = std::filesystem;

fs::path FreshPath(const fs::path& name) {
    fs::path path = scratch::Kept("mtextfile") / name;
    std::error_code ignored;
    fs::remove(path, ignored);
    return path;
}

MString PathText(const fs::path& path) {
    return MString(path.u16string().c_str());
}

void WriteBytes(const fs::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), std::streamsize(bytes.size()));
}

std::string ReadBytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::u16string Text(const MString& text) {
    return std::u16string(text.Chars());
}

// The bytes of ASCII text as UTF-16 little or big endian.
std::string Utf16(const std::string& ascii, bool bigEndian) {
    std::string bytes;
    for (char c : ascii) {
        if (bigEndian) bytes += '\0';
        bytes += c;
        if (!bigEndian) bytes += '\0';
    }
    return bytes;
}

const std::string MarkLE = "\xFF\xFE", MarkBE = "\xFE\xFF", MarkUtf8 = "\xEF\xBB\xBF";

// Reads every line of the bytes, from a file in handle mode, from a file in
// memory mode and from memory directly, and checks all three agree. Lines
// are returned with their tokens joined by "|" after a ":".
std::u16string ReadAll(const std::string& bytes) {
    fs::path path = FreshPath("read-all.txt");
    WriteBytes(path, bytes);
    std::u16string results[3];
    for (int way = 0; way < 3; way++) {
        MTextFile file = way == 2 ? MTextFile(bytes.data(), int32_t(bytes.size()))
                                  : MTextFile(PathText(path), false, way == 1, 1);
        EXPECT_TRUE(file.IsOpen);
        EXPECT_EQ(file.File.InMemory, way == 2 || (way == 1 && !bytes.empty()));
        std::u16string& all = results[way];
        while (file.ReadLine()) {
            all += Text(file.Line()) + u":";
            for (int32_t i = 0; i < file.TokenCount(); i++)
                all += (i ? u"|" : u"") + Text(file.Token(i));
            all += u"\n";
        }
        EXPECT_EQ(file.TokenCount(), 0);
        EXPECT_FALSE(file.ReadLine());
    }
    EXPECT_EQ(results[0], results[1]);
    EXPECT_EQ(results[0], results[2]);
    return results[0];
}

} // namespace

// ---- Marks

TEST(MTextFile, MarksDecideTheEncoding) {
    struct Case {
        std::string bytes;
        int32_t encoding;
        int32_t markLength;
    } cases[] = {
        {"abc", 1, 0},
        {MarkLE + "a\0", 2, 2},
        {MarkBE + "\0a", 3, 2},
        {MarkUtf8 + "a", 4, 3},
        {"\xEF\xBB"
         "a",
         1, 0}, // no third mark byte: 8-bit from the start
        {"\xFF\xFF", 1, 0},
        {"\xFE", 1, 0},
        {"", 1, 0},
    };
    for (const Case& c : cases) {
        MTextFile file(c.bytes.data(), int32_t(c.bytes.size()));
        EXPECT_EQ(file.Encoding, c.encoding) << c.bytes;
        EXPECT_EQ(file.MarkLength, c.markLength) << c.bytes;
        EXPECT_EQ(file.File.Tell(), c.markLength) << c.bytes;
    }
    EXPECT_EQ(ReadAll("\xEF\xBB"
                      "a"),
              u"\u00ef\u00bb"
              u"a:\u00ef\u00bb"
              u"a\n");
}

TEST(MTextFile, Utf8WithoutMarkIsReadAsEightBit) {
    EXPECT_EQ(ReadAll("Zo\xC3\xAB"), u"Zo\u00c3\u00ab:Zo\u00c3\u00ab\n");
}

TEST(MTextFile, AFileOfNothingButItsMarkHasNoLines) {
    EXPECT_EQ(ReadAll(MarkLE), u"");
    EXPECT_EQ(ReadAll(MarkBE), u"");
    EXPECT_EQ(ReadAll(MarkUtf8), u"");
    EXPECT_EQ(ReadAll(""), u"");
}

TEST(MTextFile, MissingFileIsClosedAndReadsNothing) {
    fs::path path = FreshPath("missing.txt");
    MTextFile file(PathText(path), false, true, 1);
    EXPECT_FALSE(file.IsOpen);
    EXPECT_FALSE(file.ReadLine());
    EXPECT_EQ(file.TokenCount(), 0);
    EXPECT_EQ(Text(file.Token(0)), u"");
    EXPECT_EQ(Text(file.Line()), u"");
    EXPECT_EQ(Text(ReadTextFile(PathText(path))), u"");
}

// ---- Line ends

TEST(MTextFile, LineEndsInEightBit) {
    EXPECT_EQ(ReadAll("a\r\nb\nc\rd"), u"a:a\nb:b\nc:c\nd:d\n");
    // A lone CR pushes back what follows it, even another CR.
    EXPECT_EQ(ReadAll("a\r\rb\r"), u"a:a\n:\nb:b\n");
    // LF CR is a line end and then a second, empty line.
    EXPECT_EQ(ReadAll("a\n\rb"), u"a:a\n:\nb:b\n");
}

TEST(MTextFile, LineEndsInUtf16) {
    EXPECT_EQ(ReadAll(MarkLE + Utf16("a\r\nb\nc\rd", false)), u"a:a\nb:b\nc:c\nd:d\n");
    EXPECT_EQ(ReadAll(MarkBE + Utf16("a\r\nb\nc\rd", true)), u"a:a\nb:b\nc:c\nd:d\n");
    EXPECT_EQ(ReadAll(MarkBE + Utf16("a\r\rb", true)), u"a:a\n:\nb:b\n");
    // A unit whose low byte is 13 or 10 is no line end in UTF-16.
    EXPECT_EQ(ReadAll(MarkLE + std::string("\x0D\x01\x0A\x01", 4)), u"\u010d\u010a:\u010d\u010a\n");
}

TEST(MTextFile, FileWithoutFinalLineEndYieldsItsLastLine) {
    EXPECT_EQ(ReadAll("first\r\nlast"), u"first:first\nlast:last\n");
    EXPECT_EQ(ReadAll(MarkLE + Utf16("first\r\nlast", false)), u"first:first\nlast:last\n");
    EXPECT_EQ(ReadAll(MarkUtf8 + "first\nlast"), u"first:first\nlast:last\n");
}

TEST(MTextFile, FileOfOneCrYieldsOneEmptyLineThenFalse) {
    std::string cr = "\r";
    MTextFile file(cr.data(), 1);
    EXPECT_TRUE(file.ReadLine());
    EXPECT_EQ(file.TokenCount(), 0);
    EXPECT_EQ(Text(file.Line()), u"");
    EXPECT_FALSE(file.ReadLine());
    EXPECT_FALSE(file.ReadLine());
    EXPECT_EQ(ReadAll(cr), u":\n");
    EXPECT_EQ(ReadAll(MarkLE + Utf16("\r", false)), u":\n");
    EXPECT_EQ(ReadAll(MarkUtf8 + "\r"), u":\n");
}

TEST(MTextFile, OddSizedUtf16FileDeliversItsLastWholeUnitAndStops) {
    std::string bytes = MarkLE + Utf16("one\r\nAB", false) + "C";
    EXPECT_EQ(ReadAll(bytes), u"one:one\nAB:AB\n");
    bytes = MarkBE + Utf16("AB", true) + "\x01";
    EXPECT_EQ(ReadAll(bytes), u"AB:AB\n");
    // A lone CR at the end whose follower is only half a unit.
    bytes = MarkLE + Utf16("A\r", false) + "B";
    EXPECT_EQ(ReadAll(bytes), u"A:A\n");
}

TEST(MTextFile, EmptyLinesGiveTrueWithNoTokens) {
    EXPECT_EQ(ReadAll("a\r\n\r\nb\n\n"), u"a:a\n:\nb:b\n:\n");
    EXPECT_EQ(ReadAll(MarkLE + Utf16("a\n\nb", false)), u"a:a\n:\nb:b\n");
    // An empty UTF-8 line is an empty line, not a failed conversion.
    EXPECT_EQ(ReadAll(MarkUtf8 + "a\r\n\r\nb"), u"a:a\n:\nb:b\n");
    EXPECT_EQ(ReadAll(MarkUtf8 + "\n\n"), u":\n:\n");
    // Blanks only: a line, but no tokens.
    EXPECT_EQ(ReadAll(" \t \n"), u" \t :\n");
}

TEST(MTextFile, Utf8LinesAreConvertedWhole) {
    EXPECT_EQ(ReadAll(MarkUtf8 + "Zo\xC3\xAB \xE2\x82\xAC\r\n\xF0\x9F\x98\x80"),
              u"Zo\u00eb \u20ac:Zo\u00eb|\u20ac\n\U0001F600:\U0001F600\n");
}

// ---- Tokens

TEST(MTextFile, TokenSplit) {
    // Runs of separators count as one; leading ones are skipped.
    EXPECT_EQ(ReadAll("  a \t b\t\tc  "), u"  a \t b\t\tc  :a|b|c\n");
    // A quoted token keeps its blanks and loses its quotes; no escape inside.
    EXPECT_EQ(ReadAll("x \"C:\\My Files\\a b.eps\" y"),
              u"x \"C:\\My Files\\a b.eps\" y:x|C:\\My Files\\a b.eps|y\n");
    // A quote inside an unquoted token is an ordinary character.
    EXPECT_EQ(ReadAll("ab\"c d\""), u"ab\"c d\":ab\"c|d\"\n");
    // An unclosed quote runs to the end of the line.
    EXPECT_EQ(ReadAll("a \"b c\nd"), u"a \"b c:a|b c\nd:d\n");
    // An empty quoted token is a token.
    EXPECT_EQ(ReadAll("a \"\" b"), u"a \"\" b:a||b\n");
    // The token ends at its closing quote; what follows begins the next.
    EXPECT_EQ(ReadAll("\"a b\"c"), u"\"a b\"c:a b|c\n");
}

TEST(MTextFile, TokenAccessors) {
    std::string bytes = "Y y Yes N \"Y\"";
    MTextFile file(bytes.data(), int32_t(bytes.size()));
    ASSERT_TRUE(file.ReadLine());
    ASSERT_EQ(file.TokenCount(), 5);
    EXPECT_TRUE(file.TokenBool(0));
    EXPECT_FALSE(file.TokenBool(1));
    EXPECT_FALSE(file.TokenBool(2));
    EXPECT_FALSE(file.TokenBool(3));
    EXPECT_TRUE(file.TokenBool(4));
    EXPECT_FALSE(file.TokenBool(5));
    EXPECT_FALSE(file.TokenBool(-1));
    EXPECT_EQ(Text(file.Token(5)), u"");
    EXPECT_EQ(Text(file.Token(-1)), u"");
    EXPECT_EQ(file.Token(5).Text, nullptr);
}

TEST(MTextFile, ManyLongTokensGrowTheirBuffers) {
    std::string line;
    std::u16string expected;
    for (int i = 0; i < 40; i++) {
        std::string token(size_t(i * 7 + 1), char('a' + i % 26));
        line += token + " ";
        expected += (i ? u"|" : u"") + std::u16string(token.begin(), token.end());
    }
    // The second line is shorter: no token of the first may linger.
    std::u16string all = ReadAll(line + "\nz");
    EXPECT_EQ(all, std::u16string(line.begin(), line.end()) + u":" + expected + u"\nz:z\n");
}

// The token array grows by 5 tokens, each token's text by 10 characters and
// the line buffers by 100 units, each growth by max(step, needed - Count): a
// line of 7 tokens of 11 characters, 83 characters in all, leaves room for
// 10 tokens of 20 characters each and a line of 100. A UTF-8 line of 150
// bytes, stored byte by byte, leaves 200 bytes of room; its conversion needs
// 151 units at once and gets exactly that.
TEST(MTextFile, BuffersGrowInTheirOwnSteps) {
    std::string line;
    for (int i = 0; i < 7; i++)
        line += (i ? " " : "") + std::string(11, char('a' + i));
    ASSERT_EQ(line.size(), 83u);
    MTextFile file(line.data(), int32_t(line.size()));
    ASSERT_TRUE(file.ReadLine());
    ASSERT_EQ(file.TokenCount(), 7);
    EXPECT_EQ(file.Tokens.Items.Count, 10);
    for (int32_t i = 0; i < 7; i++)
        EXPECT_EQ(file.Tokens.Items[i].Count, 20) << i;
    EXPECT_EQ(file.WideLine.Count, 100);
    EXPECT_EQ(file.Tokens.Line.Count, 100);

    std::string utf8 = MarkUtf8 + std::string(150, 'u');
    MTextFile wide(utf8.data(), int32_t(utf8.size()));
    ASSERT_TRUE(wide.ReadLine());
    EXPECT_EQ(wide.ByteLine.Count, 200);
    EXPECT_EQ(wide.WideLine.Count, 151);
}

// ---- Escapes

TEST(MTextFile, EscapesAreDecodedInLinesAndTokens) {
    // Tokens are split before decoding, so the blanks of "<br />" and
    // "<NEW LINE>" separate unless the token is quoted.
    EXPECT_EQ(ReadAll("a<br />b &#34;q&#34; <NEW LINE> <QUOTE>"),
              u"a\r\nb \"q\" \r\n \":a<br|/>b|\"q\"|<NEW|LINE>|\"\n");
    EXPECT_EQ(ReadAll("\"a<br />b\" \"<NEW LINE>\"<QUOTE>"),
              u"\"a\r\nb\" \"\r\n\"\":a\r\nb|\r\n|\"\n");
    // Escapes decode inside quoted tokens too.
    EXPECT_EQ(ReadAll("\"x &#34; y\""), u"\"x \" y\":x \" y\n");
    EXPECT_EQ(Text(DecodeEscapes(MString(u"&#3&#34;4;"))), u"&#3\"4;");
}

// ---- Writing records

TEST(MTextFile, SettingsRecordBytesInEachEncoding) {
    std::string record = "PenSize\t2\r\n";
    const std::string expected[5] = {"", record, MarkLE + Utf16(record, false),
                                     MarkBE + Utf16(record, true), MarkUtf8 + record};
    for (int32_t encoding = 1; encoding <= 4; encoding++) {
        fs::path path = FreshPath("record.txt");
        {
            MTextFile file(PathText(path), true, false, encoding);
            EXPECT_TRUE(file.IsOpen);
            EXPECT_EQ(file.Encoding, encoding);
            file.WriteKey(MString(u"PenSize"), 2);
            EXPECT_EQ(file.OutLine.Text, nullptr);
        }
        EXPECT_EQ(ReadBytes(path), expected[encoding]) << encoding;
    }
}

TEST(MTextFile, RecordFields) {
    fs::path path = FreshPath("fields.txt");
    {
        MTextFile file(PathText(path), true, false, 1);
        file.WriteKey(MString(u"Show"), true);
        file.WriteKey(MString(u"Grid"), false);
        file.WriteKey(MString(u"Offset"), -17);
        file.WriteKey(MString(u"Name"), u"plain");
        file.WriteKey(MString(u"Folder"), u"C:\\My Shows\\a b");
        file.WriteKey(MString(u"Quote"), u"say \"hi\"");
        file.WriteKey(MString(u"Lines"), u"one\r\ntwo\rthree");
        file.WriteKey(MString(u"Empty"), MString());
        file.AppendText(MString(u"Size"));
        file.AppendText(MString(1.5f));
        file.AppendInteger(3);
        file.AppendBool(true);
        file.WriteRaw(file.OutLine + "\r\n");
    }
    EXPECT_EQ(ReadBytes(path), "Show\tY\r\n"
                               "Grid\tN\r\n"
                               "Offset\t-17\r\n"
                               "Name\tplain\r\n"
                               "Folder\t\"C:\\My Shows\\a b\"\r\n"
                               "Quote\t\"say &#34;hi&#34;\"\r\n"
                               "Lines\t\"one<br />two<br />three\"\r\n"
                               "Empty\t\"\"\r\n"
                               "Size\t1.5\t3\tY\r\n");

    MTextFile file(PathText(path), false, true, 1);
    ASSERT_TRUE(file.ReadLine());
    EXPECT_TRUE(file.TokenBool(1));
    ASSERT_TRUE(file.ReadLine());
    EXPECT_FALSE(file.TokenBool(1));
    ASSERT_TRUE(file.ReadLine());
    EXPECT_EQ(ParseInteger(file.Token(1)), -17);
    ASSERT_TRUE(file.ReadLine());
    EXPECT_EQ(Text(file.Token(1)), u"plain");
    ASSERT_TRUE(file.ReadLine());
    EXPECT_EQ(file.TokenCount(), 2);
    EXPECT_EQ(Text(file.Token(1)), u"C:\\My Shows\\a b");
    ASSERT_TRUE(file.ReadLine());
    EXPECT_EQ(file.TokenCount(), 2);
    EXPECT_EQ(Text(file.Token(1)), u"say \"hi\"");
    ASSERT_TRUE(file.ReadLine());
    EXPECT_EQ(Text(file.Token(1)), u"one\r\ntwo\r\nthree");
    ASSERT_TRUE(file.ReadLine());
    EXPECT_EQ(file.TokenCount(), 2);
    EXPECT_EQ(Text(file.Token(1)), u"");
    ASSERT_TRUE(file.ReadLine());
    EXPECT_EQ(file.TokenCount(), 4);
    EXPECT_EQ(ParseFloat(file.Token(1)), 1.5f);
    EXPECT_FALSE(file.ReadLine());
}

TEST(MTextFile, AppendTextOfAnEmptyValueIsAQuotedEmptyToken) {
    MTextFile file(nullptr, 0);
    file.AppendText(MString());
    EXPECT_EQ(Text(file.OutLine), u"\t\"\""); // the tab even as the first field
    file.AppendText(MString(u"a"));
    file.AppendText(MString(u""));
    EXPECT_EQ(Text(file.OutLine), u"\t\"\"\ta\t\"\"");
}

TEST(MTextFile, AppendTextOfASingleTab) {
    MTextFile file(nullptr, 0);
    file.AppendText(MString(u"\t"));
    EXPECT_EQ(Text(file.OutLine), u"\t");
    file.AppendText(MString(u"\t"));
    EXPECT_EQ(Text(file.OutLine), u"\t\t");
    file.AppendText(MString(u"x"));
    file.AppendText(MString(u"\t"));
    EXPECT_EQ(Text(file.OutLine), u"\t\t\tx\t");
    // A value that merely holds a tab is quoted.
    file.OutLine = MString();
    file.AppendText(MString(u"a\tb"));
    EXPECT_EQ(Text(file.OutLine), u"\"a\tb\"");
}

TEST(MTextFile, AppendNumbersAndBooleans) {
    MTextFile file(nullptr, 0);
    file.AppendInteger(-5);
    EXPECT_EQ(Text(file.OutLine), u"-5");
    file.AppendBool(false);
    file.AppendBool(true);
    file.AppendInteger(0);
    EXPECT_EQ(Text(file.OutLine), u"-5\tN\tY\t0");
}

TEST(MTextFile, QuoteInAValueIsWrittenEscapedAndReadsBack) {
    fs::path path = FreshPath("quote.txt");
    {
        MTextFile file(PathText(path), true, false, 1);
        file.WriteKey(MString(u"Text"), u"a\"b");
    }
    EXPECT_EQ(ReadBytes(path), "Text\ta&#34;b\r\n");
    MTextFile file(PathText(path), false, false, 1);
    ASSERT_TRUE(file.ReadLine());
    EXPECT_EQ(Text(file.Token(1)), u"a\"b");
    EXPECT_EQ(Text(file.Line()), u"Text\ta\"b");
}

TEST(MTextFile, TwoLineValueIsWrittenAsOneLineAndReadsBackWithCrLf) {
    fs::path path = FreshPath("twolines.txt");
    {
        MTextFile file(PathText(path), true, false, 1);
        file.WriteKey(MString(u"Note"), u"first\nsecond");
    }
    // The escape holds a blank, so the field is quoted.
    EXPECT_EQ(ReadBytes(path), "Note\t\"first<br />second\"\r\n");
    MTextFile file(PathText(path), false, false, 1);
    ASSERT_TRUE(file.ReadLine());
    EXPECT_EQ(Text(file.Token(1)), u"first\r\nsecond");
    EXPECT_FALSE(file.ReadLine());
}

TEST(MTextFile, PathWithABlankIsQuotedAndReadsBackAsOneToken) {
    fs::path path = FreshPath("path.txt");
    {
        MTextFile file(PathText(path), true, false, 2);
        file.WriteKey(MString(u"LastFile"), u"C:\\Users\\Ann Lee\\My Sketch.eps");
    }
    EXPECT_EQ(ReadBytes(path),
              MarkLE + Utf16("LastFile\t\"C:\\Users\\Ann Lee\\My Sketch.eps\"\r\n", false));
    MTextFile file(PathText(path), false, true, 1);
    ASSERT_TRUE(file.ReadLine());
    ASSERT_EQ(file.TokenCount(), 2);
    EXPECT_EQ(Text(file.Token(0)), u"LastFile");
    EXPECT_EQ(Text(file.Token(1)), u"C:\\Users\\Ann Lee\\My Sketch.eps");
}

TEST(MTextFile, RoundTripInAllEncodings) {
    const char16_t* values[] = {u"a b", u"quote \" here", u"two\r\nlines", u"", u"x"};
    for (int32_t encoding = 1; encoding <= 4; encoding++) {
        fs::path path = FreshPath("roundtrip.txt");
        {
            MTextFile file(PathText(path), true, false, encoding);
            for (const char16_t* value : values)
                file.WriteKey(MString(u"Key"), value);
            file.WriteKey(MString(u"Count"), 42);
            file.WriteKey(MString(u"Flag"), true);
        }
        for (bool toMemory : {false, true}) {
            MTextFile file(PathText(path), false, toMemory, 1);
            EXPECT_EQ(file.Encoding, encoding);
            for (const char16_t* value : values) {
                ASSERT_TRUE(file.ReadLine()) << encoding;
                EXPECT_EQ(file.TokenCount(), 2) << encoding;
                EXPECT_EQ(Text(file.Token(1)), value) << encoding;
            }
            ASSERT_TRUE(file.ReadLine());
            EXPECT_EQ(ParseInteger(file.Token(1)), 42);
            ASSERT_TRUE(file.ReadLine());
            EXPECT_TRUE(file.TokenBool(1));
            EXPECT_FALSE(file.ReadLine());
        }
    }
}

TEST(MTextFile, NonAsciiRoundTripsInUtf8AndUtf16) {
    const char16_t* value = u"Zo\u00eb \u03a9 \u20ac \u6f22 \U0001F600";
    for (int32_t encoding = 2; encoding <= 4; encoding++) {
        fs::path path = FreshPath("wide.txt");
        {
            MTextFile file(PathText(path), true, false, encoding);
            file.WriteKey(MString(u"Name"), value);
        }
        MTextFile file(PathText(path), false, false, 1);
        ASSERT_TRUE(file.ReadLine());
        EXPECT_EQ(Text(file.Token(1)), value) << encoding;
        EXPECT_EQ(Text(ReadTextFile(PathText(path))),
                  u"Name\t\"" + std::u16string(value) + u"\"\r\n");
    }
    fs::path path = FreshPath("utf8.txt");
    {
        MTextFile file(PathText(path), true, false, 4);
        file.WriteRaw(MString(u"\u00eb\u20ac"));
    }
    EXPECT_EQ(ReadBytes(path), MarkUtf8 + "\xC3\xAB\xE2\x82\xAC");
}

TEST(MTextFile, CharactersAbove255AreDamagedInEightBit) {
    fs::path path = FreshPath("damaged.txt");
    {
        MTextFile file(PathText(path), true, false, 1);
        file.WriteRaw(MString(u"\u00e9\u03a9\u20ac"));
    }
    // The low bytes only: U+03A9 keeps A9, U+20AC keeps AC.
    EXPECT_EQ(ReadBytes(path), "\xE9\xA9\xAC");
    EXPECT_EQ(Text(ReadTextFile(PathText(path))), u"\u00e9\u00a9\u00ac");
}

TEST(MTextFile, Utf16BigEndianBytes) {
    fs::path path = FreshPath("be.txt");
    {
        MTextFile file(PathText(path), true, false, 3);
        file.WriteRaw(MString(u"A\u20ac"));
    }
    EXPECT_EQ(ReadBytes(path), MarkBE + std::string("\x00\x41\x20\xAC", 4));
    path = FreshPath("le.txt");
    {
        MTextFile file(PathText(path), true, false, 2);
        file.WriteRaw(MString(u"A\u20ac"));
    }
    EXPECT_EQ(ReadBytes(path), MarkLE + std::string("\x41\x00\xAC\x20", 4));
}

TEST(MTextFile, UnendedRecordIsLost) {
    fs::path path = FreshPath("unended.txt");
    {
        MTextFile file(PathText(path), true, false, 2);
        file.WriteKey(MString(u"A"), 1);
        file.AppendText(MString(u"B"));
        file.AppendInteger(2);
    }
    EXPECT_EQ(ReadBytes(path), MarkLE + Utf16("A\t1\r\n", false));
}

TEST(MTextFile, InvalidEncodingForWritingLeavesItClosed) {
    for (int32_t encoding : {0, 5, -1}) {
        fs::path path = FreshPath("invalid.txt");
        {
            MTextFile file(PathText(path), true, false, encoding);
            EXPECT_FALSE(file.IsOpen);
            file.WriteKey(MString(u"PenSize"), 2);
            file.WriteRaw(MString(u"text"));
        }
        EXPECT_EQ(ReadBytes(path), "");
    }
}

TEST(MTextFile, WritesToAReaderAreDropped) {
    fs::path path = FreshPath("reader.txt");
    WriteBytes(path, "keep");
    {
        MTextFile file(PathText(path), false, false, 1);
        file.WriteKey(MString(u"PenSize"), 2);
        file.WriteRaw(MString(u"text"));
    }
    EXPECT_EQ(ReadBytes(path), "keep");
}

TEST(MTextFile, OpeningForWritingTruncates) {
    fs::path path = FreshPath("truncate.txt");
    WriteBytes(path, "a long old text that must vanish");
    { MTextFile file(PathText(path), true, false, 1); }
    EXPECT_EQ(ReadBytes(path), "");
    WriteBytes(path, "a long old text that must vanish");
    { MTextFile file(PathText(path), true, false, 4); }
    EXPECT_EQ(ReadBytes(path), MarkUtf8);
}

TEST(MTextFile, ReadingALineFromAWriterGivesFalse) {
    fs::path path = FreshPath("writer.txt");
    MTextFile file(PathText(path), true, false, 1);
    file.WriteRaw(MString(u"line\r\n"));
    EXPECT_FALSE(file.ReadLine());
}

// ---- Whole files

TEST(MTextFile, WriteTextFileReplacesAFile) {
    fs::path path = FreshPath("whole.txt");
    WriteBytes(path, "old old old old");
    EXPECT_TRUE(WriteTextFile(MString(u"new\r\ntext"), PathText(path), 2));
    EXPECT_EQ(ReadBytes(path), MarkLE + Utf16("new\r\ntext", false));
    EXPECT_TRUE(WriteTextFile(MString(u"new"), PathText(path), 1));
    EXPECT_EQ(ReadBytes(path), "new");
}

TEST(MTextFile, WriteTextFileOfEmptyTextTouchesNothing) {
    fs::path path = FreshPath("untouched.txt");
    EXPECT_TRUE(WriteTextFile(MString(), PathText(path), 2));
    EXPECT_FALSE(fs::exists(path));
    WriteBytes(path, "kept");
    EXPECT_TRUE(WriteTextFile(MString(u""), PathText(path), 1));
    EXPECT_EQ(ReadBytes(path), "kept");
}

TEST(MTextFile, WriteTextFileFailsWhereNoFileCanBeOpened) {
    fs::path path = FreshPath("no-such-folder") / "file.txt";
    EXPECT_FALSE(WriteTextFile(MString(u"x"), PathText(path), 1));
    EXPECT_FALSE(WriteTextFile(MString(u"x"), PathText(FreshPath("bad.txt")), 7));
}

TEST(MTextFile, ReadTextFileInAllEncodings) {
    const char16_t* text = u"line one\r\nZo\u00eb \u20ac\r\nlast";
    for (int32_t encoding = 1; encoding <= 4; encoding++) {
        fs::path path = FreshPath("read-whole.txt");
        ASSERT_TRUE(WriteTextFile(MString(text), PathText(path), encoding));
        std::u16string expected = text;
        if (encoding == 1) expected = u"line one\r\nZo\u00eb \u00ac\r\nlast";
        EXPECT_EQ(Text(ReadTextFile(PathText(path))), expected) << encoding;
        std::string bytes = ReadBytes(path);
        EXPECT_EQ(Text(ReadTextMemory(bytes.data(), int32_t(bytes.size()))), expected);
    }
}

TEST(MTextFile, ReadTextFileOfEmptyOrMarkOnlyFilesIsEmpty) {
    for (const std::string& bytes : {std::string(), MarkLE, MarkBE, MarkUtf8}) {
        fs::path path = FreshPath("mark-only.txt");
        WriteBytes(path, bytes);
        MString text = ReadTextFile(PathText(path));
        EXPECT_EQ(text.Text, nullptr);
        EXPECT_EQ(text.Length, 0);
    }
}

TEST(MTextFile, ReadTextFileOfOddSizedUtf16) {
    std::string bytes = MarkLE + Utf16("AB", false) + "C";
    EXPECT_EQ(Text(ReadTextMemory(bytes.data(), int32_t(bytes.size()))), u"ABC");
    bytes = MarkBE + Utf16("AB", true) + "\x01";
    EXPECT_EQ(Text(ReadTextMemory(bytes.data(), int32_t(bytes.size()))), u"AB\u0100");
}

// ---- Lines of 8-bit text in memory against a byte at a time

namespace {

// Text of the kinds the readers meet, in small random pieces: numbers,
// words, blanks and tabs, quotes, escapes, every line end, zero bytes and
// bytes above 127.
std::string RandomText(std::mt19937& random, int32_t pieces) {
    static const char* const parts[] = {
        "12", "-3.5",    "0.000001", "moveto", " ",       "  ",         "\t",
        "\"", "\"a b\"", "<br />",   "&#34;",  "<QUOTE>", "<NEW LINE>", "\n",
        "\r", "\r\n",    "\n\r",     "%%EOF",  "1e5",     "nan",        "x"};
    std::string text;
    for (int32_t i = 0; i < pieces; i++) {
        uint32_t pick = random() % 24;
        if (pick < 21)
            text += parts[pick];
        else
            text += char(random() % 256);
    }
    return text;
}

} // namespace

TEST(MTextFile, LinesInMemoryReadAsByteByByteFromTheFile) {
    std::mt19937 random(31u);
    const MString words[] = {MString(u"moveto"), MString(u"a b"), MString(u"\""), MString()};
    for (int32_t round = 0; round < 300; round++) {
        std::string bytes = RandomText(random, 1 + round % 120);
        if (round % 7 == 0 && !bytes.empty()) bytes.back() = '\r';
        fs::path path = FreshPath("lines.txt");
        WriteBytes(path, bytes);
        MTextFile slow(PathText(path), false, false, 1);
        MTextFile fast(bytes.data(), int32_t(bytes.size()));
        ASSERT_FALSE(slow.File.InMemory);
        for (int32_t line = 0;; line++) {
            bool more = slow.ReadLine();
            ASSERT_EQ(fast.ReadLine(), more) << "round " << round << " line " << line;
            ASSERT_EQ(fast.File.Tell(), slow.File.Tell()) << "round " << round;
            ASSERT_EQ(Text(fast.Line()), Text(slow.Line()));
            ASSERT_EQ(fast.TokenCount(), slow.TokenCount());
            for (int32_t i = -1; i <= slow.TokenCount(); i++) {
                ASSERT_EQ(Text(fast.Token(i)), Text(slow.Token(i)));
                float value = ParseFloat(slow.Token(i));
                float quick = fast.TokenFloat(i);
                ASSERT_TRUE(std::memcmp(&value, &quick, sizeof value) == 0 ||
                            (value != value && quick != quick));
                for (const MString& word : words)
                    ASSERT_EQ(fast.TokenIs(i, word), slow.Token(i) == word);
            }
            if (!more) break;
        }
    }
}
