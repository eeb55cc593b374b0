// The settings object: defaults, the settings file read at start-up and
// written when the main window closes.

#include "shell/WSettings.h"

#include "foundation/Folders.h"
#include "foundation/MTextFile.h"
#include "foundation/Platform.h"
#include "shell/Shell.h"

WSettings* TheSettings = nullptr;

namespace {

const char16_t* const Company = u"Brambleworks";
const char16_t* const Product = u"Quillmere";

// The file holds folders of the user, which may use any character: it is
// written as UTF-16 with its mark, the width the system's strings have. The
// reader takes whatever mark it finds.
const int32_t SettingsEncoding = EncodingUtf16LE;

const int32_t MinimumWindowSize = 200;

MColour Colour(uint8_t r, uint8_t g, uint8_t b) {
    MColour colour;
    colour.b = b;
    colour.g = g;
    colour.r = r;
    colour.a = 255;
    return colour;
}

int32_t Limit(int32_t value, int32_t low, int32_t high) {
    return value < low ? low : value > high ? high : value;
}

// ---- Reading records: token 0 is the key, the values follow; a missing
// value reads as 0, false or an empty string.

int32_t IntegerToken(const MTextFile& file, int32_t index) {
    return ParseInteger(file.Token(index));
}

void ReadRect(const MTextFile& file, WRect& rect) {
    WRect read;
    read.top = IntegerToken(file, 1);
    read.right = IntegerToken(file, 2);
    read.bottom = IntegerToken(file, 3);
    read.left = IntegerToken(file, 4);
    rect = FitToVirtualScreen(read);
}

// Colours are written red, green, blue; a value is kept as its low byte.
void ReadColour(const MTextFile& file, MColour& colour) {
    colour = Colour(uint8_t(IntegerToken(file, 1)), uint8_t(IntegerToken(file, 2)),
                    uint8_t(IntegerToken(file, 3)));
}

bool SameKey(const MString& key, const char16_t* name) {
    int32_t i = 0;
    for (; i < key.Length; i++)
        if (name[i] != key.Text[i]) return false;
    return name[i] == 0;
}

// ---- Writing records

void EndRecord(MTextFile& file) {
    file.OutLine += MString(u"\r\n");
    file.WriteRaw(file.OutLine);
    file.OutLine = MString();
}

void WriteRect(MTextFile& file, const char16_t* key, const WRect& rect) {
    file.AppendText(MString(key));
    file.AppendInteger(rect.top);
    file.AppendInteger(rect.right);
    file.AppendInteger(rect.bottom);
    file.AppendInteger(rect.left);
    EndRecord(file);
}

void WriteColour(MTextFile& file, const char16_t* key, const MColour& colour) {
    file.AppendText(MString(key));
    file.AppendInteger(colour.r);
    file.AppendInteger(colour.g);
    file.AppendInteger(colour.b);
    EndRecord(file);
}

} // namespace

// ---- Defaults

void WSettings::SetDefaults() {
    ShowWindow_Point = true;
    ShowWindow_Element = true;
    ShowWindow_Mode = true;
    SaveSolid = false;
    SaveRoll = false;
    MaxLinesPerCurve = 100;
    MString program = ProgramFolder();
    FolderOpenSketch = JoinPath(JoinPath(program, MString(u"Media")), MString(u"Sketches"));
    FolderSaveSketch = DocumentsFolder(MString(Company), MString(Product));
    FolderSelectPicture = JoinPath(JoinPath(program, MString(u"Media")), MString(u"Pictures"));
    FolderSelectExecutable = MString();
    ColourBackground = Colour(255, 255, 255);
    ColourGrid = Colour(229, 229, 229);
    ColourInfo = Colour(128, 128, 128);
    ColourSketch = Colour(0, 0, 0);
    ColourBezier = Colour(107, 157, 227);
    ColourRoll = Colour(75, 222, 189);
    ColourGhost = Colour(0, 255, 0);
    PenSize = 2;
    PointSize = 8;
    GridSize = 10;
    UseGrid = false;
    DisplaySize = 100;
    ShowHelpTexts = true;
    ExternalTracer = MString();
    for (int32_t i = 0; i < TemplateCount; i++)
        Template[i] = false;
    Smooth = 200;
    TreeType = 5;
}

// The tool windows get only a place: their right and bottom stay 0 until a
// file or the window itself gives them a size. Fractions are of the main
// window's size, truncated.
void WSettings::SetDefaultRectangles() {
    MScreenArea screen = ScreenSize();
    int32_t width = int32_t(screen.Width * 0.8);
    int32_t height = int32_t(screen.Height * 0.8);
    WindowRect.left = (screen.Width - width) / 2;
    WindowRect.top = (screen.Height - height) / 2;
    WindowRect.right = WindowRect.left + width;
    WindowRect.bottom = WindowRect.top + height;

    WindowRect_Info = WRect();
    WindowRect_Info.left = WindowRect.left + int32_t(width * 0.8);
    WindowRect_Info.top = WindowRect.top + int32_t(height * 0.05);
    WindowRect_Element = WRect();
    WindowRect_Element.left = WindowRect_Info.left;
    WindowRect_Element.top = WindowRect_Info.top + int32_t(height * 0.5);
    WindowRect_Mode = WRect();
    WindowRect_Mode.left = WindowRect.left;
    WindowRect_Mode.top = WindowRect.top + int32_t(height * 0.4);
}

void WSettings::ResetSaveChoices() {
    Centre = true;
    Scale = true;
    MaxLinesPerCurve = 100;
}

// ---- The file

MString SettingsFileName() {
    MString folder = AppDataFolder(MString(Company), MString(Product));
    if (folder.IsEmpty()) return folder;
    return JoinPath(folder, MString(Product) + ".txt");
}

WRect FitToVirtualScreen(WRect rect) {
    MScreenArea screen = VirtualScreen();
    // In 64 bits: a file may hold any two numbers.
    int64_t width = int64_t(rect.right) - rect.left;
    int64_t height = int64_t(rect.bottom) - rect.top;
    if (width < MinimumWindowSize) width = MinimumWindowSize;
    if (width > screen.Width) width = screen.Width;
    if (height < MinimumWindowSize) height = MinimumWindowSize;
    if (height > screen.Height) height = screen.Height;
    int32_t farRight = screen.Left + screen.Width, farBottom = screen.Top + screen.Height;
    // A window of a monitor that is gone comes back at the start of that side.
    if (rect.left < screen.Left || rect.left >= farRight) rect.left = screen.Left;
    if (rect.top < screen.Top || rect.top >= farBottom) rect.top = screen.Top;
    rect.right = rect.left + int32_t(width);
    rect.bottom = rect.top + int32_t(height);
    if (rect.right > farRight) {
        rect.left -= rect.right - farRight;
        rect.right = farRight;
    }
    if (rect.bottom > farBottom) {
        rect.top -= rect.bottom - farBottom;
        rect.bottom = farBottom;
    }
    return rect;
}

// Keys are compared exactly, case included; a later record of a key wins.
void WSettings::ReadRecords(MTextFile& file) {
    while (file.ReadLine()) {
        if (file.TokenCount() < 1) continue;
        MString key = file.Token(0);
        auto is = [&key](const char16_t* name) { return SameKey(key, name); };
        if (is(u"WindowRect"))
            ReadRect(file, WindowRect);
        else if (is(u"WindowRect_Info"))
            ReadRect(file, WindowRect_Info);
        else if (is(u"WindowRect_Element"))
            ReadRect(file, WindowRect_Element);
        else if (is(u"WindowRect_Mode"))
            ReadRect(file, WindowRect_Mode);
        else if (is(u"ShowWindow_Point"))
            ShowWindow_Point = file.TokenBool(1);
        else if (is(u"ShowWindow_Element"))
            ShowWindow_Element = file.TokenBool(1);
        else if (is(u"ShowWindow_Mode"))
            ShowWindow_Mode = file.TokenBool(1);
        else if (is(u"SaveSolid"))
            SaveSolid = file.TokenBool(1);
        else if (is(u"SaveRoll"))
            SaveRoll = file.TokenBool(1);
        else if (is(u"MaxLinesPerCurve"))
            MaxLinesPerCurve = IntegerToken(file, 1);
        else if (is(u"FolderOpenSketch"))
            FolderOpenSketch = file.Token(1);
        else if (is(u"FolderSaveSketch"))
            FolderSaveSketch = file.Token(1);
        else if (is(u"FolderSelectPicture"))
            FolderSelectPicture = file.Token(1);
        else if (is(u"FolderSelectExecutable"))
            FolderSelectExecutable = file.Token(1);
        else if (is(u"ColourBackground"))
            ReadColour(file, ColourBackground);
        else if (is(u"ColourGrid"))
            ReadColour(file, ColourGrid);
        else if (is(u"ColourInfo"))
            ReadColour(file, ColourInfo);
        else if (is(u"ColourSketch"))
            ReadColour(file, ColourSketch);
        else if (is(u"ColourBezier"))
            ReadColour(file, ColourBezier);
        else if (is(u"ColourRoll"))
            ReadColour(file, ColourRoll);
        else if (is(u"ColourGhost"))
            ReadColour(file, ColourGhost);
        else if (is(u"PenSize"))
            PenSize = Limit(IntegerToken(file, 1), 1, 10);
        else if (is(u"PointSize"))
            PointSize = Limit(IntegerToken(file, 1), 1, 20);
        else if (is(u"GridSize"))
            GridSize = IntegerToken(file, 1);
        else if (is(u"UseGrid"))
            UseGrid = file.TokenBool(1);
        else if (is(u"DisplaySize"))
            DisplaySize = IntegerToken(file, 1);
        else if (is(u"ShowHelpTexts"))
            ShowHelpTexts = file.TokenBool(1);
        else if (is(u"ExternalTracer"))
            ExternalTracer = file.Token(1);
        else if (is(u"Template")) {
            int32_t index = IntegerToken(file, 1);
            if (index >= 0 && index < TemplateCount) Template[index] = file.TokenBool(2);
        } else if (is(u"Smooth"))
            Smooth = Limit(IntegerToken(file, 1), 0, 1000);
        else if (is(u"TreeType"))
            TreeType = IntegerToken(file, 1);
    }
}

// A file that cannot be opened (locked by another program, say) leaves
// Loaded false, and Save will then leave it alone.
bool WSettings::Load() {
    MString name = SettingsFileName();
    if (name.IsEmpty() || !PathExists(name) || FolderExists(name)) return false;
    MTextFile file(name, false, true, 0);
    if (!file.IsOpen) return false;
    ReadRecords(file);
    Loaded = true;
    return true;
}

bool WSettings::Save() {
    MString name = SettingsFileName();
    if (PathExists(name) && !FolderExists(name) && !Loaded) return false;
    MTextFile file(name, true, false, SettingsEncoding);
    if (!file.IsOpen) {
        ShowMessage(MString(u"Could not open:\n\n\"") + name + "\"", IconError);
        return false;
    }
    WriteRect(file, u"WindowRect", WindowRect);
    WriteRect(file, u"WindowRect_Info", WindowRect_Info);
    WriteRect(file, u"WindowRect_Element", WindowRect_Element);
    WriteRect(file, u"WindowRect_Mode", WindowRect_Mode);
    file.WriteKey(MString(u"ShowWindow_Point"), ShowWindow_Point);
    file.WriteKey(MString(u"ShowWindow_Element"), ShowWindow_Element);
    file.WriteKey(MString(u"ShowWindow_Mode"), ShowWindow_Mode);
    file.WriteKey(MString(u"SaveSolid"), SaveSolid);
    file.WriteKey(MString(u"SaveRoll"), SaveRoll);
    file.WriteKey(MString(u"MaxLinesPerCurve"), MaxLinesPerCurve);
    file.WriteKey(MString(u"FolderOpenSketch"), FolderOpenSketch);
    file.WriteKey(MString(u"FolderSaveSketch"), FolderSaveSketch);
    file.WriteKey(MString(u"FolderSelectPicture"), FolderSelectPicture);
    file.WriteKey(MString(u"FolderSelectExecutable"), FolderSelectExecutable);
    WriteColour(file, u"ColourBackground", ColourBackground);
    WriteColour(file, u"ColourGrid", ColourGrid);
    WriteColour(file, u"ColourInfo", ColourInfo);
    WriteColour(file, u"ColourSketch", ColourSketch);
    WriteColour(file, u"ColourBezier", ColourBezier);
    WriteColour(file, u"ColourRoll", ColourRoll);
    WriteColour(file, u"ColourGhost", ColourGhost);
    file.WriteKey(MString(u"PenSize"), PenSize);
    file.WriteKey(MString(u"PointSize"), PointSize);
    file.WriteKey(MString(u"GridSize"), GridSize);
    file.WriteKey(MString(u"UseGrid"), UseGrid);
    file.WriteKey(MString(u"DisplaySize"), DisplaySize);
    file.WriteKey(MString(u"ShowHelpTexts"), ShowHelpTexts);
    file.WriteKey(MString(u"ExternalTracer"), ExternalTracer);
    for (int32_t i = 0; i < TemplateCount; i++) {
        file.AppendText(MString(u"Template"));
        file.AppendInteger(i);
        file.AppendBool(Template[i]);
        EndRecord(file);
    }
    file.WriteKey(MString(u"Smooth"), Smooth);
    file.WriteKey(MString(u"TreeType"), TreeType);
    return true;
}

// ---- The single object

WSettings* CreateSettings() {
    if (TheSettings) {
        ShowMessage(MString(u"There can only be 1 WSettings object"), IconError);
        return TheSettings;
    }
    WSettings* settings = new WSettings();
    settings->SetDefaults();
    settings->Centre = true;
    settings->Scale = true;
    settings->Loaded = false;
    settings->SetDefaultRectangles();
    TheSettings = settings;
    DebugOutput(u"WSettings created\n");
    return settings;
}

void DestroySettings() {
    if (!TheSettings) return;
    delete TheSettings;
    TheSettings = nullptr;
    DebugOutput(u"WSettings destroyed\n");
}

void SaveSettingsAtClose(const WRect& mainWindow, const WRect* pointWindow,
                         const WRect* elementWindow, const WRect* modeWindow) {
    WSettings* settings = TheSettings;
    if (!settings) return;
    settings->WindowRect = mainWindow;
    if (pointWindow) settings->WindowRect_Info = *pointWindow;
    if (elementWindow) settings->WindowRect_Element = *elementWindow;
    if (modeWindow) settings->WindowRect_Mode = *modeWindow;
    settings->ShowWindow_Point = pointWindow != nullptr;
    settings->ShowWindow_Element = elementWindow != nullptr;
    settings->ShowWindow_Mode = modeWindow != nullptr;
    settings->Save();
}
