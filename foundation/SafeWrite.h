#pragma once
// Replacing a file so that a failed write never costs the earlier one: the
// text goes to a file beside the target first, and only when every byte of
// it is on the disk does that file take the target's place.

#include "foundation/MString.h"

#include <cstdint>

// Writes text in the encoding, as WriteTextFile does, to path + ".saving",
// then moves that file over path. False, with the file at path as it was and
// the side file gone, when the folder cannot be written, the disk is full or
// path is open in another program. Empty text returns true and touches
// nothing.
bool ReplaceTextFile(const MString& text, const MString& path, int32_t encoding);
// The same for size bytes that are already encoded.
bool ReplaceFileBytes(const void* bytes, int32_t size, const MString& path);

// ---- The platform half (SafeWrite_win.cpp, SafeWrite_posix.cpp).

// Puts the file at from in the place of the file at to in one step. Fails,
// changing nothing, when to is open in another program.
bool PlatformMoveFileOver(const MString& from, const MString& to);
// True when the file at path is gone.
bool PlatformDeleteFile(const MString& path);
