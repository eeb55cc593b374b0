// Without a desktop shell or a window the commands' platform calls only
// leave a trace for the developer.

#include "shell/Commands.h"

#include "foundation/Platform.h"

void PlatformOpenWebPage(const MString& url) {
    DebugOutput(MString(u"Web page: ") + url + "\n");
}

void PlatformRequestMainWindowClose() {}
