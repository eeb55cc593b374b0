#include "foundation/Program.h"

const char16_t* const TheProgramName = u"Quillmere";
void* TheInstance = nullptr;
void* TheMainWindow = nullptr;
MString TheFileName;
bool TheMouseEnabled = true;
