// The wide string of the system. Its float formatting is part of the EPS and
// show file formats, so it must not change: "%f", trailing zeros cut, "-0"
// made "0".

#include "foundation/MString.h"

#include "foundation/Platform.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <initializer_list>
#include <new>

const char16_t* const TheVersionString = u"5.2.0.0";

namespace {

int32_t WideLength(const char16_t* text) {
    int32_t n = 0;
    if (text)
        while (text[n])
            n++;
    return n;
}

// A new block of exactly length + 1 units holding the given units. Allocation
// failures are not caught: a string that cannot get memory ends the program.
char16_t* NewText(const char16_t* units, int32_t length) {
    char16_t* block = new char16_t[size_t(length) + 1];
    if (length > 0) std::memcpy(block, units, size_t(length) * sizeof(char16_t));
    block[length] = 0;
    return block;
}

// Joins two runs of units into a new string of exact capacity.
MString Join(const char16_t* a, int32_t aLength, const char16_t* b, int32_t bLength) {
    MString result;
    int32_t length = aLength + bLength;
    if (length == 0) return result;
    result.Text = new char16_t[size_t(length) + 1];
    if (aLength > 0) std::memcpy(result.Text, a, size_t(aLength) * sizeof(char16_t));
    if (bLength > 0) std::memcpy(result.Text + aLength, b, size_t(bLength) * sizeof(char16_t));
    result.Text[length] = 0;
    result.Length = length;
    result.Capacity = length + 1;
    return result;
}

// The units of a zero-terminated string as wchar_t, for the standard library's
// wide conversions (wchar_t is 32 bits natively and 16 bits on Windows).
struct WideBuffer {
    wchar_t Small[64];
    wchar_t* Units = Small;
    explicit WideBuffer(const MString& text) : WideBuffer(text.Text, text.Length) {}
    WideBuffer(const char16_t* units, int32_t length) {
        if (length >= 64) Units = new wchar_t[size_t(length) + 1];
        for (int32_t i = 0; i < length; i++)
            Units[i] = wchar_t(units[i]);
        Units[length] = 0;
    }
    ~WideBuffer() {
        if (Units != Small) delete[] Units;
    }
    WideBuffer(const WideBuffer&) = delete;
    WideBuffer& operator=(const WideBuffer&) = delete;
};

} // namespace

// ---- Construction and assignment

MString::MString(const MString& other) {
    if (other.Length > 0) {
        Text = NewText(other.Text, other.Length);
        Length = other.Length;
        Capacity = Length + 1;
    }
}

MString::MString(MString&& other) noexcept
    : Text(other.Text), Length(other.Length), Capacity(other.Capacity) {
    other.Text = nullptr;
    other.Length = 0;
    other.Capacity = 0;
}

MString::MString(const char16_t* wide) {
    int32_t length = WideLength(wide);
    if (length > 0) {
        Text = NewText(wide, length);
        Length = length;
        Capacity = length + 1;
    }
}

MString::MString(float value) {
    char buffer[FloatTextSize];
    int32_t length = FloatText(value, buffer);
    if (length == 0) return;
    Text = new char16_t[size_t(length) + 1];
    for (int32_t i = 0; i <= length; i++)
        Text[i] = char16_t(static_cast<unsigned char>(buffer[i]));
    Length = length;
    Capacity = length + 1;
}

MString::~MString() {
    delete[] Text;
}

bool MString::Reserve(int32_t capacity, bool keep) {
    if (capacity <= 0) {
        delete[] Text;
        Text = nullptr;
        Length = 0;
        Capacity = 0;
        return true;
    }
    if (Capacity < capacity) {
        int32_t grown = Capacity > INT32_MAX / 2 ? INT32_MAX : Capacity * 2;
        int32_t newCapacity = grown > capacity ? grown : capacity;
        char16_t* block = new char16_t[size_t(newCapacity)];
        if (keep && Length > 0 && Length < capacity) {
            std::memcpy(block, Text, size_t(Length) * sizeof(char16_t));
            block[Length] = 0;
        } else {
            block[0] = 0;
            Length = 0;
        }
        delete[] Text;
        Text = block;
        Capacity = newCapacity;
    } else if (!keep) {
        Text[0] = 0;
        Length = 0;
    }
    return true;
}

// Code page 0 widens each byte as an unsigned value, so the program's own
// literals must stay 7-bit. Other code pages convert into a buffer of twice
// the byte count, ample for any of them together with the terminator.
void MString::AssignNarrow(const char* text, uint32_t codePage) {
    if (!text || !*text) {
        Reserve(0, false);
        return;
    }
    size_t bytes = std::strlen(text);
    if (codePage == 0) {
        char16_t* block = new char16_t[bytes + 1];
        for (size_t i = 0; i < bytes; i++)
            block[i] = char16_t(static_cast<unsigned char>(text[i]));
        block[bytes] = 0;
        delete[] Text;
        Text = block;
        Length = int32_t(bytes);
        Capacity = int32_t(bytes) + 1;
        return;
    }
    int32_t size = int32_t(bytes * 2);
    char16_t* block = new char16_t[size_t(size)];
    block[0] = 0;
    uint32_t flags = codePage == 65001 ? 0 : ConvertPrecomposed;
    NarrowToWide(codePage, flags, text, -1, block, size);
    block[size - 1] = 0;
    delete[] Text;
    Text = block;
    Capacity = size;
    Length = WideLength(block);
}

MString& MString::operator=(const MString& other) {
    if (Text == other.Text) return *this;
    if (other.Length == 0) {
        Reserve(0, false);
        return *this;
    }
    char16_t* block = NewText(other.Text, other.Length);
    delete[] Text;
    Text = block;
    Length = other.Length;
    Capacity = Length + 1;
    return *this;
}

MString& MString::operator=(MString&& other) noexcept {
    if (this == &other) return *this;
    delete[] Text;
    Text = other.Text;
    Length = other.Length;
    Capacity = other.Capacity;
    other.Text = nullptr;
    other.Length = 0;
    other.Capacity = 0;
    return *this;
}

// The source may lie inside this string's own block, so the new block is
// filled before the old one goes.
MString& MString::operator=(const char16_t* wide) {
    if (wide == Text) return *this;
    int32_t length = WideLength(wide);
    if (length == 0) {
        Reserve(0, false);
        return *this;
    }
    char16_t* block = NewText(wide, length);
    delete[] Text;
    Text = block;
    Length = length;
    Capacity = length + 1;
    return *this;
}

MString& MString::operator+=(const MString& other) {
    int32_t more = other.Length;
    if (more == 0) return *this;
    bool self = other.Text == Text;
    char16_t* old = Text;
    if (Capacity < Length + more + 1) {
        // Grow without freeing first: the source may be this very string.
        int32_t grown = Capacity * 2;
        int32_t need = Length + more + 1;
        int32_t newCapacity = grown > need ? grown : need;
        char16_t* block = new char16_t[size_t(newCapacity)];
        if (Length > 0) std::memcpy(block, Text, size_t(Length) * sizeof(char16_t));
        Text = block;
        Capacity = newCapacity;
    }
    const char16_t* source = self ? old : other.Text;
    std::memmove(Text + Length, source, size_t(more) * sizeof(char16_t));
    Length += more;
    Text[Length] = 0;
    if (old != Text) delete[] old;
    return *this;
}

// ---- Joining

MString MString::operator+(const MString& other) const {
    if (other.Length == 0) return *this;
    return Join(Text, Length, other.Text, other.Length);
}

MString MString::operator+(const char* narrow) const {
    if (!narrow || !*narrow) return *this;
    MString right;
    right.AssignNarrow(narrow, 0);
    return Join(Text, Length, right.Text, right.Length);
}

// A zero character would end the text early, so it appends nothing.
MString MString::operator+(char character) const {
    if (character == 0) return *this;
    char16_t unit = char16_t(static_cast<unsigned char>(character));
    return Join(Text, Length, &unit, 1);
}

// ---- Searching and editing

MString MString::Left(int32_t last) const {
    if (last < 0 || last >= Length) return *this;
    return Join(Text, last + 1, nullptr, 0);
}

int32_t MString::Find(const MString& what, int32_t from) const {
    if (what.Length == 0 || Length == 0) return -1;
    if (from < 0) from = 0;
    for (int32_t i = from; i + what.Length <= Length; i++)
        if (std::memcmp(Text + i, what.Text, size_t(what.Length) * sizeof(char16_t)) == 0) return i;
    return -1;
}

bool MString::operator==(const MString& other) const {
    if (Length != other.Length) return false;
    return Length == 0 || std::memcmp(Text, other.Text, size_t(Length) * sizeof(char16_t)) == 0;
}

// Returning when find equals with is what keeps ReplaceLineEnds from looping.
void MString::ReplaceFirst(const MString& find, const MString& with) {
    if (Length == 0 || find.Length == 0 || find == with) return;
    int32_t at = Find(find);
    if (at < 0) return;
    int32_t length = Length - find.Length + with.Length;
    char16_t* block = new char16_t[size_t(length) + 1];
    std::memcpy(block, Text, size_t(at) * sizeof(char16_t));
    if (with.Length > 0) std::memcpy(block + at, with.Text, size_t(with.Length) * sizeof(char16_t));
    int32_t tail = Length - at - find.Length;
    std::memcpy(block + at + with.Length, Text + at + find.Length, size_t(tail) * sizeof(char16_t));
    block[length] = 0;
    delete[] Text;
    Text = block;
    Length = length;
    Capacity = length + 1;
}

// CR LF goes first so that it becomes one line end, not two; a pattern that
// the replacement holds is left alone, or the loop would never end.
void MString::ReplaceLineEnds(const MString& with) {
    const char16_t* const patterns[] = {u"\r\n", u"\n", u"\r"};
    for (const char16_t* text : patterns) {
        MString pattern(text);
        if (pattern == with || with.Find(pattern) >= 0) continue;
        while (Find(pattern) >= 0)
            ReplaceFirst(pattern, with);
    }
}

void MString::Remove(char16_t character) {
    if (!Text) return;
    int32_t kept = 0;
    for (int32_t i = 0; i < Length; i++)
        if (Text[i] != character) Text[kept++] = Text[i];
    Text[kept] = 0;
    Length = kept;
}

void MString::Trim() {
    if (!Text) return;
    auto blank = [](char16_t c) { return c <= 32 || c == 127; };
    int32_t first = 0, end = Length;
    while (first < end && blank(Text[first]))
        first++;
    while (end > first && blank(Text[end - 1]))
        end--;
    if (end == first) {
        Reserve(0, false);
        return;
    }
    if (first > 0) std::memmove(Text, Text + first, size_t(end - first) * sizeof(char16_t));
    Length = end - first;
    Text[Length] = 0;
}

// ---- Paths and URLs

// The scan starts at the query of a URL so that a dot in the query is never
// taken for the extension; query and fragment are cut after upper-casing.
MString MString::FileExtension() const {
    MString result;
    if (Length < 3 || Text[Length - 1] == u'/') return result;
    int32_t query = -1, dot = -1;
    for (int32_t i = 0; i < Length; i++) {
        if (Text[i] == u'.' && dot < 0) dot = i;
        if (Text[i] == u'?' && query < 0) query = i;
    }
    if (dot < 0) return result;
    int32_t at = query >= 0 ? query : Length - 1;
    while (at >= 0 && Text[at] != u'.')
        at--;
    if (at < 0) return result;
    result = Join(Text + at + 1, Length - at - 1, nullptr, 0);
    UpperCaseInPlace(result.Text, result.Length);
    for (char16_t end : {u'?', u'#'}) {
        for (int32_t i = 0; i < result.Length; i++)
            if (result.Text[i] == end) {
                result = Join(result.Text, i, nullptr, 0);
                break;
            }
    }
    for (int32_t i = 0; i < result.Length; i++)
        if (result.Text[i] == u'/' || result.Text[i] == u'\\') return MString();
    return result;
}

void MString::SetFileExtension(MString extension) {
    if (Length == 0 || extension.Length == 0) return;
    extension.Remove(u'.');
    for (int32_t i = Length - 1; i >= 0; i--) {
        char16_t c = Text[i];
        if (c == u'.') {
            Length = i;
            Text[i] = 0;
            break;
        }
        if (c == u'/' || c == u':' || c == u'\\') break;
    }
    *this = *this + "." + extension;
}

// CR, LF, CR LF and LF CR are each one line end.
MString MString::Line(int32_t index) const {
    if (index < 0 || Length == 0) return MString();
    int32_t start = 0;
    for (int32_t line = 0;; line++) {
        int32_t end = start;
        while (end < Length && Text[end] != u'\r' && Text[end] != u'\n')
            end++;
        if (line == index) return Join(Text + start, end - start, nullptr, 0);
        if (end >= Length) return MString();
        char16_t first = Text[end];
        end++;
        if (end < Length && (Text[end] == u'\r' || Text[end] == u'\n') && Text[end] != first) end++;
        start = end;
    }
}

// ---- Float text

namespace {

// The text of "%f" of the float widened to double, cut as FloatText says,
// from the C library itself.
int32_t PrintedFloatText(float value, char buffer[FloatTextSize]) {
    std::snprintf(buffer, FloatTextSize, "%f", double(value));
    size_t n = std::strlen(buffer);
    if (std::strchr(buffer, '.')) {
        while (n > 0 && buffer[n - 1] == '0')
            n--;
        if (n > 0 && buffer[n - 1] == '.') n--;
        buffer[n] = 0;
    }
    if (std::strcmp(buffer, "-0") == 0) std::strcpy(buffer, "0");
    return int32_t(std::strlen(buffer));
}

} // namespace

// A float is m * 2^e with an integer m below 2^24, so its value times a
// million is an exact binary fraction: rounding that to an integer, halves to
// the even neighbour as the C library rounds, gives the six decimals of "%f"
// exactly, without the library's arbitrary-precision arithmetic. Values of
// 2^34 and more, infinities and NaNs are left to the library.
int32_t FloatText(float value, char buffer[FloatTextSize]) {
    uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    const bool negative = (bits >> 31) != 0;
    const int32_t exponent = int32_t((bits >> 23) & 0xFF);
    uint64_t mantissa = bits & 0x7FFFFFu;
    if (exponent == 0xFF) return PrintedFloatText(value, buffer);
    int32_t power = exponent == 0 ? -149 : exponent - 150;
    if (exponent != 0) mantissa |= 0x800000u;
    if (power > 10) return PrintedFloatText(value, buffer);

    const uint64_t Million = 1000000;
    uint64_t millionths;
    if (power >= 0) {
        millionths = (mantissa << power) * Million;
    } else {
        uint64_t scaled = mantissa * Million; // below 2^44
        int32_t shift = -power;
        if (shift >= 64) {
            millionths = 0;
        } else {
            millionths = scaled >> shift;
            uint64_t rest = scaled & ((uint64_t(1) << shift) - 1);
            uint64_t half = uint64_t(1) << (shift - 1);
            if (rest > half || (rest == half && (millionths & 1) != 0)) millionths++;
        }
    }

    int32_t n = 0;
    if (millionths == 0) {
        buffer[n++] = '0';
        buffer[n] = 0;
        return n;
    }
    if (negative) buffer[n++] = '-';
    char digits[24];
    int32_t count = 0;
    uint64_t whole = millionths / Million;
    do {
        digits[count++] = char('0' + whole % 10);
        whole /= 10;
    } while (whole > 0);
    while (count > 0)
        buffer[n++] = digits[--count];
    uint32_t fraction = uint32_t(millionths % Million);
    if (fraction != 0) {
        buffer[n++] = '.';
        int32_t places = 6;
        while (fraction % 10 == 0) {
            fraction /= 10;
            places--;
        }
        for (int32_t k = places - 1; k >= 0; k--) {
            buffer[n + k] = char('0' + fraction % 10);
            fraction /= 10;
        }
        n += places;
    }
    buffer[n] = 0;
    return n;
}

// ---- Free helpers

MString Narrow(const char* text) {
    MString result;
    result.AssignNarrow(text, 0);
    return result;
}

MString IntegerText(int64_t value) {
    char buffer[25];
    std::snprintf(buffer, sizeof buffer, "%lld", static_cast<long long>(value));
    return Narrow(buffer);
}

// wcstod reads "nan", "inf" and hexadecimal floats too; a NaN is handed on,
// and every reader replaces it.
float ParseFloat(const MString& text) {
    return ParseFloatUnits(text.Text, text.Length);
}

// A plain decimal of at most 15 digits, such as every EPS writer prints, is
// an integer below 2^53 divided by a power of ten of at most 22: both are
// exact doubles, so the one division is the correctly rounded double of the
// text, which is what the library's conversion gives, and the same float
// follows from it. Anything else (exponents, hexadecimal, "inf", "nan",
// blanks, longer digit strings, text behind the number) goes to the library.
float ParseFloatUnits(const char16_t* units, int32_t length) {
    if (!units || length <= 0) return 0;
    static const double Tens[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    int32_t i = 0;
    bool negative = units[0] == u'-';
    if (negative || units[0] == u'+') i = 1;
    uint64_t whole = 0;
    int32_t digits = 0, significant = 0, decimals = 0;
    bool point = false, plain = true;
    for (; i < length && plain; i++) {
        char16_t c = units[i];
        if (c >= u'0' && c <= u'9') {
            digits++;
            if (whole != 0 || c != u'0') significant++;
            whole = whole * 10 + uint64_t(c - u'0');
            if (point) decimals++;
            plain = significant <= 15 && decimals <= 22;
        } else if (c == u'.' && !point) {
            point = true;
        } else {
            plain = false;
        }
    }
    if (plain && digits > 0) {
        double value = double(whole) / Tens[decimals];
        return float(negative ? -value : value);
    }
    WideBuffer wide(units, length);
    return float(std::wcstod(wide.Units, nullptr));
}

// wcstol is 32 bits wide on Windows and clamps there; the clamp keeps the
// native build, whose long is 64 bits, to the same results.
int32_t ParseInteger(const MString& text) {
    if (text.Length == 0) return 0;
    WideBuffer units(text);
    long long value = std::wcstoll(units.Units, nullptr, 10);
    if (value > INT32_MAX) return INT32_MAX;
    if (value < INT32_MIN) return INT32_MIN;
    return int32_t(value);
}

void* MGetMemory(uint64_t size) {
    if (size == 0) return nullptr;
    void* block = size > SIZE_MAX ? nullptr : std::malloc(size_t(size));
    if (!block) DebugOutput(u"MGetMemory: out of memory exception\n");
    return block;
}

MString MVersionText() {
    MString version(TheVersionString);
    for (int pass = 0; pass < 2; pass++) {
        int32_t n = version.Length;
        if (n >= 2 && version.Text[n - 2] == u'.' && version.Text[n - 1] == u'0')
            version = Join(version.Text, n - 2, nullptr, 0);
    }
    return version;
}
