// Without a platform bitmap the background is kept as a copy of the picture,
// which the recording surface can name by its size.

#include "shell/Background.h"

#include "drawing/MPicture.h"

#include <new>

void* MakeBackgroundBitmap(const MPicture& picture) {
    MPicture* copy = new (std::nothrow) MPicture;
    if (!copy) return nullptr;
    if (!copy->Allocate(int32_t(picture.Width), picture.Height, picture.Format) ||
        !copy->Copy(picture)) {
        delete copy;
        return nullptr;
    }
    return copy;
}

void ReleaseBackgroundBitmap(void* bitmap) {
    delete static_cast<MPicture*>(bitmap);
}
