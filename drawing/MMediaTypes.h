#pragma once
// The table of media file types: 23 categories of the titling product's
// world, each with its upper-case extensions and a filter for the common file
// dialogs. The program itself reads only the pictures of slot 14; slot 15
// tells which web addresses the help commands hand to the shell.

#include "foundation/MString.h"
#include "foundation/MVector.h"

#include <cstdint>

enum MediaType {
    MediaText = 0,
    MediaShow = 1,
    MediaPlaylist = 2,
    MediaPreset = 3,
    MediaColourFont = 4,
    MediaUncompiledEffect = 5,
    MediaEffect = 6,
    MediaCubeMap = 7,
    MediaGif = 8,
    MediaVideo = 9,
    MediaVector = 10,
    MediaAudio = 11,
    MediaXml = 12,
    MediaModel = 13,
    MediaPicture = 14,
    MediaServerScript = 15,
    MediaWebcam = 16,
    MediaQrCode = 17,
    MediaColourMap = 18,
    MediaDynamicCubeMap = 19,
    MediaGlowMap = 20,
    MediaPreviousFrame = 21,
    MediaPictureAndVideo = 22,
    MediaTypeCount = 23
};

struct MMediaSlot {
    const char16_t* DisplayName = nullptr; // "Picture files", ...
    MVector<MString> Extensions;           // upper case, no dot, sorted once built
    int32_t ExtensionCount = 0;            // filled entries of Extensions
    // Pairs of label and pattern, each ended by a zero, and one more zero at
    // the end: the form the common dialogs take. Count is the whole length,
    // 0 for a slot without extensions.
    MVector<char16_t> Filter;
};

extern MMediaSlot MMediaTypes[MediaTypeCount];

// Fills the table from the fixed lists and the installed picture decoders.
// False only when a filter could not be built (no memory). Called once at
// start-up, after COM is up; a second call starts from an empty table.
bool BuildMediaTypes();
// The same with the decoders' extension text given: the comma-separated lists
// of all decoders run together, as the platform reports them.
bool BuildMediaTypesWith(const MString& decoderExtensions);
// Adds one extension to a slot: upper-cased, never twice, EPS never as a
// picture, and what goes to slots 9 or 14 goes to slot 22 too.
void AddExtension(int32_t slot, MString text);
// True when the slot holds the extension (any case, no dot).
bool MediaTypeHas(int32_t slot, MString extension);
// Empties every slot.
void ClearMediaTypes();

// The platform half: the extension lists of the installed picture decoders,
// run together; empty when there are none.
MString PlatformDecoderExtensions();
