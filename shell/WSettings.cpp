// The settings object: defaults, the settings file read at start-up and
// written when the main window closes.

#include "shell/WSettings.h"

#include "foundation/Folders.h"
#include "foundation/MTextFile.h"
#include "foundation/Platform.h"
#include "shell/Shell.h"

#include <cstdint>

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

// ---- The keys of the file, in the order they are written

enum WSettingKind {
    SettingRect,     // top right bottom left; brought onto the virtual screen when read
    SettingFlag,     // 0 or 1
    SettingNumber,   // a whole number, held within Low to High when read
    SettingText,     // one token: a folder or a program's path
    SettingColour,   // red green blue, each kept as its low byte
    SettingTemplates // one record per show template: index, then 0 or 1
};

// One key: the field it fills and, but for the rectangles (whose defaults
// come from the screen), the value it has by default.
struct WSettingKey {
    const char16_t* Name = nullptr;
    WSettingKind Kind = SettingFlag;
    WRect WSettings::*Rect = nullptr;
    bool WSettings::*Flag = nullptr;
    int32_t WSettings::*Number = nullptr;
    MString WSettings::*Text = nullptr;
    MColour WSettings::*Shade = nullptr;
    int32_t Default = 0;                       // of a flag or a number
    int32_t Low = INT32_MIN, High = INT32_MAX; // what a number read is held to
    MColour DefaultColour;
    MString (*DefaultText)() = nullptr; // null for an empty text
};

WSettingKey Row(const char16_t* name, WSettingKind kind) {
    WSettingKey key;
    key.Name = name;
    key.Kind = kind;
    return key;
}
WSettingKey RectKey(const char16_t* name, WRect WSettings::*field) {
    WSettingKey key = Row(name, SettingRect);
    key.Rect = field;
    return key;
}
WSettingKey FlagKey(const char16_t* name, bool WSettings::*field, bool value) {
    WSettingKey key = Row(name, SettingFlag);
    key.Flag = field;
    key.Default = value;
    return key;
}
WSettingKey NumberKey(const char16_t* name, int32_t WSettings::*field, int32_t value,
                      int32_t low = INT32_MIN, int32_t high = INT32_MAX) {
    WSettingKey key = Row(name, SettingNumber);
    key.Number = field;
    key.Default = value;
    key.Low = low;
    key.High = high;
    return key;
}
WSettingKey TextKey(const char16_t* name, MString WSettings::*field, MString (*value)() = nullptr) {
    WSettingKey key = Row(name, SettingText);
    key.Text = field;
    key.DefaultText = value;
    return key;
}
WSettingKey ColourKey(const char16_t* name, MColour WSettings::*field, uint8_t r, uint8_t g,
                      uint8_t b) {
    WSettingKey key = Row(name, SettingColour);
    key.Shade = field;
    key.DefaultColour = Colour(r, g, b);
    return key;
}
WSettingKey TemplatesKey(const char16_t* name) {
    return Row(name, SettingTemplates);
}

MString MediaFolder(const char16_t* name) {
    return JoinPath(JoinPath(ProgramFolder(), MString(u"Media")), MString(name));
}
MString SketchesFolder() {
    return MediaFolder(u"Sketches");
}
MString PicturesFolder() {
    return MediaFolder(u"Pictures");
}
MString SavedSketchesFolder() {
    return DocumentsFolder(MString(Company), MString(Product));
}

const WSettingKey Keys[] = {
    RectKey(u"WindowRect", &WSettings::WindowRect),
    RectKey(u"WindowRect_Info", &WSettings::WindowRect_Info), // the Point tool window
    RectKey(u"WindowRect_Element", &WSettings::WindowRect_Element),
    RectKey(u"WindowRect_Mode", &WSettings::WindowRect_Mode),
    FlagKey(u"ShowWindow_Point", &WSettings::ShowWindow_Point, true),
    FlagKey(u"ShowWindow_Element", &WSettings::ShowWindow_Element, true),
    FlagKey(u"ShowWindow_Mode", &WSettings::ShowWindow_Mode, true),
    FlagKey(u"SaveSolid", &WSettings::SaveSolid, false),
    FlagKey(u"SaveRoll", &WSettings::SaveRoll, false),
    NumberKey(u"MaxLinesPerCurve", &WSettings::MaxLinesPerCurve, 100), // straight pieces per curve
    TextKey(u"FolderOpenSketch", &WSettings::FolderOpenSketch, SketchesFolder),
    TextKey(u"FolderSaveSketch", &WSettings::FolderSaveSketch, SavedSketchesFolder),
    TextKey(u"FolderSelectPicture", &WSettings::FolderSelectPicture, PicturesFolder),
    TextKey(u"FolderSelectExecutable", &WSettings::FolderSelectExecutable),
    ColourKey(u"ColourBackground", &WSettings::ColourBackground, 255, 255, 255),
    ColourKey(u"ColourGrid", &WSettings::ColourGrid, 229, 229, 229),
    ColourKey(u"ColourInfo", &WSettings::ColourInfo, 128, 128, 128), // texts and axes
    ColourKey(u"ColourSketch", &WSettings::ColourSketch, 0, 0, 0),
    ColourKey(u"ColourBezier", &WSettings::ColourBezier, 107, 157,
              227), // the selection in the sketch edit mode
    ColourKey(u"ColourRoll", &WSettings::ColourRoll, 75, 222, 189),
    ColourKey(u"ColourGhost", &WSettings::ColourGhost, 0, 255, 0),
    NumberKey(u"PenSize", &WSettings::PenSize, 2, 1, 10),     // pixels
    NumberKey(u"PointSize", &WSettings::PointSize, 8, 1, 20), // pixels
    NumberKey(u"GridSize", &WSettings::GridSize, 10),         // world units
    FlagKey(u"UseGrid", &WSettings::UseGrid, false),
    NumberKey(u"DisplaySize", &WSettings::DisplaySize, 100), // percent
    FlagKey(u"ShowHelpTexts", &WSettings::ShowHelpTexts, true),
    TextKey(u"ExternalTracer", &WSettings::ExternalTracer),
    TemplatesKey(u"Template"),                              // which show templates are written
    NumberKey(u"Smooth", &WSettings::Smooth, 200, 0, 1000), // read by the show export
    NumberKey(u"TreeType", &WSettings::TreeType, 5),        // read by the show export
};

// ---- Walking the table

void SetDefault(WSettings& settings, const WSettingKey& key) {
    switch (key.Kind) {
    case SettingRect:
        break;
    case SettingFlag:
        settings.*key.Flag = key.Default != 0;
        break;
    case SettingNumber:
        settings.*key.Number = key.Default;
        break;
    case SettingText:
        settings.*key.Text = key.DefaultText ? key.DefaultText() : MString();
        break;
    case SettingColour:
        settings.*key.Shade = key.DefaultColour;
        break;
    case SettingTemplates:
        for (int32_t i = 0; i < TemplateCount; i++)
            settings.Template[i] = false;
        break;
    }
}

void ReadSetting(WSettings& settings, const WSettingKey& key, const MTextFile& file) {
    switch (key.Kind) {
    case SettingRect:
        ReadRect(file, settings.*key.Rect);
        break;
    case SettingFlag:
        settings.*key.Flag = file.TokenBool(1);
        break;
    case SettingNumber:
        settings.*key.Number = Limit(IntegerToken(file, 1), key.Low, key.High);
        break;
    case SettingText:
        settings.*key.Text = file.Token(1);
        break;
    case SettingColour:
        ReadColour(file, settings.*key.Shade);
        break;
    case SettingTemplates: {
        int32_t index = IntegerToken(file, 1);
        if (index >= 0 && index < TemplateCount) settings.Template[index] = file.TokenBool(2);
        break;
    }
    }
}

void WriteSetting(const WSettings& settings, const WSettingKey& key, MTextFile& file) {
    MString name(key.Name);
    switch (key.Kind) {
    case SettingRect:
        WriteRect(file, key.Name, settings.*key.Rect);
        break;
    case SettingFlag:
        file.WriteKey(name, settings.*key.Flag);
        break;
    case SettingNumber:
        file.WriteKey(name, settings.*key.Number);
        break;
    case SettingText:
        file.WriteKey(name, settings.*key.Text);
        break;
    case SettingColour:
        WriteColour(file, key.Name, settings.*key.Shade);
        break;
    case SettingTemplates:
        for (int32_t i = 0; i < TemplateCount; i++) {
            file.AppendText(name);
            file.AppendInteger(i);
            file.AppendBool(settings.Template[i]);
            EndRecord(file);
        }
        break;
    }
}

} // namespace

// ---- Defaults

void WSettings::SetDefaults() {
    for (const WSettingKey& key : Keys)
        SetDefault(*this, key);
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
        MString name = file.Token(0);
        for (const WSettingKey& key : Keys) {
            if (SameKey(name, key.Name)) {
                ReadSetting(*this, key, file);
                break;
            }
        }
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
    for (const WSettingKey& key : Keys)
        WriteSetting(*this, key, file);
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
