// The batch program's command line: inputs, the save dialog's choices by
// their labels, the defaults of a fresh start and the wrong arguments.

#include "batch/BatchOptions.h"

#include "ScratchFolder.h"

#include <gtest/gtest.h>

namespace {

std::vector<MString> Args(std::initializer_list<const char16_t*> texts) {
    std::vector<MString> args;
    for (const char16_t* text : texts)
        args.push_back(MString(text));
    return args;
}

std::u16string Parse(std::initializer_list<const char16_t*> texts, WBatchOptions& options) {
    return scratch::U16(ParseBatchOptions(Args(texts), options));
}

} // namespace

TEST(BatchOptions, DefaultsAreThoseOfAFreshStart) {
    WBatchOptions options;
    ASSERT_EQ(Parse({u"open", u"a.qo", u"--save", u"a.eps"}, options), u"");
    ASSERT_EQ(options.Inputs.size(), 1u);
    EXPECT_EQ(scratch::U16(options.Inputs[0]), u"a.qo");
    EXPECT_EQ(scratch::U16(options.Save), u"a.eps");
    WSettings settings;
    ApplyBatchOptions(options, settings);
    EXPECT_FALSE(settings.SaveSolid);
    EXPECT_FALSE(settings.SaveRoll);
    EXPECT_TRUE(settings.Centre);
    EXPECT_TRUE(settings.Scale);
    EXPECT_EQ(settings.MaxLinesPerCurve, 100);
    EXPECT_EQ(settings.Smooth, 200);
    EXPECT_EQ(settings.TreeType, 5);
    for (bool ticked : settings.Template)
        EXPECT_FALSE(ticked);
    EXPECT_TRUE(settings.ExternalTracer.IsEmpty());
    EXPECT_FALSE(options.Trace);
    EXPECT_FALSE(options.SeedGiven);
}

TEST(BatchOptions, EveryChoiceReachesItsSetting) {
    WBatchOptions options;
    ASSERT_EQ(Parse({u"open",        u"p.png",
                     u"--out-dir",   u"out",
                     u"--solid",     u"--roll",
                     u"--no-centre", u"--no-normalize",
                     u"--max-lines", u"55",
                     u"--template",  u"Road 1st person",
                     u"--template",  u"tunnel",
                     u"--template",  u"0",
                     u"--trees",     u"fir",
                     u"--smooth",    u"40",
                     u"--trace",     u"C:\\Tools\\potrace.exe",
                     u"--seed",      u"7"},
                    options),
              u"");
    WSettings settings;
    ApplyBatchOptions(options, settings);
    EXPECT_TRUE(settings.SaveSolid);
    EXPECT_TRUE(settings.SaveRoll);
    EXPECT_TRUE(options.SolidGiven);
    EXPECT_TRUE(options.RollGiven);
    EXPECT_FALSE(settings.Centre);
    EXPECT_FALSE(settings.Scale);
    EXPECT_EQ(settings.MaxLinesPerCurve, 55);
    EXPECT_EQ(settings.Smooth, 40);
    EXPECT_EQ(settings.TreeType, 3);
    bool expected[TemplateCount] = {true, false, false, false, true, false, false, false, true};
    for (int32_t i = 0; i < TemplateCount; i++)
        EXPECT_EQ(settings.Template[i], expected[i]) << i;
    EXPECT_TRUE(options.Trace);
    EXPECT_EQ(scratch::U16(settings.ExternalTracer), u"C:\\Tools\\potrace.exe");
    EXPECT_TRUE(options.SeedGiven);
    EXPECT_EQ(options.Seed, 7u);
    EXPECT_EQ(scratch::U16(options.OutDir), u"out");
}

TEST(BatchOptions, InternalTraceLeavesTheExternalTracerEmpty) {
    WBatchOptions options;
    ASSERT_EQ(Parse({u"open", u"p.png", u"--save", u"p.eps", u"--trace", u"internal"}, options),
              u"");
    EXPECT_TRUE(options.Trace);
    EXPECT_TRUE(options.Tracer.IsEmpty());
}

// The number fields read as the dialog reads them: at most 15 characters,
// text that is no number is 0, and Smooth is limited to 0 to 1000.
TEST(BatchOptions, NumberFieldsReadAsTheDialogReadsThem) {
    WBatchOptions options;
    ASSERT_EQ(Parse({u"open", u"a", u"--save", u"b", u"--smooth", u"5000", u"--max-lines", u"x"},
                    options),
              u"");
    EXPECT_EQ(options.Smooth, 1000);
    EXPECT_EQ(options.MaxLines, 0);
    ASSERT_EQ(Parse({u"open", u"a", u"--save", u"b", u"--smooth", u"-3", u"--max-lines",
                     u"1234567890123456"},
                    options),
              u"");
    EXPECT_EQ(options.Smooth, 0);
    EXPECT_EQ(options.MaxLines, ParseInteger(MString(u"123456789012345")));
}

TEST(BatchOptions, TemplatesAndTreesByLabelOrIndex) {
    EXPECT_EQ(FindTemplate(MString(u"Spinning logo")), 0);
    EXPECT_EQ(FindTemplate(MString(u"handwritten-text")), 1);
    EXPECT_EQ(FindTemplate(MString(u"Roller_coaster_1st_person")), 2);
    EXPECT_EQ(FindTemplate(MString(u"Bob 3rd person")), 7);
    EXPECT_EQ(FindTemplate(MString(u"8")), 8);
    EXPECT_EQ(FindTemplate(MString(u"9")), -1);
    EXPECT_EQ(FindTemplate(MString(u"Rollercoaster")), -1);
    EXPECT_EQ(FindTreeType(MString(u"Abstract")), 0);
    EXPECT_EQ(FindTreeType(MString(u"SPRUCE")), 7);
    EXPECT_EQ(FindTreeType(MString(u"7")), 7);
    EXPECT_EQ(FindTreeType(MString(u"8")), -1);
    EXPECT_EQ(FindTreeType(MString(u"Birch")), -1);
}

TEST(BatchOptions, WrongArgumentsAreNamed) {
    WBatchOptions options;
    EXPECT_EQ(Parse({}, options), u"The first argument must be \"open\"; see --help");
    EXPECT_EQ(Parse({u"save", u"a"}, options), u"The first argument must be \"open\"; see --help");
    EXPECT_EQ(Parse({u"open", u"--save", u"a.eps"}, options), u"Nothing to open");
    EXPECT_EQ(Parse({u"open", u"a"}, options), u"Give --save or --out-dir");
    EXPECT_EQ(Parse({u"open", u"a", u"b", u"--save", u"c"}, options),
              u"Several inputs need --out-dir");
    EXPECT_EQ(Parse({u"open", u"a", u"b", u"--save", u"c", u"--out-dir", u"d"}, options),
              u"--save takes a single input; use --out-dir");
    EXPECT_EQ(Parse({u"open", u"a", u"--save"}, options), u"Option --save needs a value");
    EXPECT_EQ(Parse({u"open", u"a", u"--save", u"b", u"--colour", u"red"}, options),
              u"Unknown option --colour");
    EXPECT_EQ(Parse({u"open", u"a", u"--save", u"b", u"--template", u"Loop"}, options),
              u"Unknown template \"Loop\"");
    EXPECT_EQ(Parse({u"open", u"a", u"--save", u"b", u"--trees", u"Birch"}, options),
              u"Unknown trees \"Birch\"");
    EXPECT_EQ(Parse({u"open", u"a", u"--save", u"b", u"--trace", u""}, options),
              u"Option --trace needs a value");
}

TEST(BatchOptions, HelpListsEveryOptionWithItsDefault) {
    WBatchOptions options;
    EXPECT_EQ(Parse({u"open", u"a", u"--help"}, options), u"");
    EXPECT_TRUE(options.Help);
    std::u16string help = scratch::U16(BatchHelpText());
    const char16_t* lines[] = {
        u"--save OUT.eps",
        u"--out-dir DIR",
        u"--trace internal|PATH",
        u"--solid, --no-solid   \"Solid\" [as opened; off]",
        u"--roll, --no-roll     \"Roll\" [as opened; off]",
        u"--centre, --no-centre \"Centre\" [as opened; on]",
        u"--normalize, --no-normalize\n                        \"Normalize size\" [as opened; on]",
        u"--max-lines N         \"Max lines per curve\" [as opened; 100]",
        u"a track file roll without centre and\n  normalize, a trace solid without roll.",
        u"--template NAME",
        u"0 \"Spinning logo\"",
        u"8 \"Tunnel\"",
        u"--trees TYPE          \"Trees\", by name or index 0 to 7 [Oak]",
        u"Abstract, Beech, Elm, Fir, Juniper, Oak, Palm, Spruce\n",
        u"--smooth N            \"Smooth\", 0 to 1000 [200]",
        u"--seed N              the seed of the shows [the clock]",
        u"--program-folder DIR",
        u"--help",
    };
    int32_t i = 0;
    for (const char16_t* line : lines)
        EXPECT_NE(help.find(line), std::u16string::npos) << i++;
}
