#pragma once
// The four file prompts of the program, each with its remembered folder in
// the settings: 0 "Open sketch", 1 "Save sketch", 2 "Select picture",
// 3 "Select executable".

#include "foundation/MString.h"

#include <cstdint>

enum FilePromptMode {
    PromptOpenSketch = 0,
    PromptSaveSketch = 1,
    PromptSelectPicture = 2,
    PromptSelectExecutable = 3,
};

enum { FilePromptBufferLength = 260 }; // characters of the file name buffer

// What a prompt is asked with, as the platform's dialog takes it.
struct WFilePromptRequest {
    int32_t Mode = 0;
    const char16_t* Title = nullptr;
    bool Save = false;                // a save prompt; otherwise an open prompt
    const char16_t* Filter = nullptr; // label, 0, pattern, 0, ..., 0; null for none
    int32_t FilterLength = 0;         // characters of Filter, final zero included
    MString DefaultExtension;         // without dots; empty for none
    MString InitialFolder;            // the remembered folder of the mode
    MString InitialFile;              // empty, or 1 to 260 characters
};

// Asks for a file with the prompt of the mode, owned by the given window (the
// main window, or a dialog that asks). The answer is the full path, or empty
// on cancel or failure. A save prompt forces the default extension on the
// answer. A path given updates the mode's remembered folder; a cancel leaves
// it alone. No prompt shows a message.
MString FilePrompt(void* owner, int32_t mode);
// The same, owned by the main window.
MString FilePrompt(int32_t mode);

// The path with the text behind the last dot of its file part replaced by
// the extension, or ".extension" added when the file part has no dot.
MString ForceExtension(MString path, const MString& extension);
// The folder part of a path, behind which the file name stands; empty when
// the path holds no separator.
MString FolderOfFile(const MString& path);
// The file name of a path: what follows its last "/", "\\" or ":".
MString NameOfFile(const MString& path);

// ---- A script for tests: while set, FilePrompt does not ask anybody; it
// records the request and takes the next scripted answer (an empty answer,
// which is a cancel, once they run out).
struct FilePromptScript {
    const MString* Answers = nullptr;
    int32_t AnswerCount = 0;
    int32_t Count = 0;       // prompts asked so far
    WFilePromptRequest Last; // the latest request
};
extern FilePromptScript* TheFilePromptScript;

// The platform half: the real dialog. Returns the chosen path, empty on
// cancel.
MString PlatformFilePrompt(void* owner, const WFilePromptRequest& request);
