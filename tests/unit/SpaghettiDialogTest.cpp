// The Spaghetti dialog through scripted in-memory dialogs: its set-up, the
// reading, cleaning and writing back of its fields at GENERATE, its buttons,
// the press on the canvas and the close box.

#include "SpaghettiTestSupport.h"

#include "dialogs/Dialog.h"
#include "dialogs/SpaghettiDialog.h"
#include "resources/resource.h"
#include "shell/ToolWindows.h"

using namespace spaghettitest;

namespace {

class SpaghettiDialog : public SpaghettiFixture {
  protected:
    DialogScript Script;
    WDialogAnswer Answers[4];

    void SetUp() override {
        SpaghettiFixture::SetUp();
        ResetTool();
        TheDialogScript = &Script;
    }
    void TearDown() override {
        TheDialogScript = nullptr;
        ResetTool();
        SpaghettiFixture::TearDown();
    }
    // The process's one tool back to an empty state with default parameters.
    static void ResetTool() {
        WSpaghetti& s = TheSpaghetti;
        s.ClearState();
        s.Dialog = nullptr;
        s.PathBitmap = MString();
        s.Strings = 20;
        s.CurvesPerString = 20;
        s.Radius = 1;
        s.MarginMin = 1;
        s.MarginMax = 2;
        s.CurveLengthMin = 0.05f;
        s.CurveLengthMax = 0.5f;
        s.ShapeJumps = 0;
        s.Depth = 6;
        s.BezierMin = 0.2f;
        s.BezierMax = 0.3f;
        s.CollisionDetection = false;
        s.Shape = 2;
        s.Texture = 3;
        s.Particle = 0;
        s.Animation = 0;
    }
    // Runs the dialog through the menu's entry with the given steps, ended
    // by the close box.
    void Run(const std::vector<WDialogStep>& steps) {
        Answers[0].Steps = steps.data();
        Answers[0].StepCount = int32_t(steps.size());
        Answers[0].Ending = 0;
        Script.Answers = Answers;
        Script.AnswerCount = 1;
        Script.Count = 0;
        RunSpaghettiDialog();
    }
    static std::string Field(const WMemoryDialog& dialog, int32_t id) {
        WMemoryDialog& d = const_cast<WMemoryDialog&>(dialog);
        WMemoryControl* control = d.Find(id);
        return control ? Bytes(control->Text) : std::string("<none>");
    }
};

} // namespace

TEST_F(SpaghettiDialog, OpensWithTitleDropdownsAndTheParameters) {
    Run({});
    EXPECT_EQ(Script.LastResource, IDD_SPAGHETTI);
    EXPECT_EQ(Bytes(Script.LastTitle), "Quillmere - Spaghetti tool");
    EXPECT_EQ(Script.LastResult, 0);
    const WMemoryDialog& d = Script.Opened;
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_STRINGS), "20");
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_CURVESPERSTRING), "20");
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_RADIUS), "1");
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_MARGINMIN), "1");
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_MARGINMAX), "2");
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_CURVELENGTHMIN), "0.05");
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_CURVELENGTHMAX), "0.5");
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_SHAPEJUMPS), "0");
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_DEPTH), "6");
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_BEZIERMIN), "0.2");
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_BEZIERMAX), "0.3");
    WMemoryDialog& opened = Script.Opened;
    EXPECT_FALSE(opened.Control(IDC_SPAGHETTI_COLLISION).Checked);
    const struct {
        int32_t Id, Count, Selection;
        const char* Third;
    } lists[] = {{IDC_SPAGHETTI_SHAPE, 3, 2, "Round"},
                 {IDC_SPAGHETTI_TEXTURE, 10, 3, "Danger"},
                 {IDC_SPAGHETTI_PARTICLE, 2, 0, nullptr},
                 {IDC_SPAGHETTI_ANIMATION, 5, 0, "Cleaner"}};
    for (const auto& list : lists) {
        WMemoryControl& control = opened.Control(list.Id);
        EXPECT_EQ(control.ItemCount, list.Count) << list.Id;
        EXPECT_EQ(control.Selection, list.Selection) << list.Id;
        if (list.Third) {
            EXPECT_EQ(Bytes(control.Items[2]), list.Third);
        }
    }
    EXPECT_EQ(Bytes(opened.Control(IDC_SPAGHETTI_TEXTURE).Items[9]), "Wood");
    EXPECT_EQ(Bytes(opened.Control(IDC_SPAGHETTI_ANIMATION).Items[4]), "Light snake");
    EXPECT_EQ(Bytes(opened.Control(IDC_SPAGHETTI_PARTICLE).Items[1]), "Leaves");
    EXPECT_EQ(Messages.Count, 0);
    // Closed: the tool has no dialog and no hooks any more.
    EXPECT_EQ(TheSpaghetti.Dialog, nullptr);
    EXPECT_EQ(TheSpaghettiHooks.ReadFields, nullptr);
}

TEST_F(SpaghettiDialog, GenerateShowsTheCleanedValues) {
    MakeRectanglePicture(TheSpaghetti, 200, 120, 20, 20, 180, 100);
    Run({{StepSetText, IDC_SPAGHETTI_STRINGS, u""},
         {StepSetText, IDC_SPAGHETTI_SHAPEJUMPS, u""},
         {StepSetText, IDC_SPAGHETTI_RADIUS, u"12"},
         {StepSetText, IDC_SPAGHETTI_MARGINMIN, u"5"},
         {StepSetText, IDC_SPAGHETTI_MARGINMAX, u"2"},
         {StepSetText, IDC_SPAGHETTI_DEPTH, u"nan"},
         {StepSetText, IDC_SPAGHETTI_CURVESPERSTRING, u"12345678901234567"},
         {StepCheck, IDC_SPAGHETTI_COLLISION, nullptr, 1},
         {StepSelect, IDC_SPAGHETTI_TEXTURE, nullptr, 7},
         {StepClick, IDC_SPAGHETTI_GENERATE}});
    const WMemoryDialog& d = Script.Closed;
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_STRINGS), "1");
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_SHAPEJUMPS), "0");
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_RADIUS), "5");
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_MARGINMIN), "2");
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_MARGINMAX), "5");
    // Not-a-number reads as 0, which the field's text already means: the
    // writer leaves it.
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_DEPTH), "nan");
    EXPECT_EQ(TheSpaghetti.Depth, 0.0f);
    // Fifteen characters are read: 123456789012345 is clamped to 1000.
    EXPECT_EQ(Field(d, IDC_SPAGHETTI_CURVESPERSTRING), "1000");
    EXPECT_EQ(TheSpaghetti.Strings, 1);
    EXPECT_EQ(TheSpaghetti.CurvesPerString, 1000);
    EXPECT_EQ(TheSpaghetti.Radius, 5.0f);
    EXPECT_TRUE(TheSpaghetti.CollisionDetection);
    EXPECT_EQ(TheSpaghetti.Texture, 7);
    EXPECT_EQ(Messages.Count, 0);
    // The close box cleared the tool but kept the parameters.
    EXPECT_EQ(TheSpaghetti.Picture, nullptr);
    EXPECT_EQ(TheSpaghetti.CurveCount, 0);
}

TEST_F(SpaghettiDialog, ReopeningShowsTheLastParametersOnAnEmptyCanvas) {
    MakeRectanglePicture(TheSpaghetti, 200, 120, 20, 20, 180, 100);
    Run({{StepSetText, IDC_SPAGHETTI_STRINGS, u"7"}, {StepClick, IDC_SPAGHETTI_GENERATE}});
    EXPECT_EQ(TheSpaghetti.Picture, nullptr);
    Run({});
    EXPECT_EQ(Field(Script.Opened, IDC_SPAGHETTI_STRINGS), "7");
    EXPECT_EQ(TheSpaghetti.Strings, 7);
}

TEST_F(SpaghettiDialog, GenerateWithoutAPictureAsksForOne) {
    Run({{StepClick, IDC_SPAGHETTI_GENERATE}});
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(Bytes(MessageTexts[0]), "Click on the canvas to load a picture");
}

TEST_F(SpaghettiDialog, OpenAndSaveButtons) {
    Answer({});
    Run({{StepClick, IDC_SPAGHETTI_OPEN}, {StepClick, IDC_SPAGHETTI_SAVEAS}});
    EXPECT_EQ(Prompts.Count, 1); // Open asked; Save as... wanted a picture first
    EXPECT_EQ(Prompts.Last.Mode, int32_t(PromptOpenSketch));
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(Bytes(MessageTexts[0]), "Click on the canvas to load a picture");
}

TEST_F(SpaghettiDialog, APressOnTheCanvasAsksForAPicture) {
    const WDialogHandler& handler = SpaghettiDialogHandler();
    TheSpaghetti.CanvasRect = WRect{0, 0, 300, 200};
    Answer({});
    handler.LeftButtonDown(nullptr, 300, 100); // right edge: outside
    handler.LeftButtonDown(nullptr, 100, 200); // bottom edge: outside
    EXPECT_EQ(Prompts.Count, 0);
    handler.LeftButtonDown(nullptr, 0, 0);
    EXPECT_EQ(Prompts.Count, 1);
    EXPECT_EQ(Prompts.Last.Mode, int32_t(PromptSelectPicture));
    std::string path = Path("shape.tga");
    WriteTga(path, 30, 30, [](int32_t x, int32_t) { return x < 15 ? 255 : 0; });
    Answer({path});
    handler.LeftButtonDown(nullptr, 299, 199);
    EXPECT_EQ(Bytes(TheSpaghetti.PathBitmap), path);
    EXPECT_GT(TheSpaghetti.ShapePointCount, 0);
}
