#pragma once
// Numbers of the program's resources and of its menu commands. The menu
// resource, the accelerators and the window procedure use these names.

// ---- Resources
#define IDI_QUILLMERE 107    // program icon, big and small
#define IDR_MAINMENU 109     // menu of the main window
#define IDR_ACCELERATORS 129 // keyboard shortcuts of the main window

// ---- File
#define IDM_NEW 32798
#define IDM_OPEN 32779
#define IDM_SAVE 32780
#define IDM_SAVEAS 32799
#define IDM_TRACEBITMAP 32841
#define IDM_LOADBACKGROUND 32850
#define IDM_EXIT 105

// ---- Edit
#define IDM_UNDO 32785
#define IDM_REDO 32786
#define IDM_DRAWFREEHAND 32828
#define IDM_EDITSKETCH 32829
#define IDM_EDITROLL 32830
#define IDM_GRID 32846
#define IDM_FLIPHORIZONTAL 32851
#define IDM_FLIPVERTICAL 32852
#define IDM_CENTRE 32803
#define IDM_NORMALIZESIZE 32806

// ---- View
#define IDM_FRONT 32773
#define IDM_BACK 32774
#define IDM_RIGHT 32775
#define IDM_LEFT 32776
#define IDM_TOP 32777
#define IDM_BOTTOM 32778
#define IDM_ZOOMIN 32820
#define IDM_ZOOMOUT 32821
#define IDM_POINT 32809
#define IDM_ELEMENT 32791
#define IDM_MODE 32847

// ---- Tools
#define IDM_SPAGHETTI 32854
#define IDM_OPTIONS 32842

// ---- Help
#define IDM_USERGUIDE 32834
#define IDM_COMMUNITY 32835
#define IDM_ABOUT 104
