// The rewrite of cairo's page content. Cairo writes many operators on one
// line and wraps lines wherever it likes, while the reader needs every
// operator at the end of its own line. Rewriting the file's bytes in memory,
// keeping their length, lets the line reader stay ignorant of cairo.

#include "eps/EpsReader.h"

#include "foundation/Platform.h"

#include <cstring>

namespace {

// Cairo's operators that are to end a line, in the order they are separated.
// Those without a word list ("q", "w", "rectclip" ...) simply become lines
// that the reader passes over.
const char* const CairoWords[] = {"c", "cm", "d", "g", "h",        "j", "J", "l",
                                  "m", "M",  "q", "Q", "rectclip", "S", "w"};

const char PageSetupEnd[] = "%%EndPageSetup";

// Operator words are a few letters; a longer one is cut, and then matches
// nothing that cairo writes. A character whose low byte is 0 ends the word.
const int32_t MaxWord = 60;

// Index of the first occurrence of what in text, or -1.
int32_t FindBytes(const uint8_t* text, int32_t length, const char* what) {
    int32_t n = int32_t(std::strlen(what));
    if (n == 0 || !text) return -1;
    for (int32_t i = 0; i + n <= length; i++)
        if (std::memcmp(text + i, what, size_t(n)) == 0) return i;
    return -1;
}

} // namespace

namespace MCairo {

void Substitute(uint8_t* text, int32_t length, const char* find, const char* with) {
    size_t n = std::strlen(find);
    if (n != std::strlen(with)) {
        DebugOutput(u"ERROR MCairo 1\n");
        return;
    }
    if (n == 0 || !text) return;
    int32_t size = int32_t(n);
    // An occurrence is found by one byte of it that the C library's search
    // finds fast: the first that is neither a blank nor a line feed, which
    // fill the page, else the first. The occurrences are still taken from
    // the left: the anchor of the next one lies at its start plus the same
    // offset, so the anchors come in the order of the starts.
    int32_t anchor = 0;
    while (anchor < size && (find[anchor] == ' ' || find[anchor] == '\n'))
        anchor++;
    if (anchor == size) anchor = 0;
    const uint8_t mark = uint8_t(find[anchor]);
    for (int32_t i = 0; i + size <= length;) {
        const void* hit = std::memchr(text + i + anchor, mark, size_t(length - size - i + 1));
        if (!hit) break;
        i = int32_t(static_cast<const uint8_t*>(hit) - text) - anchor;
        int32_t k = 0;
        while (k < size && text[i + k] == uint8_t(find[k]))
            k++;
        if (k == size) {
            std::memcpy(text + i, with, n);
            i += size;
        } else {
            i++;
        }
    }
}

void Separate(uint8_t* text, int32_t length, const MString& word) {
    char w[MaxWord + 1];
    int32_t n = word.Length < MaxWord ? word.Length : MaxWord;
    for (int32_t i = 0; i < n; i++)
        w[i] = char(word.Text[i] & 0xFF);
    w[n] = 0;
    if (w[0] == 0) return; // an empty word would split every double blank

    // The four substitutions, each keeping the length: what stands before
    // and behind the word, and what is to stand there afterwards.
    static const char* const Table[4][4] = {
        {"\n ", " ", "  ", "\n"},
        {" \n", " ", "  ", "\n"},
        {" ", " ", " ", "\n"},
        {"\n", " ", "\n", "\n"},
    };
    char find[MaxWord + 4], with[MaxWord + 4];
    for (const auto& row : Table) {
        std::strcpy(find, row[0]);
        std::strcat(find, w);
        std::strcat(find, row[1]);
        std::strcpy(with, row[2]);
        std::strcat(with, w);
        std::strcat(with, row[3]);
        Substitute(text, length, find, with);
    }
}

void RewritePage(uint8_t* text, int32_t length) {
    int32_t at = FindBytes(text, length, PageSetupEnd);
    if (at < 0) return;
    uint8_t* region = text + at + int32_t(sizeof PageSetupEnd - 1);
    int32_t size = length - at - int32_t(sizeof PageSetupEnd - 1);

    // Cairo wraps a long line by putting a line feed beside a blank. A line
    // feed with exactly one blank beside it is such a wrap and becomes a
    // blank; the bytes are read as already changed, and the region's ends
    // count as no blank.
    for (int32_t i = 0; i < size; i++) {
        if (region[i] != '\n') continue;
        bool left = i > 0 && region[i - 1] == ' ';
        bool right = i + 1 < size && region[i + 1] == ' ';
        if (left != right) region[i] = ' ';
    }

    for (const char* word : CairoWords) {
        Separate(region, size, Narrow(word));
    }
}

} // namespace MCairo
