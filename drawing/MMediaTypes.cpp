// Building the media type table and its dialog filters.

#include "drawing/MMediaTypes.h"

#include "foundation/Platform.h"

#include <utility>

MMediaSlot MMediaTypes[MediaTypeCount];

namespace {

const char16_t* const DisplayNames[MediaTypeCount] = {
    u"Text files",
    u"Cinderlane show files",
    u"Cinderlane playlists",
    u"Cinderlane presets",
    u"Cinderlane colour fonts",
    u"Cinderlane uncompiled effects",
    u"Cinderlane effects",
    u"Cube map files",
    u"(Animated) GIF files",
    u"Video files",
    u"Vector files",
    u"Audio files",
    u"XML files",
    u"3D model files",
    u"Picture files",
    u"Server scripts",
    u"Webcams",
    u"QR code",
    u"Dynamic colour maps",
    u"Dynamic cube maps",
    u"Dynamic glow maps",
    u"Previous frame",
    u"Picture and video files",
};

// The fixed extensions of each slot, blank-separated, in the order they are
// added. Slot 14 gets TGA, DDS and the decoders' list separately; slot 22 is
// filled through slots 9 and 14.
const char16_t* const FixedLists[MediaTypeCount] = {
    u"TXT",
    u"CND",
    u"CNPL",
    u"CNP",
    u"CNF",
    u"CNX",
    u"CFX",
    u"DDS",
    u"GIF",
    u"ASF AVI MPG MPEG VOB QT WMV MOV FLV 3GP OGG OGM OGV OGA MP4 DIVX GIF WEBM MKV MKA M4V "
    u"HDMOV TS M2TS M2T MTS BDMV MPLS",
    u"EPS",
    u"MP3 WAV MID WMA M4A AAC OPUS",
    u"XML",
    u"OBJ X GLB STL",
    nullptr,
    u"HTML HTM PHP JSP ASP ASPX",
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
};

// Used when no decoder reports any extension: what every Windows has.
const char16_t* const FallbackPictures = u"BMP GIF JPEG JPE JPG PNG TIF TIFF";

const int32_t ExtensionStep = 10;

// count characters of text as a string.
MString Piece(const char16_t* text, int32_t count) {
    MVector<char16_t> buffer;
    if (count <= 0 || !buffer.SetCount(count + 1)) return MString();
    for (int32_t i = 0; i < count; i++)
        buffer[i] = text[i];
    buffer[count] = 0;
    return MString(buffer.Data);
}

// Hands each blank-separated word of list to AddExtension.
void AddList(int32_t slot, const char16_t* list) {
    int32_t start = 0;
    for (int32_t i = 0;; i++) {
        if (list[i] == u' ' || list[i] == 0) {
            if (i > start) AddExtension(slot, Piece(list + start, i - start));
            start = i + 1;
        }
        if (list[i] == 0) break;
    }
}

bool Holds(const MMediaSlot& slot, const MString& text) {
    for (int32_t i = 0; i < slot.ExtensionCount; i++)
        if (slot.Extensions[i] == text) return true;
    return false;
}

void Append(MMediaSlot& slot, const MString& text) {
    if (Holds(slot, text)) return;
    if (!slot.Extensions.Grow(slot.ExtensionCount + 1, ExtensionStep)) return;
    slot.Extensions[slot.ExtensionCount++] = text;
}

// Ascending by 16-bit code units; a prefix comes before the longer text.
int Compare(const MString& a, const MString& b) {
    int32_t shorter = a.Length < b.Length ? a.Length : b.Length;
    for (int32_t i = 0; i < shorter; i++)
        if (a.Text[i] != b.Text[i]) return a.Text[i] < b.Text[i] ? -1 : 1;
    return a.Length < b.Length ? -1 : a.Length > b.Length ? 1 : 0;
}

// Recursive quicksort, the middle element as the first pivot. The entries of
// a slot are distinct, so any correct sort gives the same order.
void QuickSort(MString* items, int32_t low, int32_t high) {
    if (low >= high) return;
    MString pivot = items[low + (high - low) / 2];
    int32_t i = low, j = high;
    while (i <= j) {
        while (Compare(items[i], pivot) < 0)
            i++;
        while (Compare(items[j], pivot) > 0)
            j--;
        if (i <= j) {
            std::swap(items[i], items[j]);
            i++;
            j--;
        }
    }
    if (low < j) QuickSort(items, low, j);
    if (i < high) QuickSort(items, i, high);
}

// ---- Filter text: two passes, the first only counts.

// Writes text at the cursor (or only counts it when target is null).
void Put(char16_t* target, int32_t& cursor, const char16_t* text) {
    for (; *text; text++) {
        if (target) target[cursor] = *text;
        cursor++;
    }
}

void PutZero(char16_t* target, int32_t& cursor) {
    if (target) target[cursor] = 0;
    cursor++;
}

// One filter pass over a slot; returns the characters written or counted.
int32_t WriteFilter(const MMediaSlot& slot, char16_t* target) {
    int32_t cursor = 0;
    if (slot.ExtensionCount == 1) {
        const char16_t* extension = slot.Extensions[0].Chars();
        Put(target, cursor, slot.DisplayName);
        Put(target, cursor, u" (*.");
        Put(target, cursor, extension);
        Put(target, cursor, u")");
        PutZero(target, cursor);
        Put(target, cursor, u"*.");
        Put(target, cursor, extension);
        Put(target, cursor, u";");
        PutZero(target, cursor);
    } else {
        Put(target, cursor, u"All ");
        Put(target, cursor, slot.DisplayName);
        PutZero(target, cursor);
        for (int32_t i = 0; i < slot.ExtensionCount; i++) {
            Put(target, cursor, u"*.");
            Put(target, cursor, slot.Extensions[i].Chars());
            Put(target, cursor, u";");
        }
        PutZero(target, cursor);
        for (int32_t i = 0; i < slot.ExtensionCount; i++) {
            const char16_t* extension = slot.Extensions[i].Chars();
            Put(target, cursor, u"*.");
            Put(target, cursor, extension);
            PutZero(target, cursor);
            Put(target, cursor, u"*.");
            Put(target, cursor, extension);
            Put(target, cursor, u";");
            PutZero(target, cursor);
        }
    }
    PutZero(target, cursor);
    return cursor;
}

bool BuildFilter(MMediaSlot& slot) {
    slot.Filter.SetCount(0);
    if (slot.ExtensionCount == 0) return true;
    int32_t count = WriteFilter(slot, nullptr);
    if (!slot.Filter.SetCount(count)) return false;
    WriteFilter(slot, slot.Filter.Data);
    return true;
}

} // namespace

void ClearMediaTypes() {
    for (int32_t i = 0; i < MediaTypeCount; i++) {
        MMediaSlot& slot = MMediaTypes[i];
        slot.DisplayName = DisplayNames[i];
        slot.Extensions.SetCount(0);
        slot.ExtensionCount = 0;
        slot.Filter.SetCount(0);
    }
}

void AddExtension(int32_t slot, MString text) {
    if (slot < 0 || slot >= MediaTypeCount || text.IsEmpty()) return;
    UpperCaseInPlace(text.Text, text.Length);
    // A decoder that claims EPS cannot make a picture of it here.
    if (slot == MediaPicture && text == MString(u"EPS")) return;
    Append(MMediaTypes[slot], text);
    if (slot == MediaVideo || slot == MediaPicture) Append(MMediaTypes[MediaPictureAndVideo], text);
}

bool MediaTypeHas(int32_t slot, MString extension) {
    if (slot < 0 || slot >= MediaTypeCount || extension.IsEmpty()) return false;
    UpperCaseInPlace(extension.Text, extension.Length);
    return Holds(MMediaTypes[slot], extension);
}

bool BuildMediaTypesWith(const MString& decoderExtensions) {
    ClearMediaTypes();
    for (int32_t i = 0; i < MediaTypeCount; i++)
        if (FixedLists[i]) AddList(i, FixedLists[i]);
    AddExtension(MediaPicture, MString(u"TGA"));
    AddExtension(MediaPicture, MString(u"DDS"));

    // Letters and digits build an extension; dots, commas and anything else
    // end one.
    if (!decoderExtensions.IsEmpty()) {
        MString text = decoderExtensions;
        UpperCaseInPlace(text.Text, text.Length);
        int32_t start = 0;
        for (int32_t i = 0; i <= text.Length; i++) {
            char16_t c = i < text.Length ? text.Text[i] : 0;
            bool part = (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9');
            if (part) continue;
            if (i > start) AddExtension(MediaPicture, Piece(text.Text + start, i - start));
            start = i + 1;
        }
    } else {
        AddList(MediaPicture, FallbackPictures);
    }

    for (int32_t i = 0; i < MediaTypeCount; i++) {
        MMediaSlot& slot = MMediaTypes[i];
        QuickSort(slot.Extensions.Data, 0, slot.ExtensionCount - 1);
    }
    for (int32_t i = 0; i < MediaTypeCount; i++)
        if (!BuildFilter(MMediaTypes[i])) return false;
    return true;
}

bool BuildMediaTypes() {
    return BuildMediaTypesWith(PlatformDecoderExtensions());
}
