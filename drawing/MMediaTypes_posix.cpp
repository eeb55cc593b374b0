// The native build lists no decoders of its own: its picture files are the
// fallback list beside TGA and DDS, the least the table promises anywhere.

#include "drawing/MMediaTypes.h"

MString PlatformDecoderExtensions() {
    return MString();
}
