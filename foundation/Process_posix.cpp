// Running a command natively: /bin/sh -c with the same text that the Windows
// build gives the command interpreter.

#include "foundation/Process.h"

#include "foundation/MVector.h"
#include "foundation/Platform.h"

#include <cerrno>
#include <sys/wait.h>
#include <unistd.h>

bool PlatformRunCommand(const MString& text) {
    int32_t size = text.Length * 3 + 1;
    MVector<char> command;
    if (!command.SetCount(size)) return false;
    int32_t count =
        text.Length > 0 ? WideToNarrow(65001, text.Text, text.Length, command.Data, size - 1) : 0;
    if (count < 0) return false;
    command.Data[count] = 0;
    pid_t child = fork();
    if (child < 0) return false;
    if (child == 0) {
        execl("/bin/sh", "sh", "-c", command.Data, static_cast<char*>(nullptr));
        _exit(127);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR) return false;
    return true;
}
