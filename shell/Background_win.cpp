// The background picture as a WIC bitmap, which Direct2D draws from.

#include "shell/Background.h"

#include "drawing/MPicture.h"

#include <unknwn.h>

void* MakeBackgroundBitmap(const MPicture& picture) {
    return picture.ToWicBitmap();
}

void ReleaseBackgroundBitmap(void* bitmap) {
    if (bitmap) static_cast<IUnknown*>(bitmap)->Release();
}
