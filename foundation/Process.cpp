// The refusal list in front of every command the program runs.

#include "foundation/Process.h"

#include "foundation/Platform.h"

namespace {

// Commands that could wipe files or stop the machine are never passed on,
// whatever path the settings name.
const char16_t* const RefusedStarts[] = {u"format", u"del", u"erase", u"rd", u"rmdir", u"shutdown"};

} // namespace

bool IsRefusedCommand(const MString& text) {
    MString lower = text;
    LowerCaseInPlace(lower.Text, lower.Length);
    lower.Trim();
    for (const char16_t* start : RefusedStarts) {
        int32_t i = 0;
        while (start[i] && i < lower.Length && lower.Text[i] == start[i])
            i++;
        if (!start[i]) return true;
    }
    return false;
}

bool RunCommand(const MString& text) {
    if (IsRefusedCommand(text)) return false;
    return PlatformRunCommand(text);
}
