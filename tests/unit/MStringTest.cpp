// MString: storage rules, editing, paths, lines, and the number texts that
// the file formats rest on.

#include "foundation/MString.h"

#include "foundation/Platform.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <limits>
#include <random>
#include <string>

namespace {

std::u16string U(const MString& s) {
    return std::u16string(s.Chars());
}

// The text of a 7-bit string as bytes, for comparison with printf output.
std::string Ascii(const MString& s) {
    std::string out;
    for (int32_t i = 0; i < s.Length; i++)
        out += char(s.Text[i]);
    return out;
}

// The expected text of a float, worked out apart from MString: printf of the
// widened value, then trailing zeros and a bare point cut, "-0" made "0".
std::string ExpectedFloatText(float value) {
    char buffer[512];
    std::snprintf(buffer, sizeof buffer, "%f", double(value));
    std::string text = buffer;
    if (text.find('.') != std::string::npos) {
        while (!text.empty() && text.back() == '0')
            text.pop_back();
        if (!text.empty() && text.back() == '.') text.pop_back();
    }
    if (text == "-0") text = "0";
    return text;
}

float FloatFromBits(uint32_t bits) {
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

} // namespace

// ---- Construction and storage

TEST(MString, DefaultAndEmptyCopiesHoldNullText) {
    MString empty;
    EXPECT_EQ(empty.Text, nullptr);
    EXPECT_EQ(empty.Length, 0);
    EXPECT_EQ(empty.Capacity, 0);
    MString copy(empty);
    EXPECT_EQ(copy.Text, nullptr);
    MString fromNull(static_cast<const char16_t*>(nullptr));
    EXPECT_EQ(fromNull.Text, nullptr);
    MString fromEmpty(u"");
    EXPECT_EQ(fromEmpty.Text, nullptr);
    EXPECT_EQ(fromEmpty.Capacity, 0);
    EXPECT_STREQ(reinterpret_cast<const char*>(empty.Chars()), "");
}

TEST(MString, CopyHasExactCapacityAndOwnBlock) {
    MString a(u"hello");
    EXPECT_EQ(a.Length, 5);
    EXPECT_EQ(a.Capacity, 6);
    a.Reserve(40, true);
    MString b(a);
    EXPECT_EQ(b.Capacity, 6);
    EXPECT_NE(b.Text, a.Text);
    EXPECT_EQ(U(b), u"hello");
}

TEST(MString, MoveTakesTheBlock) {
    MString a(u"abc");
    char16_t* block = a.Text;
    MString b(std::move(a));
    EXPECT_EQ(b.Text, block);
    EXPECT_EQ(a.Text, nullptr);
    EXPECT_EQ(a.Length, 0);
    MString c;
    c = std::move(b);
    EXPECT_EQ(c.Text, block);
    EXPECT_EQ(b.Text, nullptr);
    EXPECT_EQ(U(c), u"abc");
}

TEST(MString, ReserveZeroFreesText) {
    MString s(u"abc");
    EXPECT_TRUE(s.Reserve(0, true));
    EXPECT_EQ(s.Text, nullptr);
    EXPECT_EQ(s.Length, 0);
    EXPECT_EQ(s.Capacity, 0);
    s = u"abc";
    EXPECT_TRUE(s.Reserve(-3, false));
    EXPECT_EQ(s.Text, nullptr);
}

TEST(MString, ReserveGrowsToTwiceOrTheRequest) {
    MString s(u"abcd"); // capacity 5
    EXPECT_TRUE(s.Reserve(7, true));
    EXPECT_EQ(s.Capacity, 10);
    EXPECT_EQ(U(s), u"abcd");
    EXPECT_TRUE(s.Reserve(50, true));
    EXPECT_EQ(s.Capacity, 50);
    EXPECT_EQ(s.Length, 4);
    EXPECT_EQ(U(s), u"abcd");
}

TEST(MString, ReserveWithoutKeepEmpties) {
    MString s(u"abcd");
    EXPECT_TRUE(s.Reserve(20, false));
    EXPECT_EQ(s.Capacity, 20);
    EXPECT_EQ(s.Length, 0);
    ASSERT_NE(s.Text, nullptr);
    EXPECT_EQ(s.Text[0], 0);

    // Enough room already: the block stays, the text goes unless kept.
    MString t(u"abcdef");
    char16_t* block = t.Text;
    EXPECT_TRUE(t.Reserve(3, true));
    EXPECT_EQ(t.Text, block);
    EXPECT_EQ(U(t), u"abcdef");
    EXPECT_TRUE(t.Reserve(3, false));
    EXPECT_EQ(t.Text, block);
    EXPECT_EQ(t.Length, 0);
    EXPECT_EQ(t.Capacity, 7);
    EXPECT_EQ(t.Text[0], 0);
}

TEST(MString, ReserveOnNullText) {
    MString s;
    EXPECT_TRUE(s.Reserve(8, true));
    EXPECT_EQ(s.Capacity, 8);
    EXPECT_EQ(s.Length, 0);
    ASSERT_NE(s.Text, nullptr);
    EXPECT_EQ(s.Text[0], 0);
}

// ---- Narrow text

TEST(MString, CodePageZeroWidensBytesUnsigned) {
    MString s;
    s.AssignNarrow("a\xE9\x80z", 0);
    ASSERT_EQ(s.Length, 4);
    EXPECT_EQ(s.Capacity, 5);
    EXPECT_EQ(s.Text[0], u'a');
    EXPECT_EQ(s.Text[1], char16_t(0xE9));
    EXPECT_EQ(s.Text[2], char16_t(0x80));
    EXPECT_EQ(s.Text[3], u'z');
    EXPECT_EQ(U(Narrow("plain")), u"plain");
}

TEST(MString, AssignNarrowOfNothingEmpties) {
    MString s(u"abc");
    s.AssignNarrow("", 0);
    EXPECT_EQ(s.Text, nullptr);
    EXPECT_EQ(s.Length, 0);
    s = u"abc";
    s.AssignNarrow(nullptr, 65001);
    EXPECT_EQ(s.Text, nullptr);
    EXPECT_EQ(s.Capacity, 0);
}

TEST(MString, AssignNarrowThroughUtf8AndWindows1252) {
    MString s;
    s.AssignNarrow("h\xC3\xA9llo \xF0\x9F\x98\x80", 65001);
    EXPECT_EQ(U(s), u"h\u00E9llo \U0001F600");
    EXPECT_EQ(s.Length, 8);
    EXPECT_EQ(s.Capacity, 2 * 11); // a buffer of twice the byte count
    s.AssignNarrow("\x80 caf\xE9 \x9F", 1252);
    EXPECT_EQ(U(s), u"\u20AC caf\u00E9 \u0178");
    EXPECT_EQ(s.Length, 8);
}

// ---- Assignment and joining

TEST(MString, AssignmentOfSameTextIsANoOp) {
    MString s(u"same");
    char16_t* block = s.Text;
    s = s;
    EXPECT_EQ(s.Text, block);
    s = s.Text;
    EXPECT_EQ(s.Text, block);
    EXPECT_EQ(U(s), u"same");
}

TEST(MString, AssignmentOfEmptySourceFrees) {
    MString s(u"abc");
    s = MString();
    EXPECT_EQ(s.Text, nullptr);
    EXPECT_EQ(s.Length, 0);
    EXPECT_EQ(s.Capacity, 0);
    s = u"xyz";
    EXPECT_EQ(U(s), u"xyz");
    s = u"";
    EXPECT_EQ(s.Text, nullptr);
    s = static_cast<const char16_t*>(nullptr);
    EXPECT_EQ(s.Text, nullptr);
}

TEST(MString, AssignmentFromInsideOwnText) {
    MString s(u"abcdef");
    s = s.Text + 2;
    EXPECT_EQ(U(s), u"cdef");
}

TEST(MString, PlusGivesExactCapacity) {
    MString a(u"abc");
    a.Reserve(30, true);
    MString joined = a + MString(u"de");
    EXPECT_EQ(U(joined), u"abcde");
    EXPECT_EQ(joined.Capacity, 6);
    MString withNarrow = a + "xy";
    EXPECT_EQ(U(withNarrow), u"abcxy");
    EXPECT_EQ(withNarrow.Capacity, 6);
    MString withChar = a + '!';
    EXPECT_EQ(U(withChar), u"abc!");
    EXPECT_EQ(withChar.Capacity, 5);
    MString high = a + '\xE9';
    EXPECT_EQ(high.Text[3], char16_t(0xE9));
}

TEST(MString, PlusWithEmptyRightSideCopiesLeft) {
    MString a(u"abc");
    a.Reserve(30, true);
    MString b = a + MString();
    EXPECT_EQ(U(b), u"abc");
    EXPECT_NE(b.Text, a.Text);
    EXPECT_EQ(b.Capacity, 4);
    MString c = a + "";
    EXPECT_EQ(c.Capacity, 4);
    MString d = MString() + MString();
    EXPECT_EQ(d.Text, nullptr);
    MString e = MString() + "x";
    EXPECT_EQ(U(e), u"x");
}

TEST(MString, AppendInPlace) {
    MString s;
    s += MString(u"ab");
    s += MString();
    s += MString(u"cd");
    EXPECT_EQ(U(s), u"abcd");
    s += s;
    EXPECT_EQ(U(s), u"abcdabcd");
    EXPECT_EQ(s.Length, 8);
}

TEST(MString, FindAndEquality) {
    MString s(u"abcabc");
    EXPECT_EQ(s.Find(MString(u"bc")), 1);
    EXPECT_EQ(s.Find(MString(u"bc"), 2), 4);
    EXPECT_EQ(s.Find(MString(u"x")), -1);
    EXPECT_EQ(s.Find(MString()), -1);
    EXPECT_EQ(MString().Find(MString(u"a")), -1);
    EXPECT_TRUE(MString(u"abc") == Narrow("abc"));
    EXPECT_TRUE(MString() == MString(u""));
    MString emptied(u"x");
    emptied.Reserve(5, false); // non-null block, no text
    EXPECT_TRUE(emptied == MString());
    EXPECT_TRUE(MString(u"abc") != MString(u"abC"));
}

// ---- Left

TEST(MString, LeftUpToAndIncludingIndex) {
    MString s(u"abcdef");
    EXPECT_EQ(U(s.Left(2)), u"abc");
    EXPECT_EQ(U(s.Left(0)), u"a");
    EXPECT_EQ(U(s.Left(5)), u"abcdef");
}

TEST(MString, LeftOfMinusOneCopiesWholeText) {
    MString s(u"abcdef");
    MString all = s.Left(-1);
    EXPECT_EQ(U(all), u"abcdef");
    EXPECT_NE(all.Text, s.Text);
    EXPECT_EQ(U(s.Left(6)), u"abcdef");
    EXPECT_EQ(U(s.Left(1000)), u"abcdef");
    EXPECT_EQ(MString().Left(3).Text, nullptr);
}

// ---- ReplaceFirst and ReplaceLineEnds

TEST(MString, ReplaceFirstOnlyTheFirst) {
    MString s(u"one two one");
    s.ReplaceFirst(MString(u"one"), MString(u"three"));
    EXPECT_EQ(U(s), u"three two one");
    EXPECT_EQ(s.Capacity, s.Length + 1);
    s.ReplaceFirst(MString(u"ONE"), MString(u"x")); // case sensitive
    EXPECT_EQ(U(s), u"three two one");
    s.ReplaceFirst(MString(u" two"), MString());
    EXPECT_EQ(U(s), u"three one");
    EXPECT_EQ(s.Capacity, 10);
}

TEST(MString, ReplaceFirstWithFindEqualToWithReturnsAtOnce) {
    MString s(u"aXa");
    s.Reserve(40, true);
    char16_t* block = s.Text;
    s.ReplaceFirst(MString(u"a"), MString(u"a"));
    // Untouched: no new block of exact size was made.
    EXPECT_EQ(s.Text, block);
    EXPECT_EQ(s.Capacity, 40);
    EXPECT_EQ(U(s), u"aXa");
}

TEST(MString, ReplaceFirstDoesNothingOnEmptyInputs) {
    MString empty;
    empty.ReplaceFirst(MString(u"a"), MString(u"b"));
    EXPECT_EQ(empty.Text, nullptr);
    MString s(u"abc");
    s.Reserve(40, true);
    s.ReplaceFirst(MString(), MString(u"b"));
    EXPECT_EQ(s.Capacity, 40);
    s.ReplaceFirst(MString(u"zz"), MString(u"b"));
    EXPECT_EQ(U(s), u"abc");
}

TEST(MString, ReplaceLineEndsMakesThreeLinesWithLineFeeds) {
    MString s(u"first\r\nsecond\rthird");
    s.ReplaceLineEnds(MString(u"\n"));
    EXPECT_EQ(U(s), u"first\nsecond\nthird");
}

TEST(MString, ReplaceLineEndsTurnsCrLfIntoOneReplacement) {
    MString s(u"a\r\nb\nc\rd\r\n");
    s.ReplaceLineEnds(MString(u"<br>"));
    EXPECT_EQ(U(s), u"a<br>b<br>c<br>d<br>");
    MString gone(u"a\r\nb\nc");
    gone.ReplaceLineEnds(MString(u" "));
    EXPECT_EQ(U(gone), u"a b c");
}

TEST(MString, ReplaceLineEndsSkipsPatternsInsideWith) {
    // "\n" and "\r" both occur inside "\r\n", so lone ends stay as they are.
    MString s(u"a\nb\rc\r\nd");
    s.ReplaceLineEnds(MString(u"\r\n"));
    EXPECT_EQ(U(s), u"a\nb\rc\r\nd");
    MString t(u"a\r\nb\nc");
    t.ReplaceLineEnds(MString(u"\r"));
    EXPECT_EQ(U(t), u"a\rb\rc");
}

// ---- Remove and Trim

TEST(MString, RemoveEveryOccurrenceKeepsCapacity) {
    MString s(u"a.b.c.");
    s.Remove(u'.');
    EXPECT_EQ(U(s), u"abc");
    EXPECT_EQ(s.Length, 3);
    EXPECT_EQ(s.Capacity, 7);
    MString empty;
    empty.Remove(u'x');
    EXPECT_EQ(empty.Text, nullptr);
}

TEST(MString, TrimRemovesControlsSpacesAndDelete) {
    MString s(u"\t \x7F  hello world\r\n\x01 ");
    int32_t capacity = s.Capacity;
    s.Trim();
    EXPECT_EQ(U(s), u"hello world");
    EXPECT_EQ(s.Capacity, capacity);
    MString kept(u"\x80x\x80"); // 128 is no blank
    kept.Trim();
    EXPECT_EQ(kept.Length, 3);
}

TEST(MString, TrimOfOnlySpacesLeavesNullText) {
    MString s(u"     ");
    s.Trim();
    EXPECT_EQ(s.Text, nullptr);
    EXPECT_EQ(s.Length, 0);
    EXPECT_EQ(s.Capacity, 0);
    MString empty;
    empty.Trim();
    EXPECT_EQ(empty.Text, nullptr);
}

// ---- FileExtension and SetFileExtension

TEST(MString, FileExtensionOfUrlWithDottedQueryAndFragment) {
    MString url(u"https://media.example.com/clips/intro.mp4?v=1.25&s=x.y#t=3.5");
    EXPECT_EQ(U(url.FileExtension()), u"MP4");
}

TEST(MString, FileExtensionOfPathWithDotOnlyInFolderIsEmpty) {
    EXPECT_TRUE(MString(u"C:\\Sketches.old\\logo").FileExtension().IsEmpty());
    EXPECT_TRUE(MString(u"/home/me/my.sketches/logo").FileExtension().IsEmpty());
}

TEST(MString, FileExtensionBasics) {
    EXPECT_EQ(U(MString(u"C:\\Pictures\\photo.JpEg").FileExtension()), u"JPEG");
    EXPECT_EQ(U(MString(u"a.b.tga").FileExtension()), u"TGA");
    EXPECT_EQ(U(MString(u"clip.mov#start").FileExtension()), u"MOV");
    EXPECT_TRUE(MString(u"a.").FileExtension().IsEmpty());     // shorter than 3
    EXPECT_TRUE(MString(u"abcdef").FileExtension().IsEmpty()); // no dot
    EXPECT_TRUE(MString(u"http://x.com/").FileExtension().IsEmpty());
    EXPECT_TRUE(MString(u"file.").FileExtension().IsEmpty());
    EXPECT_TRUE(MString(u"page?a=b.c").FileExtension().IsEmpty()); // dot only in query
    EXPECT_TRUE(MString().FileExtension().IsEmpty());
}

TEST(MString, SetFileExtensionReplacesOrAppends) {
    MString a(u"C:\\Sketches\\logo.eps");
    a.SetFileExtension(MString(u"cnd"));
    EXPECT_EQ(U(a), u"C:\\Sketches\\logo.cnd");
    MString b(u"C:\\Sketches.old\\logo");
    b.SetFileExtension(MString(u".e.p.s"));
    EXPECT_EQ(U(b), u"C:\\Sketches.old\\logo.eps");
    MString c(u"media/clips.v2/intro");
    c.SetFileExtension(MString(u"png"));
    EXPECT_EQ(U(c), u"media/clips.v2/intro.png");
    MString d(u"C:logo");
    d.SetFileExtension(MString(u"eps"));
    EXPECT_EQ(U(d), u"C:logo.eps");
    MString e(u"a.b.c");
    e.SetFileExtension(MString(u"d"));
    EXPECT_EQ(U(e), u"a.b.d");
}

TEST(MString, SetFileExtensionDoesNothingWhenEitherIsEmpty) {
    MString path;
    path.SetFileExtension(MString(u"eps"));
    EXPECT_EQ(path.Text, nullptr);
    MString b(u"logo.eps");
    b.SetFileExtension(MString());
    EXPECT_EQ(U(b), u"logo.eps");
}

// ---- Line

TEST(MString, LineCountsEveryKindOfLineEndOnce) {
    MString s(u"zero\r\none\n\rtwo\rthree\nfour");
    EXPECT_EQ(U(s.Line(0)), u"zero");
    EXPECT_EQ(U(s.Line(1)), u"one");
    EXPECT_EQ(U(s.Line(2)), u"two");
    EXPECT_EQ(U(s.Line(3)), u"three");
    EXPECT_EQ(U(s.Line(4)), u"four");
    EXPECT_TRUE(s.Line(5).IsEmpty());
    EXPECT_TRUE(s.Line(-1).IsEmpty());
}

TEST(MString, LineWithEmptyLines) {
    MString s(u"a\n\nb\r\rc\r\n\r\nd");
    EXPECT_EQ(U(s.Line(0)), u"a");
    EXPECT_TRUE(s.Line(1).IsEmpty());
    EXPECT_EQ(U(s.Line(2)), u"b");
    EXPECT_TRUE(s.Line(3).IsEmpty());
    EXPECT_EQ(U(s.Line(4)), u"c");
    EXPECT_TRUE(s.Line(5).IsEmpty());
    EXPECT_EQ(U(s.Line(6)), u"d");
    EXPECT_TRUE(MString().Line(0).IsEmpty());
    EXPECT_EQ(U(MString(u"single").Line(0)), u"single");
}

// ---- Float formatting

TEST(MString, FloatTextExamples) {
    EXPECT_EQ(U(MString(1.5f)), u"1.5");
    EXPECT_EQ(U(MString(100.0f)), u"100");
    EXPECT_EQ(U(MString(0.0f)), u"0");
    EXPECT_EQ(U(MString(-2.0f)), u"-2");
    EXPECT_EQ(U(MString(0.1f)), u"0.1");
    EXPECT_EQ(U(MString(-0.25f)), u"-0.25");
    EXPECT_EQ(U(MString(1.0f / 3.0f)), u"0.333333");
    EXPECT_EQ(U(MString(123456.789f)), u"123456.789062");
    EXPECT_EQ(U(MString(1e10f)), u"10000000000");
    EXPECT_EQ(U(MString(0.0000005f)), u"0"); // the float lies just below
    EXPECT_EQ(U(MString(0.0000006f)), u"0.000001");
}

TEST(MString, FloatTextOfTinyValuesHasNoSign) {
    EXPECT_EQ(U(MString(0.0000001f)), u"0");
    EXPECT_EQ(U(MString(-0.0000001f)), u"0");
    EXPECT_EQ(U(MString(-0.0000004f)), u"0");
    EXPECT_EQ(U(MString(-0.0f)), u"0");
    EXPECT_EQ(U(MString(-1e-30f)), u"0");
    EXPECT_EQ(U(MString(-0.0000006f)), u"-0.000001");
}

TEST(MString, FloatTextOfLargestFloats) {
    MString max(std::numeric_limits<float>::max());
    EXPECT_EQ(Ascii(max), "340282346638528859811704183484516925440");
    EXPECT_EQ(Ascii(MString(3.4e38f)), "339999995214436424907732413799364296704");
    EXPECT_EQ(Ascii(MString(-3.4e38f)), "-339999995214436424907732413799364296704");
}

TEST(MString, FloatTextSweepMatchesPrintfWithTrimming) {
    int checked = 0;
    auto check = [&](float value) {
        ASSERT_EQ(Ascii(MString(value)), ExpectedFloatText(value)) << "value " << double(value);
        checked++;
    };
    // Integers, halves and small steps.
    for (int i = -2000; i <= 2000; i++) {
        check(float(i));
        check(float(i) + 0.5f);
        check(float(i) * 0.001f);
        check(float(i) * 0.0000001f); // around and below half a millionth
    }
    // Powers of two and of ten, both signs.
    for (int e = -40; e <= 38; e++) {
        check(std::pow(10.0f, float(e)));
        check(-std::pow(10.0f, float(e)));
    }
    for (int e = -149; e <= 127; e++) {
        check(std::ldexp(1.0f, e));
        check(-std::ldexp(1.0f, e));
    }
    check(0.0f);
    check(-0.0f);
    check(0.0000005f);
    check(-0.0000005f);
    check(0.00000049f);
    check(-0.00000049f);
    check(std::numeric_limits<float>::denorm_min());
    check(-std::numeric_limits<float>::denorm_min());
    check(std::numeric_limits<float>::max());
    check(-std::numeric_limits<float>::max());
    check(3.4e38f);
    check(16777217.0f);
    // Random bit patterns of finite floats.
    std::mt19937 bits(20240611u);
    for (int i = 0; i < 20000; i++) {
        float value = FloatFromBits(uint32_t(bits()));
        if (!std::isfinite(value)) continue;
        check(value);
    }
    // Random values of the sizes that sketches hold.
    std::uniform_real_distribution<float> coordinates(-1000.0f, 1000.0f);
    for (int i = 0; i < 20000; i++)
        check(coordinates(bits));
    EXPECT_GT(checked, 55000);
}

// Values whose millionths end in exactly one half are where a rounding rule
// shows: the C library takes the even neighbour, and so must the text.
TEST(MString, FloatTextRoundsExactHalvesAsPrintfDoes) {
    int checked = 0;
    char buffer[FloatTextSize];
    for (int k = 1; k <= 30; k++) {
        for (int n = -3000; n <= 3000; n++) {
            float value = std::ldexp(float(n), -k);
            ASSERT_EQ(Ascii(MString(value)), ExpectedFloatText(value)) << "value " << double(value);
            ASSERT_EQ(std::string(buffer, size_t(FloatText(value, buffer))),
                      ExpectedFloatText(value));
            checked++;
        }
    }
    EXPECT_GT(checked, 180000);
}

TEST(MString, FloatTextMatchesPrintfOverEveryRange) {
    std::mt19937 random(7u);
    char buffer[FloatTextSize];
    for (int i = 0; i < 300000; i++) {
        // Exponents spread evenly, so that tiny, ordinary and large values
        // (beyond 2^34, where the library prints) all come often.
        uint32_t bits = (uint32_t(random()) & 0x807FFFFFu) | (uint32_t(random() % 256) << 23);
        float value = FloatFromBits(bits);
        int32_t length = FloatText(value, buffer);
        ASSERT_EQ(length, int32_t(std::strlen(buffer)));
        if (!std::isfinite(value)) continue; // "nan" and "inf" come from the library as they are
        ASSERT_EQ(std::string(buffer), ExpectedFloatText(value)) << "bits " << bits;
    }
}

TEST(MString, FloatTextOfNoNumberIsTheLibrarys) {
    char buffer[FloatTextSize];
    char expected[FloatTextSize];
    for (float value :
         {std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
          std::numeric_limits<float>::quiet_NaN()}) {
        FloatText(value, buffer);
        std::snprintf(expected, sizeof expected, "%f", double(value));
        EXPECT_EQ(std::string(buffer), std::string(expected));
    }
}

TEST(MString, FloatTextHasNoExponentOrSeparator) {
    for (float value : {1e20f, -7.5e15f, 123456789.0f, 1e-20f}) {
        std::string text = Ascii(MString(value));
        EXPECT_EQ(text.find('e'), std::string::npos) << text;
        EXPECT_EQ(text.find(','), std::string::npos) << text;
    }
}

// ---- Integers and parsing

TEST(MString, IntegerText) {
    EXPECT_EQ(U(IntegerText(0)), u"0");
    EXPECT_EQ(U(IntegerText(42)), u"42");
    EXPECT_EQ(U(IntegerText(-17)), u"-17");
    EXPECT_EQ(U(IntegerText(1234567890123)), u"1234567890123");
    EXPECT_EQ(U(IntegerText(std::numeric_limits<int64_t>::min())), u"-9223372036854775808");
    EXPECT_EQ(U(IntegerText(std::numeric_limits<int64_t>::max())), u"9223372036854775807");
}

TEST(MString, ParseFloatReadsNumbers) {
    EXPECT_EQ(ParseFloat(MString(u"1.5")), 1.5f);
    EXPECT_EQ(ParseFloat(MString(u"  -2.25")), -2.25f);
    EXPECT_EQ(ParseFloat(MString(u"12abc")), 12.0f);
    EXPECT_EQ(ParseFloat(MString(u"1e3")), 1000.0f);
    EXPECT_EQ(ParseFloat(MString(u"0.1")), 0.1f); // narrowed from the double
    EXPECT_EQ(ParseFloat(MString(u"3.4e38")), 3.4e38f);
}

namespace {

// What the library's wide conversion makes of the text, narrowed.
float LibraryFloat(const std::u16string& text) {
    std::wstring wide(text.begin(), text.end());
    return float(std::wcstod(wide.c_str(), nullptr));
}

bool SameFloat(float a, float b) {
    return std::memcmp(&a, &b, sizeof a) == 0 || (std::isnan(a) && std::isnan(b));
}

} // namespace

// Plain decimals are parsed without the library; every text must still give
// the library's float, bit for bit, the long and the odd ones included.
TEST(MString, ParseFloatGivesTheLibrarysFloat) {
    std::mt19937 random(99u);
    auto digits = [&](int count) {
        std::u16string text;
        for (int i = 0; i < count; i++)
            text += char16_t(u'0' + random() % 10);
        return text;
    };
    int checked = 0;
    for (int i = 0; i < 200000; i++) {
        std::u16string text;
        int sign = int(random() % 4);
        if (sign == 0) text += u'-';
        if (sign == 1 && random() % 8 == 0) text += u'+';
        int whole = int(random() % 18), fraction = int(random() % 26);
        if (random() % 4 == 0) text += u"000";
        text += digits(whole);
        if (random() % 5 != 0) text += u'.';
        text += digits(fraction);
        if (random() % 50 == 0) text += u"e" + digits(2);
        if (random() % 100 == 0) text += u"x";
        float parsed = ParseFloatUnits(text.data(), int32_t(text.size()));
        ASSERT_TRUE(SameFloat(parsed, LibraryFloat(text))) << std::string(text.begin(), text.end());
        ASSERT_TRUE(SameFloat(ParseFloat(MString(text.c_str())), parsed));
        checked++;
    }
    for (const char16_t* odd : {u"",
                                u"-",
                                u"+",
                                u".",
                                u"-.",
                                u"..5",
                                u"1.2.3",
                                u"--1",
                                u"0x10",
                                u"inf",
                                u"-nan",
                                u"1e400",
                                u"4.9e-324",
                                u"0.0000001",
                                u"123456789012345",
                                u"1234567890123456",
                                u"0.1234567890123456789",
                                u"\v5",
                                u"5\f",
                                u"9999999999999999999999"}) {
        std::u16string text(odd);
        float parsed = ParseFloatUnits(text.data(), int32_t(text.size()));
        EXPECT_TRUE(SameFloat(parsed, LibraryFloat(text))) << std::string(text.begin(), text.end());
    }
    // Only the given units count: the text behind them is not read.
    EXPECT_EQ(ParseFloatUnits(u"12345", 2), 12.0f);
    EXPECT_EQ(ParseFloatUnits(nullptr, 3), 0.0f);
    EXPECT_GT(checked, 100000);
}

TEST(MString, ParseFloatOfNoNumberIsZero) {
    EXPECT_EQ(ParseFloat(MString(u"abc")), 0.0f);
    EXPECT_EQ(ParseFloat(MString()), 0.0f);
    EXPECT_EQ(ParseFloat(MString(u"   ")), 0.0f);
    EXPECT_EQ(ParseFloat(MString(u"-")), 0.0f);
}

TEST(MString, ParseFloatHandsNaNAndInfinityOn) {
    // Readers replace a NaN themselves; the parser does not.
    EXPECT_TRUE(std::isnan(ParseFloat(MString(u"nan"))));
    EXPECT_TRUE(std::isnan(ParseFloat(MString(u"NaN"))));
    float big = ParseFloat(MString(u"1e40")); // finite as a double, not as a float
    EXPECT_TRUE(std::isinf(big));
    EXPECT_GT(big, 0.0f);
    float small = ParseFloat(MString(u"-1e40"));
    EXPECT_TRUE(std::isinf(small));
    EXPECT_LT(small, 0.0f);
    EXPECT_TRUE(std::isinf(ParseFloat(MString(u"inf"))));
    EXPECT_EQ(ParseFloat(MString(u"1e-50")), 0.0f);
}

TEST(MString, ParseFloatOfMinusZeroKeepsSign) {
    float zero = ParseFloat(MString(u"-0"));
    EXPECT_EQ(zero, 0.0f);
    EXPECT_TRUE(std::signbit(zero));
    // and prints without it
    EXPECT_EQ(U(MString(zero)), u"0");
}

TEST(MString, FloatTextReadsBackToTheSameText) {
    std::mt19937 bits(7u);
    std::uniform_real_distribution<float> values(-100000.0f, 100000.0f);
    for (int i = 0; i < 2000; i++) {
        MString text(values(bits));
        MString again(ParseFloat(text));
        ASSERT_EQ(U(again), U(text));
    }
}

TEST(MString, ParseInteger) {
    EXPECT_EQ(ParseInteger(MString(u"42")), 42);
    EXPECT_EQ(ParseInteger(MString(u" -17")), -17);
    EXPECT_EQ(ParseInteger(MString(u"+8")), 8);
    EXPECT_EQ(ParseInteger(MString(u"12.7")), 12);
    EXPECT_EQ(ParseInteger(MString(u"abc")), 0);
    EXPECT_EQ(ParseInteger(MString()), 0);
    EXPECT_EQ(ParseInteger(MString(u"007")), 7); // base 10, not octal
    // A 32-bit long clamps out-of-range text.
    EXPECT_EQ(ParseInteger(MString(u"3000000000")), 2147483647);
    EXPECT_EQ(ParseInteger(MString(u"-3000000000")), -2147483647 - 1);
    EXPECT_EQ(ParseInteger(MString(u"2147483647")), 2147483647);
}

// ---- Memory and version

TEST(MString, GetMemoryOfZeroIsNullWithoutMessage) {
    StartDebugCapture();
    void* block = MGetMemory(0);
    MString said = StopDebugCapture();
    EXPECT_EQ(block, nullptr);
    EXPECT_TRUE(said.IsEmpty());
}

TEST(MString, GetMemoryGivesAFreeableBlock) {
    void* block = MGetMemory(1000);
    ASSERT_NE(block, nullptr);
    std::memset(block, 0xAB, 1000);
    std::free(block);
}

TEST(MString, GetMemoryFailureIsReportedAndNull) {
    StartDebugCapture();
    void* block = MGetMemory(uint64_t(1) << 62);
    MString said = StopDebugCapture();
    EXPECT_EQ(block, nullptr);
    EXPECT_EQ(U(said), u"MGetMemory: out of memory exception\n");
}

TEST(MString, VersionText) {
    EXPECT_EQ(U(MString(TheVersionString)), u"5.2.0.0");
    EXPECT_EQ(U(MVersionText()), u"5.2");
}
