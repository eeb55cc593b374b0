#pragma once
// A text stream over MFile: four encodings, line ends, tokens and escapes for
// reading, and records of tab-separated fields for writing. The settings
// file, the EPS reader, track files and the Spaghetti comments rest on its
// token and escape rules, so they are format rules.

#include "foundation/MFile.h"
#include "foundation/MString.h"
#include "foundation/MVector.h"

#include <cstdint>

// Encodings of a text file, with the byte order mark each writes.
enum {
    Encoding8Bit = 1,    // one byte per character, character code = byte; no mark
    EncodingUtf16LE = 2, // mark FF FE
    EncodingUtf16BE = 3, // mark FE FF
    EncodingUtf8 = 4,    // mark EF BB BF
};

// The tokens of the current line.
struct MTextTokens {
    MVector<char16_t> Line;           // the line without CR and LF, zero-terminated
    int32_t Count = 0;                // tokens filled
    MVector<MVector<char16_t>> Items; // token buffers, each zero-terminated
    bool Plain = false; // the line holds no "<" and no "&", so no escape: tokens read as they stand
};

struct MTextFile {
    MString Path;
    bool IsOpen = false;        // after open, and after writing the mark
    MVector<char16_t> WideLine; // the current line without its end, zero-terminated
    MVector<uint8_t> ByteLine;  // the current line before UTF-8 conversion
    MFile File;
    MTextTokens Tokens;
    MString OutLine; // the record being built for writing
    bool ForWriting = false;
    int32_t Encoding = Encoding8Bit;
    int32_t MarkLength = 0;  // bytes of byte order mark
    int32_t TokenLimit = -1; // at most this many tokens per line; -1: no limit

    MTextFile(const MString& path, bool forWriting, bool toMemory, int32_t encoding);
    // Reads text that is already in memory (a copy of size bytes), with the
    // same mark detection as a file.
    MTextFile(const void* bytes, int32_t size);
    MTextFile(const MTextFile&) = delete;
    MTextFile& operator=(const MTextFile&) = delete;

    bool ReadLine();
    MString Line() const;
    MString Token(int32_t index) const;
    int32_t TokenCount() const { return Tokens.Count; }
    bool TokenBool(int32_t index) const;
    // ParseFloat(Token(index)) and Token(index) == text, without building
    // the token's string when it holds no escape.
    float TokenFloat(int32_t index) const;
    bool TokenIs(int32_t index, const MString& text) const;

    void AppendText(MString value);
    void AppendInteger(int32_t value);
    void AppendBool(bool value);
    void WriteKey(const MString& key, const MString& value);
    // Without this a literal would pick the boolean overload.
    void WriteKey(const MString& key, const char16_t* value) { WriteKey(key, MString(value)); }
    void WriteKey(const MString& key, int32_t value);
    void WriteKey(const MString& key, bool value);
    void WriteRaw(const MString& text);
};

// Replaces the file at path with text in the encoding (1 to 4). True if the
// file could be opened; an empty text returns true and touches nothing.
bool WriteTextFile(const MString& text, const MString& path, int32_t encoding);
// The whole text of the file after its mark, decoded; empty on any failure.
MString ReadTextFile(const MString& path);
// The same for bytes in memory.
MString ReadTextMemory(const void* bytes, int32_t size);
// Decodes the four escapes of the token and line readers.
MString DecodeEscapes(MString text);
