#pragma once
// Everything the program remembers between runs, in one plain object that
// every subsystem reads and writes through TheSettings.

#include "foundation/MString.h"
#include <cstdint>

struct MTextFile;

struct WRect {
    int32_t left = 0, top = 0, right = 0, bottom = 0; // screen pixels
};

struct MColour {
    uint8_t b = 0, g = 0, r = 0, a = 255; // stored blue, green, red, alpha
};

enum { TemplateCount = 9 };

struct WSettings {
    WRect WindowRect, WindowRect_Info, WindowRect_Element, WindowRect_Mode;
    bool ShowWindow_Point = true, ShowWindow_Element = true, ShowWindow_Mode = true;
    bool SaveSolid = false, SaveRoll = false;
    int32_t MaxLinesPerCurve = 100;
    MString FolderOpenSketch, FolderSaveSketch, FolderSelectPicture, FolderSelectExecutable;
    MColour ColourBackground, ColourGrid, ColourInfo, ColourSketch, ColourBezier, ColourRoll,
        ColourGhost;
    int32_t PenSize = 2;   // 1 to 10
    int32_t PointSize = 8; // 1 to 20
    int32_t GridSize = 10;
    bool UseGrid = false;
    int32_t DisplaySize = 100; // percent; the surface scale is 100 / DisplaySize
    bool ShowHelpTexts = true;
    MString ExternalTracer;
    bool Template[TemplateCount] = {};
    int32_t Smooth = 200; // 0 to 1000
    int32_t TreeType = 5;

    // Not saved: the save dialog's choices and whether the file was read whole.
    bool Centre = true, Scale = true;
    bool Loaded = false;

    void SetDefaults();          // all keyed fields except the four rectangles
    void SetDefaultRectangles(); // the main window centred on the screen, the others beside it
    // After start-up and at New: the save dialog's Centre and Scale on, and
    // MaxLinesPerCurve 100, whatever the file said.
    void ResetSaveChoices();
    bool Load(); // reads the settings file if there is one; true when it was read
    void ReadRecords(MTextFile& file); // acts on every record of an open file
    bool Save();                       // writes it, unless it exists but could not be read
};

extern WSettings* TheSettings;
WSettings* CreateSettings(); // defaults and default rectangles from the screen size
void DestroySettings();
MString SettingsFileName(); // empty when the user's folder cannot be had

// A window rectangle brought onto the virtual screen: at least 200 by 200,
// at most the virtual screen's size, and inside it.
WRect FitToVirtualScreen(WRect rect);

// The closing main window's part of the settings: its own rectangle, and for
// each tool window its rectangle when it is open (null when closed: it keeps
// the rectangle it wrote when it closed, and counts as not shown). Then the
// settings are saved. Does nothing without TheSettings.
void SaveSettingsAtClose(const WRect& mainWindow, const WRect* pointWindow,
                         const WRect* elementWindow, const WRect* modeWindow);
