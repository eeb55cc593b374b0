// The native build has no dialog windows and so no device contexts.

#include "spaghetti/SpaghettiCanvas.h"

void* AcquireWindowDc(void*) {
    return nullptr;
}

void ReleaseWindowDc(void*, void*) {}
