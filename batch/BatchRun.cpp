// The batch program's work on each input.

#include "batch/BatchRun.h"

#include "dialogs/SaveDialog.h"
#include "elements/WElement.h"
#include "eps/EpsWriter.h"
#include "eps/LoadSketch.h"
#include "eps/TraceFlow.h"
#include "foundation/Folders.h"
#include "foundation/Platform.h"
#include "foundation/Program.h"
#include "show/WriteShows.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"

#include <cstdio>
#include <string>

namespace {

void WriteStandardError(const MString& text) {
    std::string bytes;
    int32_t size = WideToNarrow(65001, text.Chars(), text.Length, nullptr, 0);
    if (size > 0) {
        bytes.resize(size_t(size));
        WideToNarrow(65001, text.Chars(), text.Length, &bytes[0], size);
    }
    bytes += "\n";
    std::fputs(bytes.c_str(), stderr);
    std::fflush(stderr);
}

// Collects the boxes of one step and hands them to the sink: nobody answers,
// so each box takes its first button.
struct WBatchMessages {
    enum { Capacity = 16 };
    MString Texts[Capacity];
    MessageScript Script;
    MessageScript* Saved = nullptr;

    WBatchMessages() {
        Script.Texts = Texts;
        Script.Capacity = Capacity;
        Saved = TheMessageScript;
        TheMessageScript = &Script;
    }
    ~WBatchMessages() {
        Flush();
        TheMessageScript = Saved;
    }
    void Flush() {
        int32_t count = Script.Count < Capacity ? Script.Count : Capacity;
        for (int32_t i = 0; i < count; i++)
            Show(Texts[i]);
        Script.Count = 0;
    }
    static void Show(const MString& text) {
        if (TheBatchMessageSink) TheBatchMessageSink(text);
    }
};

// The file name of a path: what follows its last "/", "\" or ":".
MString FileNameOf(const MString& path) {
    int32_t start = 0;
    for (int32_t i = 0; i < path.Length; i++)
        if (path.Text[i] == u'/' || path.Text[i] == u'\\' || path.Text[i] == u':') start = i + 1;
    return MString(path.Chars() + start);
}

// The sketch as the window holds it after "Open sketch..." or "Trace
// bitmap...". False when the input did not load.
bool OpenInput(const WBatchOptions& options, const MString& input) {
    if (!options.Trace) return LoadSketch(input);
    // A trace gives outlines to be filled, and they have no roll of their own.
    TheSettings->SaveSolid = true;
    TheSettings->SaveRoll = false;
    if (options.Tracer.IsEmpty()) {
        TraceInternal(input);
    } else if (IsKnownTracer(options.Tracer)) {
        TraceExternal(input);
    } else {
        ShowMessage(MString(u"Unknown external tracer\n\n\"") + options.Tracer + "\"", IconError);
        return false;
    }
    return true;
}

// The save dialog's rules on the choices asked for: a template it would
// grey out is refused with its reason. Centre and Normalize size are unticked
// as the dialog unticks them for a ride.
bool CheckChoices(WSettings& settings) {
    WSaveChoices choices;
    for (int32_t i = 0; i < TemplateCount; i++)
        choices.Ticked[i] = settings.Template[i];
    choices.Solid = settings.SaveSolid;
    choices.Roll = settings.SaveRoll;
    choices.Centre = settings.Centre;
    choices.Scale = settings.Scale;
    int32_t curves = CountCurves();
    bool refused = false;
    for (int32_t i = 0; i < TemplateCount; i++) {
        MString reason = SaveTemplateRefusal(i, curves, choices.Solid, choices.Roll);
        if (settings.Template[i] && !reason.IsEmpty()) {
            WBatchMessages::Show(reason);
            refused = true;
        }
    }
    if (refused) return false;
    bool enabled[TemplateCount];
    ApplySaveState(curves, choices, enabled);
    settings.Centre = choices.Centre;
    settings.Scale = choices.Scale;
    return true;
}

} // namespace

void (*TheBatchMessageSink)(const MString& text) = WriteStandardError;

MString BatchOutputPath(const WBatchOptions& options, const MString& input) {
    if (!options.Save.IsEmpty()) return options.Save;
    MString name = FileNameOf(input);
    name.SetFileExtension(MString(u"eps"));
    return JoinPath(options.OutDir, name);
}

bool RunBatchInput(const WBatchOptions& options, const MString& input) {
    WSettings settings;
    ApplyBatchOptions(options, settings);
    WSettings* savedSettings = TheSettings;
    TheSettings = &settings;
    if (TheSketch) DestroySketch();
    bool saved = false;
    if (CreateSketch()) {
        WBatchMessages messages;
        TheFileName = MString();
        if (OpenInput(options, input)) {
            messages.Flush();
            ApplyGivenChoices(options, settings);
            if (!TheSketch->CleanUp()) {
                ShowMessage(MString(u"The sketch is empty"), IconError);
            } else if (CheckChoices(settings)) {
                MString path = BatchOutputPath(options, input);
                saved = SaveEps(path);
                TheFileName = path;
            }
        }
    }
    DestroySketch();
    TheSettings = savedSettings;
    return saved;
}

int32_t RunBatch(const std::vector<MString>& args) {
    WBatchOptions options;
    MString error = ParseBatchOptions(args, options);
    if (options.Help) {
        MString help = BatchHelpText();
        std::string bytes(size_t(help.Length), ' ');
        for (int32_t i = 0; i < help.Length; i++)
            bytes[size_t(i)] = char(help.Text[i]);
        std::fputs(bytes.c_str(), stdout);
        return 0;
    }
    if (!error.IsEmpty()) {
        WBatchMessages::Show(error);
        return 2;
    }
    if (!options.ProgramFolder.IsEmpty()) SetFolderOverride(FolderProgram, options.ProgramFolder);
    const uint32_t* savedSeed = TheShowSeedOverride;
    if (options.SeedGiven) TheShowSeedOverride = &options.Seed;
    if (!options.OutDir.IsEmpty()) CreateFolders(options.OutDir);
    // Track files add their elements, traces fit their outlines as strokes.
    bool ownElement = !TheElement && CreateElement();
    bool ownRecording = !TheRecording && CreateRecording();
    int32_t result = 0;
    for (const MString& input : options.Inputs) {
        if (!RunBatchInput(options, input)) result = 1;
    }
    if (ownRecording) DestroyRecording();
    if (ownElement) DestroyElement();
    TheShowSeedOverride = savedSeed;
    if (!options.ProgramFolder.IsEmpty()) SetFolderOverride(FolderProgram, MString());
    return result;
}
