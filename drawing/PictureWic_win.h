#pragma once
// The WIC side of the picture, for the Windows build alone: the copy of a
// decoded frame's pixels into a picture, which tests drive with a bitmap
// source of their own.

#include "drawing/MPicture.h"

#include <windows.h>

#include <wincodec.h>

// Copies all pixels of source into picture, which is already made in the
// source's size and format: in one call, or when that fails row by row.
// False (with the picture empty) when a row fails too.
bool CopyWicPixels(IWICBitmapSource* source, MPicture& picture);
