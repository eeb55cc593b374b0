#pragma once
// The few operating-system services the portable core needs. Each function is
// defined twice: in Platform_win.cpp for the Windows build and in
// Platform_posix.cpp for the native one. Platform.cpp holds what both share
// (the scriptable message box, the captured debug output).

#include <cstdint>

struct MString;

// ---- Debug output: wide text that ends in a line feed, never shown to users.
void DebugOutput(const char16_t* text);
void DebugOutput(const MString& text);
// Tests may capture the debug output; while capturing, every line is kept.
void StartDebugCapture();
MString StopDebugCapture(); // everything written since the start
// The platform's own sink behind DebugOutput (the debugger's output on
// Windows, stderr as UTF-8 everywhere).
void PlatformDebugOutput(const char16_t* text);

// ---- Message boxes. Every box of the system goes through ShowMessage: no
// owner window, the program's name as title, task-modal.
enum MessageIcon { IconError, IconWarning, IconInformation, IconQuestion };
enum MessageButtons { ButtonsOk, ButtonsYesNo, ButtonsYesNoCancel };
enum MessageAnswer { AnswerOk = 1, AnswerCancel = 2, AnswerYes = 6, AnswerNo = 7 };
MessageAnswer ShowMessage(const MString& text, MessageIcon icon,
                          MessageButtons buttons = ButtonsOk);

// A test script for message boxes: while set, ShowMessage records each text,
// icon and set of buttons and returns the next scripted answer (AnswerOk when
// none is left) instead of asking anybody.
struct MessageScript {
    int32_t Count = 0;                 // messages shown so far
    MString* Texts = nullptr;          // owned by the script's user, room for Capacity
    MessageIcon* Icons = nullptr;      // same
    MessageButtons* Buttons = nullptr; // same; may stay null
    int32_t Capacity = 0;
    const MessageAnswer* Answers = nullptr; // next answers, in order
    int32_t AnswerCount = 0;
};
extern MessageScript* TheMessageScript;
// The real box; ShowMessage calls it when no script is set.
MessageAnswer PlatformMessageBox(const MString& text, MessageIcon icon, MessageButtons buttons);

// ---- Time and keys
uint32_t MilliSeconds(); // a millisecond clock that wraps at 32 bits
enum KeyCode { KeyControl, KeyShift, KeyAlt, KeyEscape };
bool IsKeyDown(KeyCode key); // the asynchronous key state

// ---- Code page conversion with the semantics of MultiByteToWideChar and
// WideCharToMultiByte: the result is the number of units written, 0 on
// failure. A destination length of 0 asks for the size needed. Code page 0
// is not handled here; callers widen bytes themselves. 65001 is UTF-8.
enum { ConvertPrecomposed = 1 };
int32_t NarrowToWide(uint32_t codePage, uint32_t flags, const char* source, int32_t sourceLength,
                     char16_t* target, int32_t targetLength);
int32_t WideToNarrow(uint32_t codePage, const char16_t* source, int32_t sourceLength, char* target,
                     int32_t targetLength);

// ---- Case mapping in place, as CharUpperBuffW and CharLowerBuffW do.
void UpperCaseInPlace(char16_t* text, int32_t length);
void LowerCaseInPlace(char16_t* text, int32_t length);

// ---- Screen metrics, in pixels. Screen.cpp answers from a test override
// when one is set, otherwise from Screen_win.cpp (GetSystemMetrics) or
// Screen_posix.cpp (a fixed 1920 by 1080 screen: the native build has no
// window system of its own).
struct MScreenArea {
    int32_t Left = 0, Top = 0; // the virtual screen may start left of or above 0
    int32_t Width = 0, Height = 0;
};
struct MScreenMetrics {
    MScreenArea Primary; // SM_CXSCREEN, SM_CYSCREEN at 0, 0
    MScreenArea
        Virtual; // SM_XVIRTUALSCREEN, SM_YVIRTUALSCREEN, SM_CXVIRTUALSCREEN, SM_CYVIRTUALSCREEN
};
MScreenArea ScreenSize();    // the primary screen
MScreenArea VirtualScreen(); // the box around all monitors
// Tests pin the screen with an override; null gives the platform's answer.
extern const MScreenMetrics* TheScreenOverride;
MScreenMetrics PlatformScreenMetrics();

// ---- The mouse pointer. SetCursorClientPosition moves it to a client
// position of the main window: Cursor_win.cpp converts with ClientToScreen
// and calls SetCursorPos, the native build has no pointer to move. Both
// builds keep the last move in TheLastCursorMove, where tests read it.
struct MCursorMove {
    int32_t Count = 0;        // moves made since the process started
    float X = 0, Y = 0;       // client pixels of the last move
    bool MouseEnabled = true; // TheMouseEnabled at the moment of the last move
};
extern MCursorMove TheLastCursorMove;
void SetCursorClientPosition(float x, float y);
void PlatformSetCursorClientPosition(float x, float y); // the move itself
