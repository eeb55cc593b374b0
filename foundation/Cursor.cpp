// The programmatic move of the mouse pointer, kept for tests in both builds.

#include "foundation/Platform.h"

#include "foundation/Program.h"

MCursorMove TheLastCursorMove;

// TheMouseEnabled is recorded because the callers turn it off around the
// move, so that the window procedure does not take the move for a drag; a
// test can see that it was off when the pointer jumped.
void SetCursorClientPosition(float x, float y) {
    TheLastCursorMove.Count++;
    TheLastCursorMove.X = x;
    TheLastCursorMove.Y = y;
    TheLastCursorMove.MouseEnabled = TheMouseEnabled;
    PlatformSetCursorClientPosition(x, y);
}
