// Opening, saving and tracing the sketch, and the question that comes before
// the sketch is replaced or left.

#include "shell/SketchFile.h"

#include "dialogs/SaveDialog.h"
#include "drawing/FilePrompt.h"
#include "eps/EpsWriter.h"
#include "eps/LoadSketch.h"
#include "eps/TraceFlow.h"
#include "foundation/Platform.h"
#include "shell/Commands.h"
#include "shell/Shell.h"
#include "shell/ToolWindows.h"
#include "shell/WSettings.h"
#include "sketch/WSketch.h"
#include "view/WView.h"

bool (*TheInternalTracer)(const MString& picture) = TraceInternal;
bool (*TheExternalTracer)(const MString& picture) = TraceExternal;

bool AskToSave() {
    if (!TheSketch || !TheSketch->Modified) return true;
    MessageAnswer answer =
        ShowMessage(MString(u"The sketch has changed.\r\n\r\nDo you want to save the changes ? "),
                    IconQuestion, ButtonsYesNoCancel);
    if (answer == AnswerCancel) return false;
    if (answer == AnswerNo) return true;
    return SaveSketch();
}

// The title is refreshed on every way out, a cancelled prompt included: the
// clean-up before may have removed points that the title still counts.
bool SaveSketch() {
    bool written = false;
    if (TheFileName.IsEmpty()) {
        MString path = FilePrompt(PromptSaveSketch);
        if (!path.IsEmpty()) {
            written = SaveEps(path);
            TheFileName = path;
        }
    } else {
        MString path = TheFileName;
        written = SaveEps(path);
    }
    RefreshTitle();
    return written;
}

void SaveSketchAs() {
    if (RunSaveDialog()) {
        MString path = FilePrompt(PromptSaveSketch);
        if (!path.IsEmpty()) {
            SaveEps(path);
            TheFileName = path;
        }
    }
    RefreshTitle();
}

void ShowOpenedSketch() {
    RefreshTitle();
    ShowStandardView(ViewFront);
    RefreshPointWindow();
    SetMode(ModeEditSketch);
}

void OpenSketch(const MString& path) {
    MString name = path.IsEmpty() ? FilePrompt(PromptOpenSketch) : path;
    if (name.IsEmpty()) return;
    DebugOutput(MString(u"Opening sketch \"") + name + "\"\n");
    TheFileName = MString();
    if (LoadSketch(name) && name.FileExtension() == MString(u"EPS")) TheFileName = name;
    ShowOpenedSketch();
}

void TraceBitmap() {
    MString picture = FilePrompt(PromptSelectPicture);
    if (picture.IsEmpty()) return;
    // A trace gives outlines to be filled, and they have no roll of their own.
    if (TheSettings) {
        TheSettings->SaveSolid = true;
        TheSettings->SaveRoll = false;
    }
    MString tracer = TheSettings ? TheSettings->ExternalTracer : MString();
    if (tracer.IsEmpty()) {
        if (TheInternalTracer) TheInternalTracer(picture);
    } else if (IsKnownTracer(tracer)) {
        if (TheExternalTracer) TheExternalTracer(picture);
    } else {
        ShowMessage(MString(u"Unknown external tracer\n\n\"") + tracer + "\"", IconError);
    }
    // Whatever the tracer did, the sketch is no longer the file's: the next
    // save asks for a name.
    TheFileName = MString();
    ShowOpenedSketch();
}
