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

// ---- Dialogs, by their resource numbers
#define IDD_INFO 131      // Point tool window
#define IDD_ELEMENT 132   // Element tool window
#define IDD_ABOUT 133     // About
#define IDD_SAVE 135      // the save dialog of "Save as..."
#define IDD_OPTIONS 136   // Options
#define IDD_MODE 138      // Mode palette, without controls
#define IDD_SPAGHETTI 139 // Spaghetti tool

// Controls. A number that stands in several dialogs has one name in each,
// with the same value, so that every dialog reads as a list of its own.

// ---- Point tool window (131)
#define IDC_INFO_KIND 1000
#define IDC_INFO_POSITION_X 1001
#define IDC_INFO_POSITION_Y 1002
#define IDC_INFO_POSITION_Z 1003
#define IDC_INFO_ALIGN 1004
#define IDC_INFO_HANDLEIN_X 1005
#define IDC_INFO_HANDLEIN_Y 1006
#define IDC_INFO_HANDLEIN_Z 1007
#define IDC_INFO_HANDLEOUT_X 1008
#define IDC_INFO_HANDLEOUT_Y 1009
#define IDC_INFO_HANDLEOUT_Z 1010
#define IDC_INFO_ROLL_X 1011
#define IDC_INFO_ROLL_Y 1012
#define IDC_INFO_ROLL_Z 1013

// ---- Element tool window (132)
#define IDC_ELEMENT_LIST 1014
#define IDC_ELEMENT_VALUE1 1015
#define IDC_ELEMENT_LABEL1 1016
#define IDC_ELEMENT_VALUE2 1017
#define IDC_ELEMENT_VALUE3 1018
#define IDC_ELEMENT_VALUE4 1019
#define IDC_ELEMENT_LABEL2 1021
#define IDC_ELEMENT_LABEL3 1022
#define IDC_ELEMENT_LABEL4 1023
#define IDC_ELEMENT_ADD 1025
#define IDC_ELEMENT_DESCRIPTION 1026

// ---- Save dialog (135); the templates in the order of their index
#define IDC_SAVE_SPINNINGLOGO 1042
#define IDC_SAVE_HANDWRITTENTEXT 1040
#define IDC_SAVE_COASTER1ST 1039
#define IDC_SAVE_COASTER3RD 1037
#define IDC_SAVE_ROAD1ST 1038
#define IDC_SAVE_ROAD3RD 1044
#define IDC_SAVE_BOB1ST 1045
#define IDC_SAVE_BOB3RD 1041
#define IDC_SAVE_TUNNEL 1043
#define IDC_SAVE_SOLID 1046
#define IDC_SAVE_ROLL 1047
#define IDC_SAVE_CENTRE 1048
#define IDC_SAVE_SMOOTH 1049
#define IDC_SAVE_TREES 1050
#define IDC_SAVE_MAXLINES 1051
#define IDC_SAVE_SCALE 1052

// ---- Options (136)
#define IDC_OPTIONS_TRACER 1026
#define IDC_OPTIONS_BROWSE 1027
#define IDC_OPTIONS_BACKGROUND 1028
#define IDC_OPTIONS_SKETCH 1029
#define IDC_OPTIONS_BEZIER 1030
#define IDC_OPTIONS_ROLL 1031
#define IDC_OPTIONS_RESETALL 1032
#define IDC_OPTIONS_PENSIZE 1033
#define IDC_OPTIONS_POINTSIZE 1034
#define IDC_OPTIONS_GHOST 1035
#define IDC_OPTIONS_GRID 1036
#define IDC_OPTIONS_INFO 1037
#define IDC_OPTIONS_GRIDSIZE 1038
#define IDC_OPTIONS_DISPLAYSIZE 1039
#define IDC_OPTIONS_SHOWHELPTEXTS 1048

// ---- Spaghetti tool (139)
#define IDC_SPAGHETTI_SAVEAS 1052
#define IDC_SPAGHETTI_OPEN 1053
#define IDC_SPAGHETTI_GENERATE 1054
#define IDC_SPAGHETTI_STRINGS 1055
#define IDC_SPAGHETTI_CURVESPERSTRING 1056
#define IDC_SPAGHETTI_CURVELENGTHMIN 1057
#define IDC_SPAGHETTI_CURVELENGTHMAX 1058
#define IDC_SPAGHETTI_DEPTH 1059
#define IDC_SPAGHETTI_RADIUS 1060
#define IDC_SPAGHETTI_BEZIERMIN 1061
#define IDC_SPAGHETTI_BEZIERMAX 1062
#define IDC_SPAGHETTI_SHAPEJUMPS 1063
#define IDC_SPAGHETTI_SHAPE 1064
#define IDC_SPAGHETTI_TEXTURE 1065
#define IDC_SPAGHETTI_MARGINMIN 1066
#define IDC_SPAGHETTI_MARGINMAX 1067
#define IDC_SPAGHETTI_PARTICLE 1068
#define IDC_SPAGHETTI_ANIMATION 1069
#define IDC_SPAGHETTI_VECTORFILE 1070
#define IDC_SPAGHETTI_SHOWFILE 1071
#define IDC_SPAGHETTI_COLLISION 1072

#ifndef IDC_STATIC
#define IDC_STATIC (-1)
#endif
