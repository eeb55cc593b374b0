// Running commands: the refusal list, and a command that really runs and is
// waited for.

#include "foundation/Process.h"

#include "ScratchFolder.h"

#include <gtest/gtest.h>

#include <string>

#ifndef _WIN32
namespace {

MString Wide(const std::string& text) {
    return scratch::Text(scratch::fs::path(text));
}

} // namespace
#endif

TEST(ProcessTest, RefusedStartsInAnyCaseAfterTrimming) {
    for (const char16_t* text :
         {u"format c:", u"del x", u"  DEL x", u"Erase y", u"rd /s z", u"rmdir z", u"SHUTDOWN -s",
          u"\tshutdown", u"rdiff a b", u"deltree", u"formatting"})
        EXPECT_TRUE(IsRefusedCommand(MString(text))) << std::u16string(text).size();
    for (const char16_t* text : {u"\"del\" x", u"echo del", u"potrace -c", u"", u"r d", u"de"})
        EXPECT_FALSE(IsRefusedCommand(MString(text)));
}

// The commands below are for /bin/sh; the Windows build's command
// interpreter is tested with the external tracer under Wine.
#ifndef _WIN32

TEST(ProcessTest, CommandRunsAndIsWaitedFor) {
    scratch::fs::path folder = scratch::Fresh("process");
    scratch::fs::path marker = folder / "marker";
    // The marker appears only after a pause: a command not waited for would
    // leave it missing when RunCommand returns.
    std::string command = "sleep 0.3; echo done > '" + marker.string() + "'";
    EXPECT_TRUE(RunCommand(Wide(command)));
    EXPECT_TRUE(scratch::fs::exists(marker));
    scratch::Remove(folder);
}

TEST(ProcessTest, RefusedCommandIsNotRun) {
    scratch::fs::path folder = scratch::Fresh("process-refused");
    scratch::fs::path marker = folder / "marker";
    EXPECT_FALSE(RunCommand(Wide("del; touch '" + marker.string() + "'")));
    EXPECT_FALSE(RunCommand(Wide("  RmDir x; touch '" + marker.string() + "'")));
    EXPECT_FALSE(scratch::fs::exists(marker));
    EXPECT_TRUE(RunCommand(Wide("touch '" + marker.string() + "'")));
    EXPECT_TRUE(scratch::fs::exists(marker));
    scratch::Remove(folder);
}

#endif
