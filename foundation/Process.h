#pragma once
// Running another program: a command text handed to the system's command
// interpreter, with the thread waiting until the program has ended.

#include "foundation/MString.h"

// Runs the command text and waits, with no time limit, for it to end. A
// text that begins, after trimming and in any case, with "format", "del",
// "erase", "rd", "rmdir" or "shutdown" is not run, silently. True when the
// process was started and has ended (whatever it returned).
bool RunCommand(const MString& text);
// True when RunCommand refuses the text.
bool IsRefusedCommand(const MString& text);

// The platform half (Process_win.cpp, Process_posix.cpp): on Windows
// "cmd.exe" with the parameters /c "text", started hidden through the shell,
// natively /bin/sh -c text. Waits for the end; false when nothing started.
bool PlatformRunCommand(const MString& text);
