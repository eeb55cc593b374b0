// The platform layer: code page conversion with the results of the Win32
// calls, case mapping, the debug capture and the message script. The same
// tests run natively and, under Wine, against the Win32 calls themselves.

#include "foundation/Platform.h"

#include "foundation/MString.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <string>
#include <thread>

namespace {

std::u16string U(const MString& s) {
    return std::u16string(s.Chars());
}

// Whole-text conversion through a size query, as the file code does it.
std::u16string FromUtf8(const std::string& bytes) {
    int32_t n = NarrowToWide(65001, 0, bytes.data(), int32_t(bytes.size()), nullptr, 0);
    std::u16string out(size_t(n), u'\0');
    if (n > 0) {
        int32_t written = NarrowToWide(65001, 0, bytes.data(), int32_t(bytes.size()), &out[0], n);
        EXPECT_EQ(written, n);
    }
    return out;
}

std::string ToNarrow(uint32_t codePage, const std::u16string& text) {
    int32_t n = WideToNarrow(codePage, text.data(), int32_t(text.size()), nullptr, 0);
    std::string out(size_t(n), '\0');
    if (n > 0) {
        int32_t written = WideToNarrow(codePage, text.data(), int32_t(text.size()), &out[0], n);
        EXPECT_EQ(written, n);
    }
    return out;
}

} // namespace

// ---- UTF-8

TEST(Platform, Utf8ToWide) {
    EXPECT_EQ(FromUtf8("plain"), u"plain");
    EXPECT_EQ(FromUtf8("caf\xC3\xA9"), u"caf\u00E9");
    EXPECT_EQ(FromUtf8("\xE2\x82\xAC 5"), u"\u20AC 5");
    EXPECT_EQ(FromUtf8("\xEF\xBF\xBF"), u"\uFFFF");
}

TEST(Platform, Utf8BeyondTheBmpBecomesSurrogatePair) {
    std::u16string face = FromUtf8("\xF0\x9F\x98\x80");
    ASSERT_EQ(face.size(), 2u);
    EXPECT_EQ(face[0], char16_t(0xD83D));
    EXPECT_EQ(face[1], char16_t(0xDE00));
    std::u16string last = FromUtf8("\xF4\x8F\xBF\xBF"); // U+10FFFF
    ASSERT_EQ(last.size(), 2u);
    EXPECT_EQ(last[0], char16_t(0xDBFF));
    EXPECT_EQ(last[1], char16_t(0xDFFF));
}

TEST(Platform, Utf8InvalidBytesBecomeReplacementCharacters) {
    EXPECT_EQ(FromUtf8("a\xFF"
                       "b"),
              u"a\uFFFDb");
    EXPECT_EQ(FromUtf8("a\x80"
                       "b"),
              u"a\uFFFDb"); // stray continuation
    EXPECT_EQ(FromUtf8("\xC3"
                       "x"),
              u"\uFFFDx");                            // lead without continuation
    EXPECT_EQ(FromUtf8("\xC0\xAF"), u"\uFFFD\uFFFD"); // overlong "/"
    EXPECT_EQ(FromUtf8("ok\xC3"), u"ok\uFFFD");       // cut at the end
    EXPECT_EQ(FromUtf8("\xF5\x80"), u"\uFFFD\uFFFD"); // beyond U+10FFFF
}

TEST(Platform, Utf8EncodedSurrogateIsInvalid) {
    std::u16string text = FromUtf8("\xED\xA0\x80"
                                   "z");
    ASSERT_FALSE(text.empty());
    EXPECT_EQ(text.back(), u'z');
    for (size_t i = 0; i + 1 < text.size(); i++)
        EXPECT_EQ(text[i], char16_t(0xFFFD)) << i;
}

TEST(Platform, Utf8TruncatedSequenceBeforeText) {
    EXPECT_EQ(FromUtf8("\xE2\x82"
                       "x"),
              u"\uFFFDx");
    EXPECT_EQ(FromUtf8("\xF0\x9F\x98"
                       "x"),
              u"\uFFFDx");
}

TEST(Platform, SizeQueryAndTooSmallTarget) {
    const char* text = "h\xC3\xA9llo";
    EXPECT_EQ(NarrowToWide(65001, 0, text, 6, nullptr, 0), 5);
    EXPECT_EQ(NarrowToWide(65001, 0, text, -1, nullptr, 0), 6); // with the terminator
    char16_t small[4] = {u'x', u'x', u'x', u'x'};
    EXPECT_EQ(NarrowToWide(65001, 0, text, 6, small, 4), 0);
    char16_t exact[6];
    EXPECT_EQ(NarrowToWide(65001, 0, text, -1, exact, 6), 6);
    EXPECT_EQ(std::u16string(exact), u"h\u00E9llo");
    EXPECT_EQ(NarrowToWide(65001, 0, text, 0, exact, 6), 0); // empty source fails

    char narrow[3];
    EXPECT_EQ(WideToNarrow(65001, u"\u00E9\u00E9", 2, nullptr, 0), 4);
    EXPECT_EQ(WideToNarrow(65001, u"\u00E9\u00E9", 2, narrow, 3), 0);
    EXPECT_EQ(WideToNarrow(65001, u"ab", -1, nullptr, 0), 3);
}

TEST(Platform, Utf8RefusesThePrecomposedFlag) {
    char16_t out[8];
    EXPECT_EQ(NarrowToWide(65001, ConvertPrecomposed, "abc", 3, out, 8), 0);
}

TEST(Platform, WideToUtf8) {
    EXPECT_EQ(ToNarrow(65001, u"caf\u00E9 \u20AC"), "caf\xC3\xA9 \xE2\x82\xAC");
    EXPECT_EQ(ToNarrow(65001, u"\U0001F600"), "\xF0\x9F\x98\x80");
    // A surrogate without its partner becomes U+FFFD.
    std::u16string lone = u"a";
    lone += char16_t(0xD800);
    lone += u"b";
    EXPECT_EQ(ToNarrow(65001, lone), "a\xEF\xBF\xBD"
                                     "b");
    std::u16string trailing = u"a";
    trailing += char16_t(0xDC00);
    EXPECT_EQ(ToNarrow(65001, trailing), "a\xEF\xBF\xBD");
}

TEST(Platform, Utf8RoundTripOfEveryBmpCharacter) {
    std::u16string all;
    for (uint32_t c = 1; c <= 0xFFFF; c++)
        if (c < 0xD800 || c > 0xDFFF) all += char16_t(c);
    all += u"\U00010000\U0010FFFF";
    EXPECT_EQ(FromUtf8(ToNarrow(65001, all)), all);
}

// ---- Windows-1252

TEST(Platform, Windows1252ToWide) {
    char16_t out[8];
    int32_t n = NarrowToWide(1252, ConvertPrecomposed, "\x80\x8A\x9F\xE9\x41\xFF", 6, out, 8);
    ASSERT_EQ(n, 6);
    EXPECT_EQ(out[0], char16_t(0x20AC));
    EXPECT_EQ(out[1], char16_t(0x0160));
    EXPECT_EQ(out[2], char16_t(0x0178));
    EXPECT_EQ(out[3], char16_t(0x00E9));
    EXPECT_EQ(out[4], u'A');
    EXPECT_EQ(out[5], char16_t(0x00FF));
    // The unassigned bytes keep their value.
    n = NarrowToWide(1252, ConvertPrecomposed, "\x81\x8D\x8F\x90\x9D", 5, out, 8);
    ASSERT_EQ(n, 5);
    EXPECT_EQ(out[0], char16_t(0x81));
    EXPECT_EQ(out[1], char16_t(0x8D));
    EXPECT_EQ(out[2], char16_t(0x8F));
    EXPECT_EQ(out[3], char16_t(0x90));
    EXPECT_EQ(out[4], char16_t(0x9D));
}

TEST(Platform, WideToWindows1252) {
    EXPECT_EQ(ToNarrow(1252, u"\u20AC caf\u00E9 \u0178"), "\x80 caf\xE9 \x9F");
    EXPECT_EQ(ToNarrow(1252, u"\u4E00"), "?");
}

// ---- Case mapping

TEST(Platform, UpperCase) {
    std::u16string text = u"abc xyz \u00E9\u00F6\u00FF 123 \u03B1\u0436";
    UpperCaseInPlace(&text[0], int32_t(text.size()));
    EXPECT_EQ(text, u"ABC XYZ \u00C9\u00D6\u0178 123 \u0391\u0416");
    std::u16string sharp = u"\u00DF";
    UpperCaseInPlace(&sharp[0], 1);
    EXPECT_EQ(sharp, u"\u00DF"); // no single-character upper case
}

TEST(Platform, LowerCase) {
    std::u16string text = u"ABC XYZ \u00C9\u00D6\u0178 [\\] \u0391\u0416";
    LowerCaseInPlace(&text[0], int32_t(text.size()));
    EXPECT_EQ(text, u"abc xyz \u00E9\u00F6\u00FF [\\] \u03B1\u0436");
}

TEST(Platform, CaseMappingOnlyWithinLength) {
    std::u16string text = u"abcd";
    UpperCaseInPlace(&text[0], 2);
    EXPECT_EQ(text, u"ABcd");
    UpperCaseInPlace(nullptr, 0);
}

// ---- Debug output

TEST(Platform, DebugCaptureKeepsEveryLine) {
    StartDebugCapture();
    DebugOutput(u"first line\n");
    DebugOutput(Narrow("WARNING: second\n"));
    DebugOutput(MString());
    MString said = StopDebugCapture();
    EXPECT_EQ(U(said), u"first line\nWARNING: second\n");
}

TEST(Platform, DebugCaptureEndsAtStop) {
    StartDebugCapture();
    DebugOutput(u"kept\n");
    EXPECT_EQ(U(StopDebugCapture()), u"kept\n");
    DebugOutput(u"not captured\n");
    StartDebugCapture();
    MString said = StopDebugCapture();
    EXPECT_TRUE(said.IsEmpty());
}

// ---- Message script

TEST(Platform, MessageScriptRecordsAndAnswers) {
    MString texts[2];
    MessageIcon icons[2] = {IconInformation, IconInformation};
    const MessageAnswer answers[] = {AnswerNo, AnswerCancel};
    MessageScript script;
    script.Texts = texts;
    script.Icons = icons;
    script.Capacity = 2;
    script.Answers = answers;
    script.AnswerCount = 2;
    TheMessageScript = &script;
    MessageAnswer first = ShowMessage(Narrow("Save changes?"), IconQuestion, ButtonsYesNo);
    MessageAnswer second = ShowMessage(Narrow("Could not write"), IconError, ButtonsYesNoCancel);
    MessageAnswer third = ShowMessage(Narrow("Done"), IconWarning); // beyond answers and room
    TheMessageScript = nullptr;
    EXPECT_EQ(first, AnswerNo);
    EXPECT_EQ(second, AnswerCancel);
    EXPECT_EQ(third, AnswerOk);
    EXPECT_EQ(script.Count, 3);
    EXPECT_EQ(U(texts[0]), u"Save changes?");
    EXPECT_EQ(U(texts[1]), u"Could not write");
    EXPECT_EQ(icons[0], IconQuestion);
    EXPECT_EQ(icons[1], IconError);
}

TEST(Platform, MessageScriptWithoutAnswersSaysOk) {
    MessageScript script;
    TheMessageScript = &script;
    MessageAnswer answer = ShowMessage(Narrow("Really?"), IconQuestion, ButtonsYesNo);
    TheMessageScript = nullptr;
    EXPECT_EQ(answer, AnswerOk);
    EXPECT_EQ(script.Count, 1);
}

TEST(Platform, AnswerValuesAreThoseOfTheBoxes) {
    EXPECT_EQ(AnswerOk, 1);
    EXPECT_EQ(AnswerCancel, 2);
    EXPECT_EQ(AnswerYes, 6);
    EXPECT_EQ(AnswerNo, 7);
}

// ---- Time

TEST(Platform, MilliSecondsAdvance) {
    uint32_t start = MilliSeconds();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    uint32_t passed = MilliSeconds() - start;
    EXPECT_GE(passed, 30u);
    EXPECT_LT(passed, 5000u);
}
