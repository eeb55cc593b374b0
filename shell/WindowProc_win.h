#pragma once
// The main window's procedure (Windows build only).

#include <windows.h>

LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
