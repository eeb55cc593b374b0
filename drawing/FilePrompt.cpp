// The four file prompts: what each asks with, and what an answer changes.

#include "drawing/FilePrompt.h"

#include "drawing/MMediaTypes.h"
#include "foundation/Program.h"
#include "foundation/Settings.h"

FilePromptScript* TheFilePromptScript = nullptr;

namespace {

// The filters of the fixed prompts. The literal's own terminator is the
// zero that ends the filter.
const char16_t SketchOpenFilter[] = u"EPS Files (*.EPS)\0*.EPS;*.QO\0";
const char16_t SketchSaveFilter[] = u"EPS Files (*.EPS)\0*.EPS\0";
const char16_t ExecutableFilter[] = u"Executables (*.EXE)\0*.EXE\0";

const char16_t* const Titles[4] = {u"Open sketch", u"Save sketch", u"Select picture",
                                   u"Select executable"};

// The settings field that remembers the folder of a mode.
MString* RememberedFolder(int32_t mode) {
    if (!TheSettings) return nullptr;
    switch (mode) {
    case PromptOpenSketch:
        return &TheSettings->FolderOpenSketch;
    case PromptSaveSketch:
        return &TheSettings->FolderSaveSketch;
    case PromptSelectPicture:
        return &TheSettings->FolderSelectPicture;
    case PromptSelectExecutable:
        return &TheSettings->FolderSelectExecutable;
    default:
        return nullptr;
    }
}

template <int32_t N> void SetFilter(WFilePromptRequest& request, const char16_t (&filter)[N]) {
    request.Filter = filter;
    request.FilterLength = N;
}

} // namespace

MString ForceExtension(MString path, const MString& extension) {
    path.SetFileExtension(extension);
    return path;
}

MString FolderOfFile(const MString& path) {
    int32_t cut = -1;
    for (int32_t i = 0; i < path.Length; i++)
        if (path.Text[i] == u'/' || path.Text[i] == u'\\') cut = i;
    if (cut <= 0) return cut == 0 ? path.Left(0) : MString();
    return path.Left(cut - 1);
}

MString NameOfFile(const MString& path) {
    int32_t start = 0;
    for (int32_t i = 0; i < path.Length; i++)
        if (path.Text[i] == u'/' || path.Text[i] == u'\\' || path.Text[i] == u':') start = i + 1;
    return start == 0 ? path : MString(path.Chars() + start);
}

MString FilePrompt(int32_t mode) {
    return FilePrompt(TheMainWindow, mode);
}

MString FilePrompt(void* owner, int32_t mode) {
    if (mode < PromptOpenSketch || mode > PromptSelectExecutable) return MString();
    WFilePromptRequest request;
    request.Mode = mode;
    request.Title = Titles[mode];
    request.Save = mode == PromptSaveSketch;
    switch (mode) {
    case PromptOpenSketch:
        SetFilter(request, SketchOpenFilter);
        break;
    case PromptSaveSketch:
        SetFilter(request, SketchSaveFilter);
        break;
    case PromptSelectExecutable:
        SetFilter(request, ExecutableFilter);
        break;
    case PromptSelectPicture: {
        const MMediaSlot& pictures = MMediaTypes[MediaPicture];
        if (pictures.Filter.Count > 0) {
            request.Filter = pictures.Filter.Data;
            request.FilterLength = pictures.Filter.Count;
        }
        break;
    }
    }
    if (mode == PromptSaveSketch) {
        request.DefaultExtension = MString(u"EPS");
        // The prompt opens in the remembered folder, so only the name of the
        // sketch's file is proposed, not the folder it came from.
        request.InitialFile = NameOfFile(TheFileName);
    }
    request.DefaultExtension.Remove(u'.');
    // A name the buffer cannot hold is dropped, not cut.
    if (request.InitialFile.Length > FilePromptBufferLength) request.InitialFile = MString();
    MString* folder = RememberedFolder(mode);
    if (folder) request.InitialFolder = *folder;

    MString answer;
    if (TheFilePromptScript) {
        FilePromptScript& script = *TheFilePromptScript;
        int32_t index = script.Count++;
        script.Last = request;
        if (script.Answers && index < script.AnswerCount) answer = script.Answers[index];
    } else {
        answer = PlatformFilePrompt(owner, request);
    }
    if (answer.IsEmpty()) return answer;

    if (request.Save && !request.DefaultExtension.IsEmpty())
        answer = ForceExtension(answer, request.DefaultExtension);
    MString chosenFolder = FolderOfFile(answer);
    if (folder && !chosenFolder.IsEmpty()) *folder = chosenFolder;
    return answer;
}
