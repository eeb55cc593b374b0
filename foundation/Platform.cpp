// The parts of the platform layer that are the same in every build: the
// debug output with its capture for tests, and the scriptable message box.

#include "foundation/Platform.h"

#include "foundation/MString.h"

#include <string>

MessageScript* TheMessageScript = nullptr;

namespace {

bool Capturing = false;

// Function-local so that a DebugOutput during static construction of another
// file still finds a constructed buffer.
std::u16string& CaptureBuffer() {
    static std::u16string buffer;
    return buffer;
}

} // namespace

// Every line goes to the platform's sink, captured or not, so that a test run
// still shows in a debugger what the program said.
void DebugOutput(const char16_t* text) {
    if (!text) return;
    if (Capturing) CaptureBuffer() += text;
    PlatformDebugOutput(text);
}

void DebugOutput(const MString& text) {
    DebugOutput(text.Chars());
}

void StartDebugCapture() {
    CaptureBuffer().clear();
    Capturing = true;
}

MString StopDebugCapture() {
    Capturing = false;
    MString result(CaptureBuffer().c_str());
    CaptureBuffer().clear();
    return result;
}

// With a script set, the box is not shown: text, icon and buttons are recorded
// while the script has room, and the answer is the one scripted for this
// message by its position (AnswerOk once the answers run out).
MessageAnswer ShowMessage(const MString& text, MessageIcon icon, MessageButtons buttons) {
    MessageScript* script = TheMessageScript;
    if (!script) return PlatformMessageBox(text, icon, buttons);
    int32_t index = script->Count++;
    if (index < script->Capacity) {
        if (script->Texts) script->Texts[index] = text;
        if (script->Icons) script->Icons[index] = icon;
        if (script->Buttons) script->Buttons[index] = buttons;
    }
    if (script->Answers && index < script->AnswerCount) return script->Answers[index];
    return AnswerOk;
}
