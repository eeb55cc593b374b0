#pragma once
// The wide string of the system: UTF-16 code units, copied by value, with a
// null Text for a string that holds nothing.

#include <cstdint>

struct MString {
    char16_t* Text = nullptr; // zero-terminated, owned; null when empty
    int32_t Length = 0;       // characters before the terminator
    int32_t Capacity = 0;     // characters Text can hold, terminator included

    MString() = default;
    MString(const MString& other);
    MString(MString&& other) noexcept;
    MString(const char16_t* wide);
    explicit MString(float value); // the only way a float becomes text
    ~MString();

    bool Reserve(int32_t capacity, bool keep);
    void AssignNarrow(const char* text, uint32_t codePage);

    MString& operator=(const MString& other);
    MString& operator=(MString&& other) noexcept;
    MString& operator=(const char16_t* wide);
    MString& operator+=(const MString& other);

    MString operator+(const MString& other) const;
    MString operator+(const char* narrow) const; // 7-bit literal, code page 0
    MString operator+(char character) const;

    MString Left(int32_t last) const;
    void ReplaceFirst(const MString& find, const MString& with);
    void ReplaceLineEnds(const MString& with);
    void Remove(char16_t character);
    void Trim();
    MString FileExtension() const;
    void SetFileExtension(MString extension);
    MString Line(int32_t index) const;

    bool IsEmpty() const { return Length == 0; }
    const char16_t* Chars() const { return Text ? Text : u""; } // never null
    int32_t Find(const MString& what, int32_t from = 0) const;  // -1 if absent
    bool operator==(const MString& other) const;
    bool operator!=(const MString& other) const { return !(*this == other); }
};

// A narrow 7-bit literal as a string (code page 0).
MString Narrow(const char* text);
// Integers in base 10, with a leading "-" when negative.
MString IntegerText(int64_t value);
// Number parsing: text that is no number gives 0; NaN is left to the caller.
float ParseFloat(const MString& text);
// The same for length units that need not be zero-terminated.
float ParseFloatUnits(const char16_t* units, int32_t length);

// The text of a float as MString(value) makes it, written into buffer with a
// terminator; returns its length. The buffer holds FloatTextSize chars.
const int32_t FloatTextSize = 65;
int32_t FloatText(float value, char buffer[FloatTextSize]);
int32_t ParseInteger(const MString& text);

// Checked allocation for raw buffers: null for size 0 or when memory runs out.
void* MGetMemory(uint64_t size);
// The program version without trailing ".0" parts: "5.2".
MString MVersionText();
extern const char16_t* const TheVersionString; // "5.2.0.0"
