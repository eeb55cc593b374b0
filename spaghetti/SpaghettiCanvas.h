#pragma once
// The platform's device context of a dialog for drawing outside a paint
// message: SpaghettiCanvas_win.cpp asks the window for it, the native build
// has none.

// Null when there is none.
void* AcquireWindowDc(void* window);
void ReleaseWindowDc(void* window, void* dc);
