#include "shell/SketchFile.h"

#include "foundation/Platform.h"

// Reading sketch files arrives with the file commands. Until then a path from
// the command line is acknowledged in the debug output and the program stays
// empty, as it does for a file it cannot read.
void OpenSketch(const MString& path) {
    DebugOutput(MString(u"OpenSketch: not yet able to read ") + path + "\n");
}
