#pragma once
// The complete Cinderlane show of the Spaghetti tool, written line by line:
// camera, light, container, the picture, the strings and at choice falling
// leaves. No template is involved.

#include "foundation/MString.h"

#include <cstdint>

// The whole text of the show. texture, particle, shape and animation are the
// indices of the Spaghetti dialog's dropdowns; an index outside its table
// counts as 0, except shape: an unknown shape gives false and leaves text
// alone. Texture paths lie below ProgramFolder() and are not looked for.
bool MakeSpaghettiShow(MString& text, const MString& epsPath, const MString& pictureFile,
                       int32_t texture, int32_t particle, float radius, int32_t shape,
                       int32_t animation);

// Builds the text and writes it to showPath as 8-bit text without a mark,
// replacing an earlier file. True if the file was opened; false for an
// unknown shape, before anything is written.
bool WriteSpaghettiShow(const MString& showPath, const MString& epsPath, const MString& pictureFile,
                        int32_t texture, int32_t particle, float radius, int32_t shape,
                        int32_t animation);
