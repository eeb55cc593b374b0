#pragma once
// Everything the program remembers between runs, in one plain object that
// every subsystem reads and writes through TheSettings. The shell makes it,
// and reads and writes its file (shell/WSettings.cpp).

#include "foundation/MColour.h"
#include "foundation/MString.h"
#include "foundation/WRect.h"
#include <cstdint>

struct MTextFile;

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
