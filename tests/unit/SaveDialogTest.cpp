// The save dialog of "Save as...": its controls from the settings, which
// templates may be ticked after every click, the settings from its fields at
// OK, and the flow around it through the menu command.

#include "ShellTestSupport.h"

#include "dialogs/SaveDialog.h"
#include "resources/resource.h"

namespace {

enum { IdSaveAs = 32799 };

const int32_t TemplateIds[TemplateCount] = {1042, 1040, 1039, 1037, 1038, 1044, 1045, 1041, 1043};

// Two open curves of two points each.
std::vector<WSketchPoint> TwoCurves() {
    return {Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine), Record(0, 50, 0, KindMove),
            Record(100, 50, 0, KindLine)};
}

class SaveDialogTest : public ShellFixture {
  protected:
    void SetUp() override {
        ShellFixture::SetUp();
        settings.SetDefaults();
        settings.ResetSaveChoices();
    }
    const WMemoryControl& Opened(int32_t id) {
        static WMemoryControl none;
        const WMemoryControl* control = Dialogs.Opened.Find(id);
        return control ? *control : none;
    }
    const WMemoryControl& Closed(int32_t id) {
        static WMemoryControl none;
        const WMemoryControl* control = Dialogs.Closed.Find(id);
        return control ? *control : none;
    }
    void TickEverything() {
        for (bool& ticked : settings.Template)
            ticked = true;
        settings.SaveSolid = true;
        settings.SaveRoll = true;
    }
    // Runs the dialog with these steps and the ending; true for OK.
    bool Run(int32_t ending, const WDialogStep* steps = nullptr, int32_t count = 0) {
        AnswerDialog(ending, steps, count);
        return RunSaveDialog();
    }
};

} // namespace

TEST_F(SaveDialogTest, OpensWithItsTitleTheSettingsAndTheTreeEntries) {
    Load(OpenCorner());
    settings.SaveRoll = true;
    settings.Template[4] = true;
    settings.Smooth = 321;
    settings.MaxLinesPerCurve = 55;
    settings.TreeType = 3;
    settings.Centre = false;
    EXPECT_FALSE(Run(2));
    EXPECT_EQ(Dialogs.LastResource, 135);
    EXPECT_EQ(Text(Dialogs.LastTitle), u"Quillmere - Save sketch");
    EXPECT_TRUE(Opened(1038).Checked);
    EXPECT_TRUE(Opened(1047).Checked);
    EXPECT_FALSE(Opened(1046).Checked);
    EXPECT_FALSE(Opened(1048).Checked);
    EXPECT_EQ(Text(Opened(1049).Text), u"321");
    EXPECT_EQ(Text(Opened(1051).Text), u"55");
    const WMemoryControl& trees = Opened(1050);
    ASSERT_EQ(trees.ItemCount, 8);
    const char16_t* entries[] = {u"Abstract", u"Beech", u"Elm",  u"Fir",
                                 u"Juniper",  u"Oak",   u"Palm", u"Spruce"};
    for (int32_t i = 0; i < 8; i++)
        EXPECT_EQ(Text(trees.Items[i]), entries[i]);
    EXPECT_EQ(trees.Selection, 3);
    EXPECT_TRUE(Opened(1049).Enabled);
    EXPECT_TRUE(Opened(1050).Enabled);
    EXPECT_EQ(TheSaveDialog, nullptr); // only while open
}

TEST_F(SaveDialogTest, TheTemplateTableHasTheIdsAndLabelsInIndexOrder) {
    const char16_t* labels[] = {u"Spinning logo",
                                u"Handwritten text",
                                u"Roller coaster 1st person",
                                u"Roller coaster 3rd person",
                                u"Road 1st person",
                                u"Road 3rd person",
                                u"Bob 1st person",
                                u"Bob 3rd person",
                                u"Tunnel"};
    for (int32_t i = 0; i < TemplateCount; i++) {
        EXPECT_EQ(SaveTemplates[i].Id, TemplateIds[i]);
        EXPECT_EQ(std::u16string(SaveTemplates[i].Label), labels[i]);
    }
}

TEST_F(SaveDialogTest, TwoCurvesGreyAllTemplatesButHandwrittenTextAndTheLogo) {
    Load(TwoCurves());
    TickEverything();
    EXPECT_TRUE(Run(1));
    EXPECT_TRUE(Opened(1042).Enabled); // "Solid" is on
    EXPECT_TRUE(Opened(1040).Enabled);
    for (int32_t i = 2; i < TemplateCount; i++) {
        EXPECT_FALSE(Opened(TemplateIds[i]).Enabled) << i;
        EXPECT_FALSE(Opened(TemplateIds[i]).Checked) << i;
    }
    for (int32_t i = 2; i < TemplateCount; i++)
        EXPECT_FALSE(settings.Template[i]) << i;
    EXPECT_TRUE(settings.Template[0]);
    EXPECT_TRUE(settings.Template[1]);
    // Without "Solid" the logo goes too.
    settings.SaveSolid = false;
    EXPECT_TRUE(Run(1));
    EXPECT_FALSE(Opened(1042).Enabled);
    EXPECT_FALSE(settings.Template[0]);
    EXPECT_TRUE(settings.Template[1]);
}

TEST_F(SaveDialogTest, RollOffGreysTheRides) {
    Load(OpenCorner());
    TickEverything();
    settings.SaveRoll = false;
    EXPECT_TRUE(Run(1));
    for (int32_t i = 2; i < TemplateCount; i++)
        EXPECT_FALSE(Opened(TemplateIds[i]).Enabled) << i;
    EXPECT_TRUE(Opened(1040).Enabled);
    // Ticking "Roll" brings them back, unticked.
    const WDialogStep steps[] = {{StepCheck, 1047, nullptr, 1}, {StepCheck, 1043, nullptr, 1}};
    EXPECT_TRUE(Run(1, steps, 2));
    EXPECT_EQ(Dialogs.Refused, 0);
    for (int32_t i = 2; i < TemplateCount; i++)
        EXPECT_TRUE(Closed(TemplateIds[i]).Enabled) << i;
    EXPECT_TRUE(settings.SaveRoll);
    EXPECT_TRUE(settings.Template[8]);
    EXPECT_FALSE(settings.Template[2]);
    // And unticking it again greys and unticks the tunnel.
    const WDialogStep off[] = {{StepCheck, 1047, nullptr, 0}};
    EXPECT_TRUE(Run(1, off, 1));
    EXPECT_FALSE(Closed(1043).Enabled);
    EXPECT_FALSE(settings.Template[8]);
}

TEST_F(SaveDialogTest, AGreyedTemplateCannotBeTicked) {
    Load(TwoCurves());
    settings.SaveRoll = true;
    const WDialogStep steps[] = {{StepCheck, 1039, nullptr, 1}};
    EXPECT_TRUE(Run(1, steps, 1));
    EXPECT_EQ(Dialogs.Refused, 1);
    EXPECT_FALSE(settings.Template[2]);
}

TEST_F(SaveDialogTest, TickingRoadFirstPersonUnticksCentreAndNormalizeAtOnce) {
    Load(OpenCorner());
    settings.SaveRoll = true;
    ASSERT_TRUE(settings.Centre);
    ASSERT_TRUE(settings.Scale);
    const WDialogStep steps[] = {{StepCheck, 1038, nullptr, 1}};
    AnswerDialog(2, steps, 1);
    EXPECT_FALSE(RunSaveDialog());
    EXPECT_TRUE(Opened(1048).Checked);
    EXPECT_TRUE(Closed(1038).Checked);
    EXPECT_FALSE(Closed(1048).Checked);
    EXPECT_FALSE(Closed(1052).Checked);
    // They stay clickable, and the next pass unticks them again.
    EXPECT_TRUE(Closed(1048).Enabled);
    EXPECT_TRUE(Closed(1052).Enabled);
    const WDialogStep again[] = {{StepCheck, 1038, nullptr, 1},
                                 {StepCheck, 1048, nullptr, 1},
                                 {StepCheck, 1052, nullptr, 1}};
    EXPECT_TRUE(Run(1, again, 3));
    EXPECT_EQ(Dialogs.Refused, 0);
    EXPECT_FALSE(settings.Centre);
    EXPECT_FALSE(settings.Scale);
    EXPECT_TRUE(settings.Template[4]);
}

TEST_F(SaveDialogTest, CentreAndNormalizeStayWithTheTunnelAndTheLogo) {
    Load(OpenCorner());
    settings.SaveRoll = true;
    settings.SaveSolid = true;
    const WDialogStep steps[] = {{StepCheck, 1043, nullptr, 1}, {StepCheck, 1042, nullptr, 1}};
    EXPECT_TRUE(Run(1, steps, 2));
    EXPECT_TRUE(settings.Centre);
    EXPECT_TRUE(settings.Scale);
    EXPECT_TRUE(settings.Template[8]);
    EXPECT_TRUE(settings.Template[0]);
}

TEST_F(SaveDialogTest, UntickingSolidUnticksTheLogo) {
    Load(OpenCorner());
    settings.SaveSolid = true;
    settings.Template[0] = true;
    const WDialogStep steps[] = {{StepCheck, 1046, nullptr, 0}};
    EXPECT_TRUE(Run(1, steps, 1));
    EXPECT_FALSE(Closed(1042).Enabled);
    EXPECT_FALSE(settings.Template[0]);
    EXPECT_FALSE(settings.SaveSolid);
}

TEST_F(SaveDialogTest, SmoothIsCutToAThousandAndShownSoAtTheNextOpening) {
    Load(OpenCorner());
    const WDialogStep steps[] = {{StepSetText, 1049, u"5000"}};
    EXPECT_TRUE(Run(1, steps, 1));
    EXPECT_EQ(settings.Smooth, 1000);
    EXPECT_FALSE(Run(2));
    EXPECT_EQ(Text(Opened(1049).Text), u"1000");
}

TEST_F(SaveDialogTest, BadFieldsGiveTheLimits) {
    Load(OpenCorner());
    struct Row {
        const char16_t* Typed;
        int32_t Smooth, MaxLines;
    };
    const Row rows[] = {
        {u"", 0, 0},
        {u"abc", 0, 0},
        {u"-5", 0, -5},
        {u"12abc", 12, 12},
        {u"99999999999999", 1000, INT32_MAX},
        {u"-99999999999999", 0, INT32_MIN},
        {u"000000000000123", 123, 123},  // 15 characters: all read
        {u"0000000000001234", 123, 123}, // 16: the last one is cut
        {u"1e3", 1, 1},
    };
    for (const Row& row : rows) {
        const WDialogStep steps[] = {{StepSetText, 1049, row.Typed},
                                     {StepSetText, 1051, row.Typed}};
        EXPECT_TRUE(Run(1, steps, 2));
        EXPECT_EQ(settings.Smooth, row.Smooth) << Text(MString(row.Typed)).size();
        EXPECT_EQ(settings.MaxLinesPerCurve, row.MaxLines) << Text(MString(row.Typed)).size();
    }
}

TEST_F(SaveDialogTest, TreeTypeIsLimitedForTheSelectionOnly) {
    Load(OpenCorner());
    settings.TreeType = 12;
    EXPECT_FALSE(Run(2));
    EXPECT_EQ(Opened(1050).Selection, 7);
    EXPECT_EQ(settings.TreeType, 12);
    settings.TreeType = -3;
    EXPECT_FALSE(Run(2));
    EXPECT_EQ(Opened(1050).Selection, 0);
    EXPECT_EQ(settings.TreeType, -3);
    const WDialogStep steps[] = {{StepSelect, 1050, nullptr, 6}};
    EXPECT_TRUE(Run(1, steps, 1));
    EXPECT_EQ(settings.TreeType, 6);
}

TEST_F(SaveDialogTest, CancelAndTheCloseBoxChangeNoSetting) {
    Load(OpenCorner());
    settings.SaveRoll = true;
    const WDialogStep steps[] = {{StepCheck, 1046, nullptr, 1},  {StepCheck, 1037, nullptr, 1},
                                 {StepSetText, 1049, u"7"},      {StepSetText, 1051, u"9"},
                                 {StepSelect, 1050, nullptr, 1}, {StepCheck, 1047, nullptr, 0}};
    WSettings before = settings;
    EXPECT_FALSE(Run(2, steps, 6));
    EXPECT_FALSE(Run(0, steps, 6));
    EXPECT_EQ(Dialogs.Refused, 0);
    EXPECT_EQ(settings.SaveSolid, before.SaveSolid);
    EXPECT_EQ(settings.SaveRoll, before.SaveRoll);
    EXPECT_EQ(settings.Smooth, before.Smooth);
    EXPECT_EQ(settings.MaxLinesPerCurve, before.MaxLinesPerCurve);
    EXPECT_EQ(settings.TreeType, before.TreeType);
    for (int32_t i = 0; i < TemplateCount; i++)
        EXPECT_EQ(settings.Template[i], before.Template[i]) << i;
}

// ---- The flow of "Save as..."

TEST_F(SaveDialogTest, AnEmptyMaxLinesFieldStoresZeroAndTheFileHasNoSuchLine) {
    Load(OpenCorner());
    MString path = PathOf("corner.eps");
    const WDialogStep steps[] = {{StepSetText, 1051, u""}};
    AnswerDialog(1, steps, 1);
    Prompt(path);
    ASSERT_TRUE(RunCommand(IdSaveAs));
    EXPECT_EQ(settings.MaxLinesPerCurve, 0);
    std::string file = ReadFile(path);
    ASSERT_FALSE(file.empty());
    EXPECT_EQ(file.find("MaxLinesPerCurve"), std::string::npos);
    // With the default the line is there.
    const WDialogStep hundred[] = {{StepSetText, 1051, u"100"}};
    AnswerDialog(1, hundred, 1);
    Prompt(path);
    ASSERT_TRUE(RunCommand(IdSaveAs));
    EXPECT_NE(ReadFile(path).find("%%Cinderlane MaxLinesPerCurve 100\r\n"), std::string::npos);
}

TEST_F(SaveDialogTest, CancellingThePromptKeepsTheDialogsChoices) {
    Load(OpenCorner());
    settings.SaveRoll = true;
    const WDialogStep steps[] = {{StepCheck, 1039, nullptr, 1}, {StepSetText, 1049, u"40"}};
    AnswerDialog(1, steps, 2);
    ASSERT_TRUE(RunCommand(IdSaveAs));
    EXPECT_EQ(Prompts.Count, 1);
    EXPECT_TRUE(TheFileName.IsEmpty());
    EXPECT_TRUE(settings.Template[2]);
    EXPECT_EQ(settings.Smooth, 40);
    EXPECT_FALSE(settings.Centre);
    EXPECT_FALSE(settings.Scale);
}

TEST_F(SaveDialogTest, TheDialogCountsTheCurvesLeftByTheCleanUp) {
    // A lone record behind the corner counts as a second curve until the
    // clean-up deals with it, which happens before the dialog opens.
    std::vector<WSketchPoint> records = OpenCorner();
    records.push_back(Record(300, 300, 0, KindMove));
    Load(records);
    EXPECT_EQ(CountCurves(), 2);
    settings.SaveRoll = true;
    AnswerDialog(2);
    ASSERT_TRUE(RunCommand(IdSaveAs));
    EXPECT_EQ(CountCurves(), 1);
    EXPECT_TRUE(Opened(1039).Enabled);
}

TEST_F(SaveDialogTest, SavedFileFollowsTheChoicesOfTheDialog) {
    Load(OpenCorner());
    settings.SaveRoll = false;
    settings.Centre = true;
    settings.Scale = true;
    MString path = PathOf("corner.eps");
    const WDialogStep steps[] = {{StepCheck, 1048, nullptr, 0}, {StepCheck, 1052, nullptr, 0}};
    AnswerDialog(1, steps, 2);
    Prompt(path);
    ASSERT_TRUE(RunCommand(IdSaveAs));
    std::string file = ReadFile(path);
    EXPECT_NE(file.find("%%Cinderlane Centre N\r\n"), std::string::npos);
    EXPECT_NE(file.find("%%Cinderlane Scale N\r\n"), std::string::npos);
    EXPECT_EQ(Text(TheFileName), Text(path));
    EXPECT_EQ(Title(), u"Quillmere - corner.eps (3 points) [DRAW FREEHAND]");
}
