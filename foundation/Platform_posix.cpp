// The platform layer of the native build. It behaves as the Win32 calls of
// the Windows build do wherever the core can tell the difference: the code
// page conversions keep the results, size queries and failures of
// MultiByteToWideChar and WideCharToMultiByte, and the case mapping follows
// CharUpperBuffW for the Basic Multilingual Plane.

#include "foundation/Platform.h"

#include "foundation/MString.h"
#include "foundation/Program.h"

#include <clocale>
#include <cstdio>
#include <ctime>
#include <cwctype>
#include <locale.h>
#include <string>
#include <wctype.h>

namespace {

// ---- UTF-16 to UTF-8 for the stderr copies of debug output and boxes.

std::string Utf8(const char16_t* text) {
    std::string result;
    if (!text || !*text) return result;
    int32_t size = WideToNarrow(65001, text, -1, nullptr, 0);
    if (size <= 0) return result;
    result.resize(size);
    WideToNarrow(65001, text, -1, &result[0], size);
    result.resize(size - 1); // the terminator
    return result;
}

} // namespace

void PlatformDebugOutput(const char16_t* text) {
    std::string bytes = Utf8(text);
    std::fwrite(bytes.data(), 1, bytes.size(), stderr);
    std::fflush(stderr);
}

// Nobody can answer here: the text goes to stderr and the box takes its
// first button, Ok for a report and Yes for a question.
MessageAnswer PlatformMessageBox(const MString& text, MessageIcon icon, MessageButtons buttons) {
    static const char* const iconWords[] = {"error", "warning", "information", "question"};
    std::string title = Utf8(TheProgramName);
    std::string body = Utf8(text.Chars());
    std::fprintf(stderr, "%s (%s): %s\n", title.c_str(), iconWords[icon], body.c_str());
    std::fflush(stderr);
    return buttons == ButtonsOk ? AnswerOk : AnswerYes;
}

uint32_t MilliSeconds() {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    uint64_t ms = uint64_t(now.tv_sec) * 1000u + uint64_t(now.tv_nsec) / 1000000u;
    return uint32_t(ms);
}

// The native build has no keyboard of its own.
bool IsKeyDown(KeyCode) {
    return false;
}

// ---- Code page conversion

namespace {

const char16_t Replacement = 0xFFFD;

// The upper half of Windows-1252. The five holes (0x81, 0x8D, 0x8F, 0x90,
// 0x9D) map to the C1 control of the same value, as Windows' own table does.
const char16_t Cp1252High[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// Writes units to the target while counting them; with no target (a size
// query) it only counts. Overflow of a real target is remembered so the call
// can fail as a whole.
template <typename Unit> struct Sink {
    Unit* Target;
    int32_t Room;
    int32_t Count = 0;
    bool Overflow = false;
    void Put(Unit unit) {
        if (Target) {
            if (Count >= Room) {
                Overflow = true;
                return;
            }
            Target[Count] = unit;
        }
        Count++;
    }
    int32_t Result() const { return Overflow ? 0 : Count; }
};

bool IsContinuation(unsigned char byte, unsigned char low = 0x80, unsigned char high = 0xBF) {
    return byte >= low && byte <= high;
}

// Decodes UTF-8. An ill-formed sequence becomes one U+FFFD for its longest
// well-formed start (at least one byte), so the bytes behind a broken
// sequence are read afresh: overlong forms, encoded surrogates and values
// above U+10FFFF are never produced.
void DecodeUtf8(const unsigned char* s, int32_t n, Sink<char16_t>& out) {
    int32_t i = 0;
    while (i < n && !out.Overflow) {
        unsigned char lead = s[i];
        if (lead < 0x80) {
            out.Put(lead);
            i++;
            continue;
        }
        int32_t need;
        unsigned char low = 0x80, high = 0xBF; // range of the second byte
        uint32_t value;
        if (lead >= 0xC2 && lead <= 0xDF) {
            need = 1;
            value = lead & 0x1F;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            need = 2;
            value = lead & 0x0F;
            if (lead == 0xE0) low = 0xA0;
            if (lead == 0xED) high = 0x9F;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            need = 3;
            value = lead & 0x07;
            if (lead == 0xF0) low = 0x90;
            if (lead == 0xF4) high = 0x8F;
        } else {
            out.Put(Replacement);
            i++;
            continue;
        }
        int32_t used = 1;
        bool good = true;
        for (int32_t k = 0; k < need; k++) {
            if (i + used >= n ||
                !(k == 0 ? IsContinuation(s[i + used], low, high) : IsContinuation(s[i + used]))) {
                good = false;
                break;
            }
            value = (value << 6) | (s[i + used] & 0x3F);
            used++;
        }
        i += used;
        if (!good) {
            out.Put(Replacement);
        } else if (value >= 0x10000) {
            value -= 0x10000;
            out.Put(char16_t(0xD800 + (value >> 10)));
            out.Put(char16_t(0xDC00 + (value & 0x3FF)));
        } else {
            out.Put(char16_t(value));
        }
    }
}

// Encodes UTF-16 as UTF-8; a surrogate without its partner becomes U+FFFD.
void EncodeUtf8(const char16_t* s, int32_t n, Sink<char>& out) {
    for (int32_t i = 0; i < n && !out.Overflow; i++) {
        uint32_t value = s[i];
        if (value >= 0xD800 && value <= 0xDBFF && i + 1 < n && s[i + 1] >= 0xDC00 &&
            s[i + 1] <= 0xDFFF) {
            value = 0x10000 + ((value - 0xD800) << 10) + (s[i + 1] - 0xDC00);
            i++;
        } else if (value >= 0xD800 && value <= 0xDFFF) {
            value = Replacement;
        }
        if (value < 0x80) {
            out.Put(char(value));
        } else if (value < 0x800) {
            out.Put(char(0xC0 | (value >> 6)));
            out.Put(char(0x80 | (value & 0x3F)));
        } else if (value < 0x10000) {
            out.Put(char(0xE0 | (value >> 12)));
            out.Put(char(0x80 | ((value >> 6) & 0x3F)));
            out.Put(char(0x80 | (value & 0x3F)));
        } else {
            out.Put(char(0xF0 | (value >> 18)));
            out.Put(char(0x80 | ((value >> 12) & 0x3F)));
            out.Put(char(0x80 | ((value >> 6) & 0x3F)));
            out.Put(char(0x80 | (value & 0x3F)));
        }
    }
}

// Characters outside Windows-1252 become "?", the default character.
void Encode1252(const char16_t* s, int32_t n, Sink<char>& out) {
    for (int32_t i = 0; i < n && !out.Overflow; i++) {
        char16_t c = s[i];
        if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) {
            out.Put(char(c));
            continue;
        }
        char byte = '?';
        for (int32_t k = 0; k < 32; k++)
            if (Cp1252High[k] == c) {
                byte = char(0x80 + k);
                break;
            }
        out.Put(byte);
    }
}

} // namespace

// The source length both conversions work on: -1 means the text up to and
// including its terminator; 0 is returned for arguments the Win32 calls refuse.
template <typename Source, typename Target>
static int32_t ConvertibleLength(const Source* source, int32_t sourceLength, const Target* target,
                                 int32_t targetLength) {
    if (!source || targetLength < 0 || (targetLength > 0 && !target)) return 0;
    if (sourceLength != -1) return sourceLength;
    int32_t length = 1;
    while (source[length - 1])
        length++;
    return length;
}

// As MultiByteToWideChar: a source length of -1 means the text up to and
// including its terminator; 0 or below otherwise fails. UTF-8 takes no flags
// (the Win32 call rejects MB_PRECOMPOSED there), Windows-1252 has nothing to
// compose. Code pages other than 65001 and 1252 are not available here.
int32_t NarrowToWide(uint32_t codePage, uint32_t flags, const char* source, int32_t sourceLength,
                     char16_t* target, int32_t targetLength) {
    sourceLength = ConvertibleLength(source, sourceLength, target, targetLength);
    if (sourceLength <= 0) return 0;
    Sink<char16_t> out{targetLength > 0 ? target : nullptr, targetLength};
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(source);
    if (codePage == 65001) {
        if (flags != 0) return 0;
        DecodeUtf8(bytes, sourceLength, out);
    } else if (codePage == 1252) {
        for (int32_t i = 0; i < sourceLength && !out.Overflow; i++) {
            unsigned char b = bytes[i];
            out.Put(b >= 0x80 && b < 0xA0 ? Cp1252High[b - 0x80] : char16_t(b));
        }
    } else {
        return 0;
    }
    return out.Result();
}

// As WideCharToMultiByte with no flags and no default character given.
int32_t WideToNarrow(uint32_t codePage, const char16_t* source, int32_t sourceLength, char* target,
                     int32_t targetLength) {
    sourceLength = ConvertibleLength(source, sourceLength, target, targetLength);
    if (sourceLength <= 0) return 0;
    Sink<char> out{targetLength > 0 ? target : nullptr, targetLength};
    if (codePage == 65001)
        EncodeUtf8(source, sourceLength, out);
    else if (codePage == 1252)
        Encode1252(source, sourceLength, out);
    else
        return 0;
    return out.Result();
}

// ---- Case mapping

namespace {

// The simple case mappings of the C.UTF-8 locale, independent of whatever
// locale the process has set. Surrogates and mappings that would leave the
// Basic Multilingual Plane stay as they are, as with CharUpperBuffW.
locale_t CaseLocale() {
    static locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", (locale_t)0);
    return locale;
}

char16_t MapCase(char16_t c, bool upper) {
    if (c < 0x80) {
        if (upper && c >= 'a' && c <= 'z') return char16_t(c - 32);
        if (!upper && c >= 'A' && c <= 'Z') return char16_t(c + 32);
        return c;
    }
    if (c >= 0xD800 && c <= 0xDFFF) return c;
    locale_t locale = CaseLocale();
    if (!locale) return c;
    wint_t mapped = upper ? towupper_l(wint_t(c), locale) : towlower_l(wint_t(c), locale);
    if (mapped == 0 || mapped > 0xFFFF || (mapped >= 0xD800 && mapped <= 0xDFFF)) return c;
    return char16_t(mapped);
}

} // namespace

void UpperCaseInPlace(char16_t* text, int32_t length) {
    if (!text) return;
    for (int32_t i = 0; i < length; i++)
        text[i] = MapCase(text[i], true);
}

void LowerCaseInPlace(char16_t* text, int32_t length) {
    if (!text) return;
    for (int32_t i = 0; i < length; i++)
        text[i] = MapCase(text[i], false);
}
