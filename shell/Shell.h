#pragma once
// The application shell's process-wide state and the refresh calls that the
// rest of the system makes after an edit.

#include "foundation/MString.h"
#include "foundation/Program.h"
#include "foundation/WMode.h"
#include "view/Geometry.h"

extern bool TheLeftDown, TheRightDown;
extern MPoint2 TheLastMouse;

// Quillmere - <file or Untitled>[ *] (<n> points) [<MODE>]
MString TitleText();
void RefreshTitle(); // sets the main window's text when it differs
void RefreshMenu();  // checks and enables the menu items
// Fills the model's hooks with the refreshes above and the Point tool
// window's: the start-up does it before the model's objects are made.
void InstallModelHooks();
