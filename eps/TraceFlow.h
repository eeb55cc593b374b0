#pragma once
// The two tracers behind "Trace bitmap...": the built-in one, whose outlines
// go through the freehand fit, and the external potrace program, whose EPS
// output comes back through the sketch load.

#include "foundation/MString.h"

// True when the path's file name (behind the last "/", ":" or "\"), lower
// cased, is "potrace.exe". An empty path is false. Consumes path.
bool IsKnownTracer(MString path);

// Traces the picture with the built-in tracer at detail 2 and replaces the
// sketch by the fitted outlines, centred and scaled to 200 units. The sketch
// is emptied (and that state recorded) even when the picture yields nothing.
// True when more than one point results; the undo ring then holds this state
// alone.
bool TraceInternal(const MString& picturePath);

// Hands the picture to the external tracer of the settings through
// "temp.bmp" and "temp.eps" in the Temp folder of the program's application
// data, and loads its output. The temporary files are deleted after every
// run. True when the output loaded.
bool TraceExternal(const MString& picturePath);

// The temporary folder of the external tracer, made if missing; empty when
// it cannot be made.
MString TraceTempFolder();
// The command text for the tracer and the two temporary files.
MString TraceCommand(const MString& tracer, const MString& epsPath, const MString& bmpPath);
