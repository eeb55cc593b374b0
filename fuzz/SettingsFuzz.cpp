// Fuzz target of the settings reader: arbitrary bytes read as a settings file
// from memory, then the limits that hold after any file checked.
//
// Seeds: tests/data/settings/*.txt
// Dictionary: fuzz/settings.dict
// Max length: 4096

#include "foundation/MTextFile.h"
#include "foundation/Platform.h"
#include "shell/WSettings.h"

#include <cstddef>
#include <cstdint>

namespace {

// A window fitted to the virtual screen lies inside it and is at least 200
// pixels wide and high (the screen being larger than that).
void CheckRect(const WRect& rect, const MScreenArea& screen) {
    int32_t width = rect.right - rect.left, height = rect.bottom - rect.top;
    if (width < 200 || height < 200 || width > screen.Width || height > screen.Height)
        __builtin_trap();
    if (rect.left < screen.Left || rect.top < screen.Top) __builtin_trap();
    if (rect.right > screen.Left + screen.Width || rect.bottom > screen.Top + screen.Height)
        __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > 1 << 20) return 0;
    WSettings settings;
    MTextFile file(data, int32_t(size));
    settings.ReadRecords(file);
    if (settings.PenSize < 1 || settings.PenSize > 10) __builtin_trap();
    if (settings.PointSize < 1 || settings.PointSize > 20) __builtin_trap();
    if (settings.Smooth < 0 || settings.Smooth > 1000) __builtin_trap();
    MScreenArea screen = VirtualScreen();
    // Rectangles keep their member defaults unless a record fitted them.
    const WRect* rects[] = {&settings.WindowRect, &settings.WindowRect_Info,
                            &settings.WindowRect_Element, &settings.WindowRect_Mode};
    for (const WRect* rect : rects)
        if (rect->right != 0 || rect->bottom != 0 || rect->left != 0 || rect->top != 0)
            CheckRect(*rect, screen);
    return 0;
}
