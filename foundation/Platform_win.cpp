// The platform layer of the Windows build: thin calls into Win32. UTF-16
// strings of the core are passed as wchar_t, which has the same width here.

#include "foundation/Platform.h"

#include "foundation/MString.h"
#include "foundation/Program.h"

#include <windows.h>

#include <string>

namespace {

const wchar_t* Wide(const char16_t* text) {
    return reinterpret_cast<const wchar_t*>(text);
}

// A copy of debug output and box texts on stderr, as UTF-8 bytes, so that
// tests and journeys run under Wine can read what the program said. Written
// to the handle itself: the C runtime's text mode would add carriage returns.
void CopyToStderr(const char16_t* text) {
    if (!text || !*text) return;
    HANDLE handle = GetStdHandle(STD_ERROR_HANDLE);
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE) return;
    int size = WideCharToMultiByte(CP_UTF8, 0, Wide(text), -1, nullptr, 0, nullptr, nullptr);
    if (size <= 1) return;
    std::string bytes(size_t(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, Wide(text), -1, &bytes[0], size, nullptr, nullptr);
    DWORD written = 0;
    WriteFile(handle, bytes.data(), DWORD(size - 1), &written, nullptr);
}

} // namespace

void PlatformDebugOutput(const char16_t* text) {
    if (!text) return;
    OutputDebugStringW(Wide(text));
    CopyToStderr(text);
}

// No owner window, the program's name as title, task-modal.
MessageAnswer PlatformMessageBox(const MString& text, MessageIcon icon, MessageButtons buttons) {
    static const UINT icons[] = {MB_ICONHAND, MB_ICONWARNING, MB_ICONINFORMATION, MB_ICONQUESTION};
    static const UINT buttonSets[] = {MB_OK, MB_YESNO, MB_YESNOCANCEL};
    MString copy = MString(TheProgramName) + ": " + text + "\n";
    CopyToStderr(copy.Chars());
    int answer = MessageBoxW(nullptr, Wide(text.Chars()), Wide(TheProgramName),
                             MB_TASKMODAL | icons[icon] | buttonSets[buttons]);
    switch (answer) {
    case IDOK:
        return AnswerOk;
    case IDYES:
        return AnswerYes;
    case IDNO:
        return AnswerNo;
    case IDCANCEL:
        return AnswerCancel;
    default: // the box could not be shown: the answer that changes nothing
        return buttons == ButtonsOk ? AnswerOk : buttons == ButtonsYesNo ? AnswerNo : AnswerCancel;
    }
}

uint32_t MilliSeconds() {
    return GetTickCount();
}

bool IsKeyDown(KeyCode key) {
    static const int keys[] = {VK_CONTROL, VK_SHIFT, VK_MENU, VK_ESCAPE};
    return (GetAsyncKeyState(keys[key]) & 0x8000) != 0;
}

// UTF-8 takes no MB_PRECOMPOSED: Windows refuses the call then, and Wine,
// which lets it pass, is made to agree.
int32_t NarrowToWide(uint32_t codePage, uint32_t flags, const char* source, int32_t sourceLength,
                     char16_t* target, int32_t targetLength) {
    if (codePage == 65001 && flags != 0) return 0;
    DWORD win32Flags = (flags & ConvertPrecomposed) ? MB_PRECOMPOSED : 0;
    return MultiByteToWideChar(codePage, win32Flags, source, sourceLength,
                               reinterpret_cast<wchar_t*>(target), targetLength);
}

int32_t WideToNarrow(uint32_t codePage, const char16_t* source, int32_t sourceLength, char* target,
                     int32_t targetLength) {
    return WideCharToMultiByte(codePage, 0, Wide(source), sourceLength, target, targetLength,
                               nullptr, nullptr);
}

void UpperCaseInPlace(char16_t* text, int32_t length) {
    if (text && length > 0) CharUpperBuffW(reinterpret_cast<wchar_t*>(text), DWORD(length));
}

void LowerCaseInPlace(char16_t* text, int32_t length) {
    if (text && length > 0) CharLowerBuffW(reinterpret_cast<wchar_t*>(text), DWORD(length));
}
