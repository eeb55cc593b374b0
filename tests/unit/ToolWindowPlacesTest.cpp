// The tool windows' places and open flags: opened at start as the settings
// say, stored when a window closes by its command, by its close box or with
// the main window, and ended at shutdown.

#include "ShellTestSupport.h"

#include "dialogs/ElementWindow.h"
#include "dialogs/ModePalette.h"
#include "dialogs/PointWindow.h"
#include "dialogs/ToolWindowPlaces.h"
#include "elements/WElement.h"
#include "shell/Startup.h"

namespace {

class ToolWindowPlacesTest : public ShellFixture {
  protected:
    void SetUp() override {
        ShellFixture::SetUp();
        CreateElement();
    }
    void TearDown() override {
        ShellFixture::TearDown();
        DestroyElement();
    }
    // The settings file as text, with its UTF-16 mark dropped.
    std::u16string SettingsText() {
        std::string bytes = scratch::ReadBytes(scratch::Path(SettingsFileName()));
        std::u16string text;
        for (size_t i = 2; i + 1 < bytes.size(); i += 2)
            text += char16_t(uint8_t(bytes[i]) | uint8_t(bytes[i + 1]) << 8);
        return text;
    }
    bool HasLine(const std::u16string& line) {
        return SettingsText().find(line + u"\r\n") != std::u16string::npos;
    }
    void Move(WToolWindow which, const WRect& rect) {
        SetToolWindowRect(ToolWindowHandle(which), rect);
    }
};

TEST_F(ToolWindowPlacesTest, ASettingsFileWithAllClosedOpensNone) {
    settings.ShowWindow_Point = true;
    settings.ShowWindow_Element = true;
    settings.ShowWindow_Mode = true;
    settings.Save();
    std::u16string text = SettingsText();
    for (const char16_t* key : {u"ShowWindow_Point", u"ShowWindow_Element", u"ShowWindow_Mode"}) {
        size_t at = text.find(std::u16string(key) + u"\tY");
        ASSERT_NE(at, std::u16string::npos);
        text[at + std::u16string(key).size() + 1] = u'N';
    }
    std::string bytes("\xff\xfe", 2);
    for (char16_t c : text) {
        bytes += char(c & 0xff);
        bytes += char(c >> 8);
    }
    scratch::WriteBytes(scratch::Path(SettingsFileName()), bytes);
    settings.Load();
    EXPECT_FALSE(settings.ShowWindow_Point);
    OpenToolWindowsAtStart();
    EXPECT_EQ(TheInfoDialog, nullptr);
    EXPECT_EQ(TheElementDialog, nullptr);
    EXPECT_EQ(TheModeDialog, nullptr);
}

TEST_F(ToolWindowPlacesTest, TheStartOpensTheNamedWindowsAtTheirPlaces) {
    settings.ShowWindow_Point = true;
    settings.ShowWindow_Element = false;
    settings.ShowWindow_Mode = true;
    settings.WindowRect_Info = WRect{700, 40, 0, 0};
    settings.WindowRect_Mode = WRect{10, 300, 0, 0};
    OpenToolWindowsAtStart();
    ASSERT_NE(TheInfoDialog, nullptr);
    EXPECT_EQ(TheElementDialog, nullptr);
    ASSERT_NE(TheModeDialog, nullptr);
    WRect rect;
    ASSERT_TRUE(ToolWindowRect(TheInfoDialog->Window, rect));
    EXPECT_EQ(rect.left, 700);
    EXPECT_EQ(rect.top, 40);
    ASSERT_TRUE(ToolWindowRect(TheModeDialog->Window, rect));
    EXPECT_EQ(rect.left, 10);
    EXPECT_EQ(rect.top, 300);
    RefreshMenu();
    EXPECT_TRUE(AppliedMenuState().PointWindow);
    EXPECT_FALSE(AppliedMenuState().ElementWindow);
    EXPECT_TRUE(AppliedMenuState().ModeWindow);
}

TEST_F(ToolWindowPlacesTest, ClosingWithAllThreeOpenWritesYesForEach) {
    OpenInfo();
    OpenElement();
    OpenMode();
    Move(ToolPoint, WRect{11, 12, 211, 312});
    Move(ToolElement, WRect{21, 22, 221, 322});
    Move(ToolMode, WRect{31, 32, 95, 224});
    ASSERT_TRUE(PrepareToClose(WRect{100, 100, 900, 700}));
    EXPECT_TRUE(HasLine(u"ShowWindow_Point\tY"));
    EXPECT_TRUE(HasLine(u"ShowWindow_Element\tY"));
    EXPECT_TRUE(HasLine(u"ShowWindow_Mode\tY"));
    // Rectangles are written top, right, bottom, left.
    EXPECT_TRUE(HasLine(u"WindowRect_Info\t12\t211\t312\t11"));
    EXPECT_TRUE(HasLine(u"WindowRect_Element\t22\t221\t322\t21"));
    EXPECT_TRUE(HasLine(u"WindowRect_Mode\t32\t95\t224\t31"));
}

TEST_F(ToolWindowPlacesTest, AWindowClosedByItsCommandKeepsItsPlaceAndSaysNo) {
    OpenInfo();
    Move(ToolPoint, WRect{40, 50, 240, 350});
    ToggleInfo();
    EXPECT_EQ(TheInfoDialog, nullptr);
    ASSERT_TRUE(PrepareToClose(WRect{100, 100, 900, 700}));
    EXPECT_TRUE(HasLine(u"ShowWindow_Point\tN"));
    EXPECT_TRUE(HasLine(u"ShowWindow_Element\tN"));
    EXPECT_TRUE(HasLine(u"ShowWindow_Mode\tN"));
    EXPECT_TRUE(HasLine(u"WindowRect_Info\t50\t240\t350\t40"));
    // Opened again, it comes back where it was.
    ToggleInfo();
    WRect rect;
    ASSERT_TRUE(ToolWindowRect(TheInfoDialog->Window, rect));
    EXPECT_EQ(rect.left, 40);
    EXPECT_EQ(rect.top, 50);
}

// The close box saves at once, counting its own window as open: the next
// start shows it again.
TEST_F(ToolWindowPlacesTest, TheCloseBoxSavesEveryPlaceWithItselfOpen) {
    OpenInfo();
    OpenElement();
    Move(ToolPoint, WRect{5, 6, 205, 306});
    Move(ToolElement, WRect{7, 8, 207, 308});
    RefreshMenu();
    CloseToolWindowByBox(ToolElement);
    EXPECT_EQ(TheElementDialog, nullptr);
    EXPECT_NE(TheInfoDialog, nullptr);
    EXPECT_FALSE(AppliedMenuState().ElementWindow);
    EXPECT_TRUE(AppliedMenuState().PointWindow);
    EXPECT_TRUE(HasLine(u"ShowWindow_Point\tY"));
    EXPECT_TRUE(HasLine(u"ShowWindow_Element\tY"));
    EXPECT_TRUE(HasLine(u"ShowWindow_Mode\tN"));
    EXPECT_TRUE(HasLine(u"WindowRect_Element\t8\t207\t308\t7"));
    EXPECT_TRUE(HasLine(u"WindowRect_Info\t6\t205\t306\t5"));
}

TEST_F(ToolWindowPlacesTest, ShutdownEndsEveryWindow) {
    OpenInfo();
    OpenElement();
    OpenMode();
    EndToolDialogs();
    EXPECT_EQ(TheInfoDialog, nullptr);
    EXPECT_EQ(TheElementDialog, nullptr);
    EXPECT_NE(TheModeDialog, nullptr);
    EndModePalette();
    EXPECT_EQ(TheModeDialog, nullptr);
    // A second time finds nothing to end.
    EndToolDialogs();
    EndModePalette();
}

} // namespace
