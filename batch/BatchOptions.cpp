// The batch program's command line.

#include "batch/BatchOptions.h"

#include "dialogs/SaveDialog.h"
#include "foundation/Platform.h"

#include <cstddef>

namespace {

// The text in lower case, with "-" and "_" read as spaces.
MString Folded(const MString& text) {
    MString folded = text;
    if (folded.IsEmpty()) return folded;
    LowerCaseInPlace(folded.Text, folded.Length);
    for (int32_t i = 0; i < folded.Length; i++)
        if (folded.Text[i] == u'-' || folded.Text[i] == u'_') folded.Text[i] = u' ';
    return folded;
}

// An index 0 to count - 1 written in digits alone, else -1.
int32_t IndexText(const MString& text, int32_t count) {
    if (text.IsEmpty() || text.Length > 2) return -1;
    int32_t value = 0;
    for (int32_t i = 0; i < text.Length; i++) {
        if (text.Text[i] < u'0' || text.Text[i] > u'9') return -1;
        value = value * 10 + (text.Text[i] - u'0');
    }
    return value < count ? value : -1;
}

// A number field of the save dialog: at most 15 characters are read, and text
// that is no number gives 0.
int32_t FieldInteger(const MString& text) {
    return ParseInteger(text.Left(14));
}

// "--solid" and "--no-solid" and so on: the flags of the dialog's boxes.
struct WFlag {
    const char16_t* Name;
    bool WBatchOptions::*Value;
    bool WBatchOptions::*Given;
};
const WFlag Flags[] = {
    {u"solid", &WBatchOptions::Solid, &WBatchOptions::SolidGiven},
    {u"roll", &WBatchOptions::Roll, &WBatchOptions::RollGiven},
    {u"centre", &WBatchOptions::Centre, &WBatchOptions::CentreGiven},
    {u"normalize", &WBatchOptions::Scale, &WBatchOptions::ScaleGiven},
};

} // namespace

int32_t FindTemplate(const MString& name) {
    int32_t index = IndexText(name, TemplateCount);
    if (index >= 0) return index;
    MString folded = Folded(name);
    for (int32_t i = 0; i < TemplateCount; i++)
        if (Folded(MString(SaveTemplates[i].Label)) == folded) return i;
    return -1;
}

int32_t FindTreeType(const MString& name) {
    int32_t index = IndexText(name, TreeEntryCount);
    if (index >= 0) return index;
    MString folded = Folded(name);
    for (int32_t i = 0; i < TreeEntryCount; i++)
        if (Folded(MString(TreeEntries[i])) == folded) return i;
    return -1;
}

MString ParseBatchOptions(const std::vector<MString>& args, WBatchOptions& options) {
    options = WBatchOptions();
    for (const MString& arg : args)
        if (arg == MString(u"--help") || arg == MString(u"-h")) {
            options.Help = true;
            return MString();
        }
    if (args.empty() || args[0] != MString(u"open"))
        return MString(u"The first argument must be \"open\"; see --help");
    for (size_t at = 1; at < args.size(); at++) {
        const MString& arg = args[at];
        if (arg.Length < 2 || arg.Text[0] != u'-' || arg.Text[1] != u'-') {
            options.Inputs.push_back(arg);
            continue;
        }
        MString name = MString(arg.Chars() + 2);
        bool flag = false;
        for (const WFlag& row : Flags) {
            bool on = name == MString(row.Name);
            bool off = name == MString(u"no-") + MString(row.Name);
            if (!on && !off) continue;
            options.*row.Value = on;
            options.*row.Given = true;
            flag = true;
        }
        if (flag) continue;
        if (at + 1 >= args.size()) return MString(u"Option ") + arg + " needs a value";
        const MString& value = args[++at];
        if (name == MString(u"save")) {
            options.Save = value;
        } else if (name == MString(u"out-dir")) {
            options.OutDir = value;
        } else if (name == MString(u"max-lines")) {
            options.MaxLines = FieldInteger(value);
            options.MaxLinesGiven = true;
        } else if (name == MString(u"smooth")) {
            int32_t smooth = FieldInteger(value);
            options.Smooth = smooth < 0 ? 0 : smooth > 1000 ? 1000 : smooth;
        } else if (name == MString(u"template")) {
            int32_t index = FindTemplate(value);
            if (index < 0) return MString(u"Unknown template \"") + value + "\"";
            options.Template[index] = true;
        } else if (name == MString(u"trees")) {
            int32_t index = FindTreeType(value);
            if (index < 0) return MString(u"Unknown trees \"") + value + "\"";
            options.TreeType = index;
        } else if (name == MString(u"trace")) {
            options.Trace = true;
            options.Tracer = value == MString(u"internal") ? MString() : value;
            if (value.IsEmpty()) return MString(u"Option --trace needs a value");
        } else if (name == MString(u"seed")) {
            options.SeedGiven = true;
            options.Seed = uint32_t(ParseInteger(value));
        } else if (name == MString(u"program-folder")) {
            options.ProgramFolder = value;
        } else {
            return MString(u"Unknown option ") + arg;
        }
    }
    if (options.Inputs.empty()) return MString(u"Nothing to open");
    if (options.Inputs.size() > 1 && options.OutDir.IsEmpty())
        return MString(u"Several inputs need --out-dir");
    if (options.Save.IsEmpty() && options.OutDir.IsEmpty())
        return MString(u"Give --save or --out-dir");
    if (options.Inputs.size() > 1 && !options.Save.IsEmpty())
        return MString(u"--save takes a single input; use --out-dir");
    return MString();
}

MString BatchHelpText() {
    MString text = MString(u"Usage: quillmere-batch open FILE... (--save OUT.eps | --out-dir DIR) "
                           u"[options]\n\n"
                           u"Opens track files and EPS files, or traces pictures, and saves each "
                           u"as the\nwindow's \"Save as...\" does, with its shows and track "
                           u"files.\n\nOptions (default in brackets):\n");
    text += MString(u"  --save OUT.eps        the EPS file of a single input [none]\n"
                    u"  --out-dir DIR         one set of files per input, named after it [none]\n"
                    u"  --trace internal|PATH trace pictures with the built-in tracer or with\n"
                    u"                        the potrace.exe at PATH [no trace: open the file]\n"
                    u"  The five below default to what the open left, as the dialog shows it:\n"
                    u"  an EPS file its own comments, a track file roll without centre and\n"
                    u"  normalize, a trace solid without roll.\n"
                    u"  --solid, --no-solid   \"Solid\" [as opened; off]\n"
                    u"  --roll, --no-roll     \"Roll\" [as opened; off]\n"
                    u"  --centre, --no-centre \"Centre\" [as opened; on]\n"
                    u"  --normalize, --no-normalize\n"
                    u"                        \"Normalize size\" [as opened; on]\n"
                    u"  --max-lines N         \"Max lines per curve\" [as opened; 100]\n"
                    u"  --template NAME       a template to tick, by its label or index 0 to 8;\n"
                    u"                        may be repeated [none]:\n");
    for (int32_t i = 0; i < TemplateCount; i++)
        text += MString(u"                          ") + IntegerText(i) + " \"" +
                MString(SaveTemplates[i].Label) + "\"\n";
    text += MString(u"  --trees TYPE          \"Trees\", by name or index 0 to 7 [Oak]:\n"
                    u"                          ");
    for (int32_t i = 0; i < TreeEntryCount; i++)
        text += MString(TreeEntries[i]) + (i + 1 < TreeEntryCount ? ", " : "\n");
    text += MString(u"  --smooth N            \"Smooth\", 0 to 1000 [200]\n"
                    u"  --seed N              the seed of the shows [the clock]\n"
                    u"  --program-folder DIR  the folder that holds Media/Templates\n"
                    u"                        [the folder of this program]\n"
                    u"  --help                this text\n");
    return text;
}

void ApplyBatchOptions(const WBatchOptions& options, WSettings& settings) {
    settings = WSettings();
    settings.ResetSaveChoices();
    settings.SaveSolid = options.Solid;
    settings.SaveRoll = options.Roll;
    settings.Centre = options.Centre;
    settings.Scale = options.Scale;
    settings.MaxLinesPerCurve = options.MaxLines;
    for (int32_t i = 0; i < TemplateCount; i++)
        settings.Template[i] = options.Template[i];
    settings.TreeType = options.TreeType;
    settings.Smooth = options.Smooth;
    settings.ExternalTracer = options.Tracer;
}

void ApplyGivenChoices(const WBatchOptions& options, WSettings& settings) {
    if (options.SolidGiven) settings.SaveSolid = options.Solid;
    if (options.RollGiven) settings.SaveRoll = options.Roll;
    if (options.CentreGiven) settings.Centre = options.Centre;
    if (options.ScaleGiven) settings.Scale = options.Scale;
    if (options.MaxLinesGiven) settings.MaxLinesPerCurve = options.MaxLines;
}
