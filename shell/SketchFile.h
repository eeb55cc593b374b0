#pragma once
// Opening, saving and tracing the sketch as the commands, the command line
// and a file drop ask for it, with the question about unsaved changes.

#include "foundation/MString.h"

// True when the sketch may be replaced or left: it is unchanged, or the user
// answered No, or Yes and the save succeeded. False when the user cancelled
// or the save failed.
bool AskToSave();
// Saves under TheFileName, or asks for a name first when there is none (an
// empty answer gives false). The name asked for becomes TheFileName whatever
// the writer's result. The title is refreshed in every case; the result is
// the writer's.
bool SaveSketch();
// "Save as..." after its clean-up: the save dialog, and only after its OK the
// prompt; a path given is saved to and becomes TheFileName whatever the
// writer's result. The title is refreshed however it ends.
void SaveSketchAs();
// Opens a sketch file (EPS or track file); an empty path asks for one first,
// and a cancelled prompt changes nothing. TheFileName is cleared, and becomes
// the path only when an EPS file loaded: a track file stays nameless, so that
// Save asks. Then, loaded or not, the sketch is shown as ShowOpenedSketch does.
void OpenSketch(const MString& path);
// The end of every open and trace: title, the front view on the selected
// record or fitted to the sketch, and the edit mode.
void ShowOpenedSketch();

// The trace flow of "Trace bitmap...": a picture is asked for (nothing
// happens on cancel), the save choices become solid without roll, and the
// tracer of the settings runs: the built-in one when ExternalTracer is empty,
// the external one when its file name is potrace.exe in any case, otherwise
// the message "Unknown external tracer" and no tracer. Then TheFileName is
// cleared and the sketch shown as after an open.
void TraceBitmap();
// The tracers, reached through these pointers so that tests can put their
// own in: each takes the picture's path and returns whether the sketch now
// holds outlines. They point at TraceInternal and TraceExternal; a null
// tracer runs nothing.
extern bool (*TheInternalTracer)(const MString& picture);
extern bool (*TheExternalTracer)(const MString& picture);
