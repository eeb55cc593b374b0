// The program's entry: start-up in a fixed order, one loop that hands out
// messages and draws a frame whenever none waits, and shutdown in reverse.
// The model objects are made and ended by the portable Startup.cpp; this file
// holds the Win32 steps around them.
//
// Start-up, in this order:
//   1 window class            7 COM                   13 file drop; title, menu
//   2 settings with defaults  8 media type tables     14 accelerators
//   3 settings file           9 element table         15 tool windows
//   4 main window            10 sketch with its ring  16 drawing mode
//   5 instance, window kept  11 freehand recorder     17 file named on the
//   6 window shown           12 view                     command line
// Shutdown, behind the loop:
//   1 accelerators, background picture   5 element, then COM
//   2 view                               6 settings
//   3 recorder                           7 Point and Element tool windows
//   4 ring, then sketch                  8 Mode palette, drawing surface
// A failed start-up step ends the program in silence at the shutdown step
// that undoes what was made so far.

#include "dialogs/Dialog.h"
#include "dialogs/ToolWindowPlaces.h"
#include "drawing/MDrawSurface.h"
#include "drawing/MMediaTypes.h"
#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "resources/resource.h"
#include "shell/Background.h"
#include "shell/Frame.h"
#include "shell/Shell.h"
#include "shell/Startup.h"
#include "shell/WindowProc_win.h"

#include <objbase.h>
#include <shellapi.h>
#include <windows.h>

static HACCEL Accelerators = nullptr;
static bool ComStarted = false;

static const wchar_t* ProgramName() {
    return reinterpret_cast<const wchar_t*>(TheProgramName);
}

// Step 1. A class that is already registered (a second registration in the
// same process) is no reason to stop: window creation will tell.
static void RegisterMainClass(HINSTANCE instance) {
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.style = CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS;
    windowClass.lpfnWndProc = MainWindowProc;
    windowClass.hInstance = instance;
    windowClass.hIcon = static_cast<HICON>(
        LoadImageW(instance, MAKEINTRESOURCEW(IDI_QUILLMERE), IMAGE_ICON, 0, 0, LR_DEFAULTSIZE));
    windowClass.hIconSm = static_cast<HICON>(LoadImageW(instance, MAKEINTRESOURCEW(IDI_QUILLMERE),
                                                        IMAGE_ICON, GetSystemMetrics(SM_CXSMICON),
                                                        GetSystemMetrics(SM_CYSMICON), 0));
    windowClass.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_WINDOW + 1));
    windowClass.lpszMenuName = MAKEINTRESOURCEW(IDR_MAINMENU);
    windowClass.lpszClassName = ProgramName();
    RegisterClassExW(&windowClass);
}

// Steps 1 to 17. Returns 0 when the program runs, otherwise the shutdown step
// that undoes what was made; every failure here is silent.
static int32_t StartUp(HINSTANCE instance, int showCommand) {
    // The common controls, tooltips among them, before any window.
    InitDialogs();
    RegisterMainClass(instance);

    // Steps 2 and 3.
    if (!StartSettings()) return ShutdownSettings;
    WRect place = TheSettings->WindowRect;

    // Steps 4 to 6.
    TheInstance = instance;
    HWND window = CreateWindowExW(0, ProgramName(), ProgramName(), WS_OVERLAPPEDWINDOW, place.left,
                                  place.top, place.right - place.left, place.bottom - place.top,
                                  nullptr, nullptr, instance, nullptr);
    TheMainWindow = window;
    if (!window) return ShutdownSettings;
    DebugOutput(u"Main window created\n");
    ShowWindow(window, showCommand);
    UpdateWindow(window);

    // Step 7.
    if (FAILED(CoInitialize(nullptr))) return ShutdownSettings;
    ComStarted = true;
    DebugOutput(u"COM initialised\n");

    // Step 8: the tables of media file types ask the installed picture
    // decoders, so COM must be up. A failure ends COM again.
    if (!BuildMediaTypes()) return ShutdownElement;

    // Steps 9 to 12.
    if (int32_t failed = CreateModelObjects()) return failed;

    // Step 13.
    DragAcceptFiles(window, TRUE);
    RefreshTitle();
    RefreshMenu();

    // Step 14.
    Accelerators = LoadAcceleratorsW(instance, MAKEINTRESOURCEW(IDR_ACCELERATORS));
    if (!Accelerators) return ShutdownAccelerators;
    DebugOutput(u"Accelerators created\n");

    // Step 15, then step 16.
    OpenToolWindowsAtStart();
    EnterStartMode();

    // Step 17: only the first argument counts.
    int count = 0;
    if (LPWSTR* arguments = CommandLineToArgvW(GetCommandLineW(), &count)) {
        if (count > 1) OpenStartFile(MString(reinterpret_cast<const char16_t*>(arguments[1])));
        LocalFree(arguments);
    }
    return 0;
}

// Shutdown from the step `from` to the end; what was never made is skipped.
static void ShutDown(int32_t from) {
    if (from <= ShutdownAccelerators && Accelerators) {
        DestroyAcceleratorTable(Accelerators);
        Accelerators = nullptr;
        DebugOutput(u"Accelerators destroyed\n");
    }
    if (from <= ShutdownAccelerators) ReleaseBackground();
    if (from <= ShutdownElement) DestroyModelObjects(from);
    if (from <= ShutdownElement && ComStarted) {
        CoUninitialize();
        ComStarted = false;
        DebugOutput(u"COM uninitialised\n");
    }
    // The settings were saved when the window closed, not here.
    if (from <= ShutdownSettings) DestroySettings();
    if (from <= ShutdownToolWindows) EndToolDialogs();
    if (from <= ShutdownSurface) {
        EndModePalette();
        DestroySurface();
    }
}

// The loop never waits: with no message it sleeps a millisecond and draws a
// whole frame, so an idle program keeps drawing without taking a processor.
static int RunMessageLoop() {
    MSG message = {};
    for (;;) {
        if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) break;
            // The shortcuts work from the tool windows too; what they leave
            // goes to a tool window's keyboard handling first.
            if (!TranslateAcceleratorW(static_cast<HWND>(TheMainWindow), Accelerators, &message) &&
                !DispatchDialogMessage(&message)) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
        } else {
            Sleep(1);
            DrawFrame();
        }
    }
    return static_cast<int>(message.wParam);
}

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int showCommand) {
    int exitCode = 0;
    int32_t failed = StartUp(instance, showCommand);
    if (!failed) {
        exitCode = RunMessageLoop();
        failed = ShutdownAccelerators;
    }
    ShutDown(failed);
    return exitCode;
}
