// The file prompts as the common dialogs of Windows.

#include "drawing/FilePrompt.h"

#include <windows.h>

#include <commdlg.h>

MString PlatformFilePrompt(void* owner, const WFilePromptRequest& request) {
    // One more than the dialog is told, so that a name of the full length
    // still has its terminator.
    wchar_t name[FilePromptBufferLength + 1] = {};
    if (request.InitialFile.Length >= 1 && request.InitialFile.Length <= FilePromptBufferLength)
        for (int32_t i = 0; i < request.InitialFile.Length; i++)
            name[i] = wchar_t(request.InitialFile.Text[i]);

    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof(dialog);
    dialog.hwndOwner = static_cast<HWND>(owner);
    dialog.lpstrFilter = reinterpret_cast<const wchar_t*>(request.Filter);
    dialog.nFilterIndex = 1; // the first entry, whatever was chosen last time
    dialog.lpstrFile = name;
    dialog.nMaxFile = FilePromptBufferLength;
    if (!request.InitialFolder.IsEmpty())
        dialog.lpstrInitialDir = reinterpret_cast<const wchar_t*>(request.InitialFolder.Chars());
    dialog.lpstrTitle = reinterpret_cast<const wchar_t*>(request.Title);
    if (!request.DefaultExtension.IsEmpty())
        dialog.lpstrDefExt = reinterpret_cast<const wchar_t*>(request.DefaultExtension.Chars());
    BOOL chosen;
    if (request.Save) {
        dialog.Flags = OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY;
        chosen = GetSaveFileNameW(&dialog);
    } else {
        dialog.Flags = OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY;
        chosen = GetOpenFileNameW(&dialog);
    }
    if (!chosen) return MString();
    name[FilePromptBufferLength] = 0;
    return MString(reinterpret_cast<const char16_t*>(name));
}
