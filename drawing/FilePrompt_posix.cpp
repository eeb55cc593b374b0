// The native build has no dialogs: an unscripted prompt is a cancel.

#include "drawing/FilePrompt.h"

MString PlatformFilePrompt(void*, const WFilePromptRequest&) {
    return MString();
}
