// About: its title, its size and place, the button's place, what a paint
// draws, and that any click ends it.

#include "ShellTestSupport.h"

#include "dialogs/AboutDialog.h"
#include "drawing/MDrawSurface.h"
#include "foundation/Folders.h"

#include <deque>
#include <filesystem>

namespace {

enum { IdAbout = 104 };

// The template's button, as a dialog at 96 dots per inch places it.
void PlaceButton(void* dialog) {
    MoveControl(dialog, 1, WRect{424, 307, 499, 330});
}

MDrawSurface* Target = nullptr;

void PaintInto(void* dialog) {
    static int pretendDc = 0;
    PaintAbout(dialog, &pretendDc, *Target);
}

class AboutDialogTest : public ShellFixture {
  protected:
    MScreenMetrics Screen;
    void SetUp() override {
        ShellFixture::SetUp();
        Screen.Primary = MScreenArea{0, 0, 1280, 1024};
        Screen.Virtual = Screen.Primary;
        TheScreenOverride = &Screen;
    }
    void TearDown() override {
        TheScreenOverride = nullptr;
        Target = nullptr;
        ShellFixture::TearDown();
    }
    std::deque<MDrawOperation> Found; // copies of the entries Find handed out
    const MDrawOperation* Find(const MDrawSurface& surface, int32_t kind, int32_t nth = 0) {
        for (int32_t i = 0; i < surface.OperationCount; i++)
            if (surface.Operations[i].Kind == kind && nth-- == 0) {
                Found.push_back(surface.Operations[i]);
                return &Found.back();
            }
        return nullptr;
    }
};

} // namespace

TEST_F(AboutDialogTest, OpensTitledSizedAndCentred) {
    AnswerDialog(1);
    ASSERT_TRUE(RunCommand(IdAbout));
    EXPECT_EQ(Dialogs.LastResource, 133);
    EXPECT_EQ(Text(Dialogs.LastTitle), u"Quillmere - About");
    const WMemoryDialog& about = Dialogs.Closed;
    EXPECT_EQ(about.Client.right, 680);
    EXPECT_EQ(about.Client.bottom, 420);
    EXPECT_EQ(about.Window.left, (1280 - 680) / 2);
    EXPECT_EQ(about.Window.top, (1024 - 420) / 2);
    // The button keeps its size (none here, the in-memory dialog has no
    // layout); its right and bottom edges move.
    const WMemoryControl* button = Dialogs.Closed.Find(1);
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->Rect.right, 640);
    EXPECT_EQ(button->Rect.bottom, 380);
    EXPECT_EQ(button->Rect.left, 640);
    EXPECT_EQ(button->Rect.top, 380);
    EXPECT_EQ(TheAboutDialog, nullptr);
}

TEST_F(AboutDialogTest, AClickAnywhereTheButtonOrTheCloseBoxEndIt) {
    const WDialogStep press[] = {{StepPress, 0, nullptr, 0, 5, 400}, {StepClick, 1}};
    AnswerDialog(2, press, 2);
    RunAbout();
    EXPECT_EQ(Dialogs.LastResult, 1); // ended by the press, before the rest
    AnswerDialog(1);
    RunAbout();
    EXPECT_EQ(Dialogs.LastResult, 1);
    AnswerDialog(0);
    RunAbout();
    EXPECT_EQ(Dialogs.LastResult, 2);
    EXPECT_EQ(Dialogs.Count, 3);
}

TEST_F(AboutDialogTest, TheHeadlineIsTheNameAndTheShortVersion) {
    EXPECT_EQ(Text(AboutHeadline()), u"Quillmere 5.2");
}

TEST_F(AboutDialogTest, APaintDrawsWhiteTheHeadlineAndTheCredit) {
#if defined(_WIN32)
    GTEST_SKIP() << "reads the native recording surface";
#endif
    MString picture = AboutPicturePath();
    if (PathExists(picture)) GTEST_SKIP() << "an About picture lies beside the tests";
    MDrawSurface surface;
    Target = &surface;
    Dialogs.AfterInit = [](void* dialog) {
        PlaceButton(dialog);
        PaintInto(dialog);
    };
    AnswerDialog(1);
    RunAbout();
    const MDrawOperation* create = Find(surface, DrawCreateForDc);
    ASSERT_NE(create, nullptr);
    EXPECT_EQ(create->X2, 680);
    EXPECT_EQ(create->Y2, 420);
    const MDrawOperation* clear = Find(surface, DrawClear);
    ASSERT_NE(clear, nullptr);
    EXPECT_EQ(clear->Colour.r + clear->Colour.g + clear->Colour.b + clear->Colour.a, 4 * 255);
    EXPECT_EQ(Find(surface, DrawBitmapKind), nullptr);
    const MDrawOperation* headline = Find(surface, DrawTextKind, 0);
    const MDrawOperation* credit = Find(surface, DrawTextKind, 1);
    ASSERT_NE(headline, nullptr);
    ASSERT_NE(credit, nullptr);
    EXPECT_EQ(Text(headline->Text), u"Quillmere 5.2");
    EXPECT_EQ(Text(headline->Font), u"Segoe UI");
    EXPECT_EQ(headline->Size, 40);
    EXPECT_EQ(headline->Horizontal, AlignFar);
    EXPECT_EQ(headline->Vertical, AlignNear);
    EXPECT_FALSE(headline->Clip);
    EXPECT_EQ(headline->X1, 20);
    EXPECT_EQ(headline->Y1, 75);
    EXPECT_EQ(headline->X2, 660);
    EXPECT_EQ(headline->Y2, 420);
    EXPECT_EQ(headline->Colour.r, 64);
    EXPECT_EQ(headline->Colour.g, 64);
    EXPECT_EQ(headline->Colour.b, 64);
    EXPECT_EQ(headline->Colour.a, 255);
    EXPECT_EQ(Text(credit->Font), u"Segoe UI Light");
    EXPECT_EQ(credit->Size, 18);
    EXPECT_EQ(credit->Y1, 120);
    EXPECT_EQ(credit->X2, 660);
    EXPECT_FALSE(MString(credit->Text).IsEmpty());
    // Released, and the button asked to paint itself over the drawing.
    EXPECT_EQ(surface.Operations[surface.OperationCount - 1].Kind, DrawRelease);
    EXPECT_EQ(Dialogs.Closed.Find(1)->Redraws, 1);
}

TEST_F(AboutDialogTest, TheAboutPictureIsDrawnOverTheWholeClientArea) {
#if defined(_WIN32)
    GTEST_SKIP() << "reads the native recording surface";
#endif
    namespace fs = std::filesystem;
    fs::path picture = scratch::Path(AboutPicturePath());
    bool made = !fs::exists(picture);
    if (made) {
        fs::create_directories(picture.parent_path());
        fs::copy_file(fs::path(TEST_SOURCE_DIR) / "tests/data/pictures/gray-alpha.png", picture);
    }
    MDrawSurface surface;
    Target = &surface;
    Dialogs.AfterInit = PaintInto;
    AnswerDialog(1);
    RunAbout();
    if (made) fs::remove(picture);
    const MDrawOperation* bitmap = Find(surface, DrawBitmapKind);
    ASSERT_NE(bitmap, nullptr);
    EXPECT_GE(bitmap->X1, 0);
    EXPECT_LE(bitmap->X2, 680);
    // The texts come after the picture, over it.
    const MDrawOperation* headline = Find(surface, DrawTextKind);
    ASSERT_NE(headline, nullptr);
    EXPECT_GT(headline, bitmap);
}
