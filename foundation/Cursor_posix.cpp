// The native build runs headless: there is no pointer to move, and the move
// is only what Cursor.cpp records.

#include "foundation/Platform.h"

void PlatformSetCursorClientPosition(float x, float y) {
    (void)x;
    (void)y;
}
