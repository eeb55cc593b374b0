// The program's resources as Windows reads them from the module: the menu
// with every command's number and text, the keyboard shortcuts, the icon,
// the version and the manifest.

#include "resources/resource.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <set>
#include <string>
#include <tuple>

namespace {

struct MenuRow {
    UINT Id;
    const wchar_t* Text;
};

// The menu's commands with their texts, byte for byte.
const MenuRow MenuRows[] = {
    {32798, L"New"},
    {32779, L"Open..."},
    {32780, L"Save"},
    {32799, L"Save as..."},
    {32841, L"Trace bitmap..."},
    {32850, L"Load background picture..."},
    {105, L"Exit"},
    {32828, L"Draw freehand"},
    {32829, L"Edit sketch"},
    {32830, L"Edit roll"},
    {32846, L"Grid"},
    {32851, L"Flip horizontal"},
    {32852, L"Flip Vertical"},
    {32803, L"Centre"},
    {32806, L"Normalize size"},
    {32785, L"Undo"},
    {32786, L"Redo"},
    {32773, L"Front"},
    {32774, L"Back"},
    {32775, L"Right"},
    {32776, L"Left"},
    {32777, L"Top"},
    {32778, L"Bottom"},
    {32820, L"Zoom in"},
    {32821, L"Zoom out"},
    {32809, L"Point"},
    {32791, L"Element"},
    {32847, L"Mode"},
    {32854, L"Spaghetti..."},
    {32842, L"Options..."},
    {32834, L"User guide"},
    {32835, L"Community"},
    {104, L"About Quillmere"},
};

std::wstring ItemText(HMENU menu, UINT id) {
    wchar_t text[256] = {};
    int length = GetMenuStringW(menu, id, text, 256, MF_BYCOMMAND);
    return std::wstring(text, length > 0 ? length : 0);
}

// Every command item below a menu, separators and popups left out.
void CollectCommands(HMENU menu, std::set<UINT>& ids, int& count) {
    int items = GetMenuItemCount(menu);
    for (int i = 0; i < items; i++) {
        if (HMENU sub = GetSubMenu(menu, i)) {
            CollectCommands(sub, ids, count);
            continue;
        }
        MENUITEMINFOW info = {};
        info.cbSize = sizeof info;
        info.fMask = MIIM_FTYPE | MIIM_ID;
        ASSERT_TRUE(GetMenuItemInfoW(menu, i, TRUE, &info));
        if (info.fType & MFT_SEPARATOR) continue;
        ids.insert(info.wID);
        count++;
    }
}

} // namespace

TEST(QuillmereRcWin, MenuHoldsEveryCommandWithItsText) {
    HMENU menu = LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(109));
    ASSERT_NE(menu, nullptr);
    for (const MenuRow& row : MenuRows)
        EXPECT_EQ(ItemText(menu, row.Id), row.Text) << "command " << row.Id;
    std::set<UINT> ids;
    int count = 0;
    CollectCommands(menu, ids, count);
    EXPECT_EQ(count, int(sizeof MenuRows / sizeof MenuRows[0])) << "no command twice, none unknown";
    for (const MenuRow& row : MenuRows)
        EXPECT_EQ(ids.count(row.Id), 1u) << row.Id;
    // The popups in the bar, each opened with Alt and its letter.
    const wchar_t* popups[] = {L"&File", L"&Edit", L"&View", L"&Tools", L"&Help"};
    ASSERT_EQ(GetMenuItemCount(menu), 5);
    for (int i = 0; i < 5; i++) {
        wchar_t text[64] = {};
        GetMenuStringW(menu, i, text, 64, MF_BYPOSITION);
        EXPECT_STREQ(text, popups[i]);
    }
    DestroyMenu(menu);
}

TEST(QuillmereRcWin, ResourceNamesMatchTheMenuNumbers) {
    EXPECT_EQ(IDM_NEW, 32798);
    EXPECT_EQ(IDM_EXIT, 105);
    EXPECT_EQ(IDM_ABOUT, 104);
    EXPECT_EQ(IDM_ZOOMIN, 32820);
    EXPECT_EQ(IDI_QUILLMERE, 107);
    EXPECT_EQ(IDR_MAINMENU, 109);
    EXPECT_EQ(IDR_ACCELERATORS, 129);
}

TEST(QuillmereRcWin, AcceleratorsAreTheShortcutsOfTheCommands) {
    HACCEL table = LoadAcceleratorsW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(129));
    ASSERT_NE(table, nullptr);
    ACCEL entries[64];
    int count = CopyAcceleratorTableW(table, entries, 64);
    using Key = std::tuple<int, int, int>; // flags, key, command
    std::set<Key> got;
    for (int i = 0; i < count; i++)
        got.insert(Key(entries[i].fVirt & (FVIRTKEY | FCONTROL | FSHIFT | FALT), entries[i].key,
                       entries[i].cmd));
    const int control = FVIRTKEY | FCONTROL;
    std::set<Key> want = {
        {control, 'N', 32798},     {control, 'O', 32779},     {control, 'S', 32780},
        {control, 'Z', 32785},     {control, 'Y', 32786},     {FVIRTKEY, VK_F1, 32773},
        {FVIRTKEY, VK_F2, 32774},  {FVIRTKEY, VK_F3, 32775},  {FVIRTKEY, VK_F4, 32776},
        {FVIRTKEY, VK_F5, 32777},  {FVIRTKEY, VK_F6, 32778},  {FVIRTKEY, VK_F7, 32809},
        {FVIRTKEY, VK_F8, 32791},  {FVIRTKEY, VK_F9, 32847},  {FVIRTKEY, VK_F11, 32842},
        {FVIRTKEY, VK_F12, 32834}, {FVIRTKEY, VK_ADD, 32820}, {FVIRTKEY, VK_SUBTRACT, 32821},
    };
    EXPECT_EQ(count, int(want.size()));
    EXPECT_EQ(got, want);
    DestroyAcceleratorTable(table);
}

TEST(QuillmereRcWin, IconLoadsBigAndSmall) {
    for (int size : {16, 32, 48}) {
        HICON icon = static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(107),
                                                   IMAGE_ICON, size, size, 0));
        ASSERT_NE(icon, nullptr) << size;
        ICONINFO info = {};
        ASSERT_TRUE(GetIconInfo(icon, &info));
        BITMAP bitmap = {};
        GetObjectW(info.hbmColor, sizeof bitmap, &bitmap);
        EXPECT_EQ(bitmap.bmWidth, size);
        EXPECT_EQ(bitmap.bmBitsPixel, 32);
        DeleteObject(info.hbmColor);
        DeleteObject(info.hbmMask);
        DestroyIcon(icon);
    }
}

TEST(QuillmereRcWin, VersionIs5200) {
    wchar_t path[MAX_PATH];
    ASSERT_GT(GetModuleFileNameW(nullptr, path, MAX_PATH), 0u);
    DWORD ignored = 0;
    DWORD size = GetFileVersionInfoSizeW(path, &ignored);
    ASSERT_GT(size, 0u);
    std::string block(size, '\0');
    ASSERT_TRUE(GetFileVersionInfoW(path, 0, size, block.data()));
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&fixed), &length));
    EXPECT_EQ(fixed->dwFileVersionMS, (5u << 16) | 2u);
    EXPECT_EQ(fixed->dwFileVersionLS, 0u);
    EXPECT_EQ(fixed->dwProductVersionMS, (5u << 16) | 2u);
    wchar_t* text = nullptr;
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\StringFileInfo\\040904b0\\FileVersion",
                               reinterpret_cast<void**>(&text), &length));
    EXPECT_STREQ(text, L"5.2.0.0");
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\StringFileInfo\\040904b0\\ProductName",
                               reinterpret_cast<void**>(&text), &length));
    EXPECT_STREQ(text, L"Quillmere");
}

TEST(QuillmereRcWin, ManifestAsksForCommonControls6) {
    HMODULE module = GetModuleHandleW(nullptr);
    HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(24)); // RT_MANIFEST
    ASSERT_NE(found, nullptr);
    HGLOBAL loaded = LoadResource(module, found);
    ASSERT_NE(loaded, nullptr);
    std::string text(static_cast<const char*>(LockResource(loaded)), SizeofResource(module, found));
    EXPECT_NE(text.find("name=\"Microsoft.Windows.Common-Controls\""), std::string::npos);
    EXPECT_NE(text.find("version=\"6.0.0.0\""), std::string::npos);
}
