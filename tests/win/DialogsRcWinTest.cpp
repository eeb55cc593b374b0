// Every dialog template as Windows makes it from the program's resources:
// title, size in dialog units, and each control's id, class, text and kind.
// The dialogs are made through the dialog ground, so its dialog procedure and
// its control calls are checked against real windows at the same time.

#include "dialogs/Dialog.h"
#include "resources/resource.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

namespace {

enum Kind { Check, Push, DefPush, Edit, NumberEdit, ReadOnlyMultiEdit, Dropdown, Label, Group };

struct ControlRow {
    int Id;
    Kind Type;
    const wchar_t* Text; // null: not compared (edits)
};

struct TemplateRow {
    int Resource;
    const wchar_t* Title;
    int Width, Height; // dialog units
    const ControlRow* Controls;
    int ControlCount;
};

const ControlRow InfoControls[] = {
    {1000, Dropdown, nullptr}, {1001, Edit, nullptr}, {1002, Edit, nullptr}, {1003, Edit, nullptr},
    {1004, Check, L"Align"},   {1005, Edit, nullptr}, {1006, Edit, nullptr}, {1007, Edit, nullptr},
    {1008, Edit, nullptr},     {1009, Edit, nullptr}, {1010, Edit, nullptr}, {1011, Edit, nullptr},
    {1012, Edit, nullptr},     {1013, Edit, nullptr},
};

const ControlRow ElementControls[] = {
    {1014, Dropdown, nullptr}, {1026, ReadOnlyMultiEdit, nullptr},
    {1016, Label, L""},        {1021, Label, L""},
    {1022, Label, L""},        {1023, Label, L""},
    {1015, Edit, nullptr},     {1017, Edit, nullptr},
    {1018, Edit, nullptr},     {1019, Edit, nullptr},
    {1025, DefPush, L"Add"},
};

const ControlRow SaveControls[] = {
    {1042, Check, L"Spinning logo"},
    {1040, Check, L"Handwritten text"},
    {1039, Check, L"Roller coaster 1st person"},
    {1037, Check, L"Roller coaster 3rd person"},
    {1038, Check, L"Road 1st person"},
    {1044, Check, L"Road 3rd person"},
    {1045, Check, L"Bob 1st person"},
    {1041, Check, L"Bob 3rd person"},
    {1043, Check, L"Tunnel"},
    {1046, Check, L"Solid"},
    {1047, Check, L"Roll"},
    {1048, Check, L"Centre"},
    {1052, Check, L"Normalize size"},
    {1049, NumberEdit, nullptr},
    {1050, Dropdown, nullptr},
    {1051, NumberEdit, nullptr},
    {IDOK, DefPush, L"OK"},
    {IDCANCEL, Push, L"Cancel"},
};

const ControlRow OptionsControls[] = {
    {1033, NumberEdit, nullptr}, {1034, NumberEdit, nullptr},       {1038, NumberEdit, nullptr},
    {1039, NumberEdit, nullptr}, {1048, Check, L"Show help texts"}, {1026, Edit, nullptr},
    {1027, Push, L"Browse"},     {1028, Label, L"Background"},      {1036, Label, L"Grid"},
    {1037, Label, L"Info"},      {1029, Label, L"Curve"},           {1030, Label, L"Bezier"},
    {1031, Label, L"Roll"},      {1035, Label, L"Ghost"},           {1032, Push, L"Reset all"},
    {IDOK, DefPush, L"OK"},      {IDCANCEL, Push, L"Cancel"},
};

const ControlRow AboutControls[] = {
    {IDOK, DefPush, L"OK"},
};

const ControlRow SpaghettiControls[] = {
    {1070, Group, L"Vector file"},
    {1055, NumberEdit, nullptr},
    {1056, NumberEdit, nullptr},
    {1060, Edit, nullptr},
    {1066, Edit, nullptr},
    {1067, Edit, nullptr},
    {1057, Edit, nullptr},
    {1058, Edit, nullptr},
    {1063, NumberEdit, nullptr},
    {1059, Edit, nullptr},
    {1061, Edit, nullptr},
    {1062, Edit, nullptr},
    {1072, Check, L"Collision detection"},
    {1071, Group, L"Cinderlane show file"},
    {1064, Dropdown, nullptr},
    {1065, Dropdown, nullptr},
    {1068, Dropdown, nullptr},
    {1069, Dropdown, nullptr},
    {1054, DefPush, L"GENERATE"},
    {1053, Push, L"Open..."},
    {1052, Push, L"Save as..."},
};

template <int N> constexpr int CountOf(const ControlRow (&)[N]) {
    return N;
}

const TemplateRow Templates[] = {
    {131, L"Quillmere - Point", 170, 205, InfoControls, CountOf(InfoControls)},
    {132, L"Quillmere - Element", 170, 220, ElementControls, CountOf(ElementControls)},
    {133, L"Quillmere - About", 340, 210, AboutControls, CountOf(AboutControls)},
    {135, L"Quillmere - Save sketch", 395, 260, SaveControls, CountOf(SaveControls)},
    {136, L"Quillmere - Options", 340, 275, OptionsControls, CountOf(OptionsControls)},
    {138, L"", 44, 120, nullptr, 0},
    {139, L"Quillmere - Spaghetti tool", 655, 395, SpaghettiControls, CountOf(SpaghettiControls)},
};

std::wstring ClassOf(HWND window) {
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    return name;
}

std::wstring TextOf(HWND window) {
    wchar_t text[256] = {};
    GetWindowTextW(window, text, 256);
    return text;
}

int CountChildren(HWND dialog) {
    int count = 0;
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        count++;
    return count;
}

void CheckControl(HWND dialog, const ControlRow& row) {
    SCOPED_TRACE(row.Id);
    HWND item = GetDlgItem(dialog, row.Id);
    ASSERT_NE(item, nullptr);
    LONG style = GetWindowLongW(item, GWL_STYLE);
    std::wstring type = ClassOf(item);
    switch (row.Type) {
    case Check:
        EXPECT_EQ(_wcsicmp(type.c_str(), L"Button"), 0);
        EXPECT_EQ(style & BS_TYPEMASK, BS_AUTOCHECKBOX);
        break;
    case Push:
        EXPECT_EQ(_wcsicmp(type.c_str(), L"Button"), 0);
        EXPECT_EQ(style & BS_TYPEMASK, BS_PUSHBUTTON);
        break;
    case DefPush:
        EXPECT_EQ(_wcsicmp(type.c_str(), L"Button"), 0);
        EXPECT_EQ(style & BS_TYPEMASK, BS_DEFPUSHBUTTON);
        break;
    case Group:
        EXPECT_EQ(_wcsicmp(type.c_str(), L"Button"), 0);
        EXPECT_EQ(style & BS_TYPEMASK, BS_GROUPBOX);
        break;
    case Edit:
    case NumberEdit:
    case ReadOnlyMultiEdit:
        EXPECT_EQ(_wcsicmp(type.c_str(), L"Edit"), 0);
        EXPECT_EQ((style & ES_NUMBER) != 0, row.Type == NumberEdit);
        EXPECT_EQ((style & ES_READONLY) != 0, row.Type == ReadOnlyMultiEdit);
        EXPECT_EQ((style & ES_MULTILINE) != 0, row.Type == ReadOnlyMultiEdit);
        if (row.Type == ReadOnlyMultiEdit) {
            EXPECT_NE(style & WS_VSCROLL, 0);
        }
        break;
    case Dropdown:
        EXPECT_EQ(_wcsicmp(type.c_str(), L"ComboBox"), 0);
        EXPECT_EQ(style & 3, CBS_DROPDOWNLIST);
        break;
    case Label:
        EXPECT_EQ(_wcsicmp(type.c_str(), L"Static"), 0);
        break;
    }
    if (row.Text) {
        EXPECT_EQ(TextOf(item), row.Text);
    }
}

} // namespace

TEST(DialogsRcWin, EveryTemplateHasItsTitleSizeAndControls) {
    InitDialogs();
    WDialogHandler none;
    for (const TemplateRow& row : Templates) {
        SCOPED_TRACE(row.Resource);
        HWND dialog = static_cast<HWND>(CreateModelessDialog(row.Resource, nullptr, none));
        ASSERT_NE(dialog, nullptr);
        ASSERT_EQ(AsMemoryDialog(dialog), nullptr); // a real window
        EXPECT_EQ(DialogResource(dialog), row.Resource);
        EXPECT_EQ(TextOf(dialog), row.Title);
        RECT units = {0, 0, row.Width, row.Height};
        MapDialogRect(dialog, &units);
        RECT client;
        GetClientRect(dialog, &client);
        EXPECT_EQ(client.right, units.right);
        EXPECT_EQ(client.bottom, units.bottom);
        for (int i = 0; i < row.ControlCount; i++)
            CheckControl(dialog, row.Controls[i]);
        DestroyDialog(dialog);
    }
}

TEST(DialogsRcWin, IdsThatRepeatAcrossDialogsHaveOneValue) {
    EXPECT_EQ(IDC_SAVE_SCALE, IDC_SPAGHETTI_SAVEAS);
    EXPECT_EQ(IDC_ELEMENT_DESCRIPTION, IDC_OPTIONS_TRACER);
    EXPECT_EQ(IDC_SAVE_COASTER3RD, IDC_OPTIONS_INFO);
    EXPECT_EQ(IDC_SAVE_CENTRE, IDC_OPTIONS_SHOWHELPTEXTS);
}

TEST(DialogsRcWin, TheModePaletteHasNoControls) {
    WDialogHandler none;
    HWND dialog = static_cast<HWND>(CreateModelessDialog(IDD_MODE, nullptr, none));
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(CountChildren(dialog), 0);
    EXPECT_NE(GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_TOOLWINDOW, 0);
    EXPECT_FALSE(IsWindowVisible(dialog));
    DestroyDialog(dialog);
}

// The ground's control calls on a real dialog, and the user's steps as the
// controls report them back.
TEST(DialogsRcWin, ControlCallsAndStepsOnARealDialog) {
    struct Seen {
        int Commands = 0;
        int LastId = 0, LastNotify = -1;
    };
    static Seen seen;
    seen = Seen();
    WDialogHandler handler;
    handler.Command = [](void*, int32_t id, int32_t notify) {
        seen.Commands++;
        seen.LastId = id;
        seen.LastNotify = notify;
    };
    int context = 0;
    HWND dialog = static_cast<HWND>(CreateModelessDialog(IDD_SAVE, nullptr, handler, &context));
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(DialogContext(dialog), &context);

    SetWindowTextOf(dialog, MString(u"Title"));
    EXPECT_EQ(TextOf(dialog), L"Title");
    SetControlText(dialog, IDC_SAVE_SMOOTH, MString(u"200"));
    EXPECT_EQ(std::u16string(GetControlText(dialog, IDC_SAVE_SMOOTH).Chars()), u"200");
    SetControlChecked(dialog, IDC_SAVE_ROLL, true);
    EXPECT_TRUE(IsControlChecked(dialog, IDC_SAVE_ROLL));
    EnableControl(dialog, IDC_SAVE_TUNNEL, false);
    EXPECT_FALSE(IsControlEnabled(dialog, IDC_SAVE_TUNNEL));
    EXPECT_FALSE(IsControlEnabled(dialog, 4242)); // no such control
    AddComboItem(dialog, IDC_SAVE_TREES, MString(u"Abstract"));
    AddComboItem(dialog, IDC_SAVE_TREES, MString(u"Oak"));
    EXPECT_EQ(ComboItemCount(dialog, IDC_SAVE_TREES), 2);
    EXPECT_EQ(std::u16string(ComboItemText(dialog, IDC_SAVE_TREES, 1).Chars()), u"Oak");
    SetComboSelection(dialog, IDC_SAVE_TREES, 1);
    EXPECT_EQ(ComboSelection(dialog, IDC_SAVE_TREES), 1);
    WRect box = ControlRect(dialog, IDC_SAVE_SMOOTH);
    EXPECT_GT(box.right, box.left);
    EXPECT_GT(box.bottom, box.top);

    WDialogStep check{StepCheck, IDC_SAVE_SOLID, nullptr, 1};
    EXPECT_TRUE(ApplyDialogStep(dialog, check));
    EXPECT_TRUE(IsControlChecked(dialog, IDC_SAVE_SOLID));
    EXPECT_EQ(seen.LastId, IDC_SAVE_SOLID);
    EXPECT_EQ(seen.LastNotify, NotifyClicked);
    WDialogStep typed{StepSetText, IDC_SAVE_MAXLINES, u"42"};
    EXPECT_TRUE(ApplyDialogStep(dialog, typed));
    EXPECT_EQ(seen.LastId, IDC_SAVE_MAXLINES);
    EXPECT_EQ(seen.LastNotify, NotifyEditChange);
    WDialogStep select{StepSelect, IDC_SAVE_TREES, nullptr, 0};
    EXPECT_TRUE(ApplyDialogStep(dialog, select));
    EXPECT_EQ(seen.LastNotify, NotifySelectionChange);
    WDialogStep disabled{StepCheck, IDC_SAVE_TUNNEL, nullptr, 1};
    EXPECT_FALSE(ApplyDialogStep(dialog, disabled));
    EXPECT_FALSE(IsControlChecked(dialog, IDC_SAVE_TUNNEL));
    DestroyDialog(dialog);
}
