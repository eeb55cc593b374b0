// The portable half of the folder helpers: the path rules are the same in
// both builds, only the separator differs.

#include "foundation/Folders.h"

#include "foundation/MVector.h"
#include "foundation/Platform.h"

namespace {

MString Overrides[3];

// The first count characters of text.
MString Head(const MString& text, int32_t count) {
    if (count <= 0) return MString();
    if (count >= text.Length) return text;
    return text.Left(count - 1);
}

bool IsSeparator(char16_t c) {
    return c == u'/' || c == u'\\';
}

} // namespace

MString NormalisePath(MString path) {
    for (int32_t i = 0; i < path.Length; i++)
        if (IsSeparator(path.Text[i])) path.Text[i] = PathSeparator;
    if (path.Length > 1 && path.Text[path.Length - 1] == PathSeparator)
        path = Head(path, path.Length - 1);
    return path;
}

MString JoinPath(const MString& folder, const MString& name) {
    return folder + PathSeparator + name;
}

void SetFolderOverride(FolderKind kind, const MString& path) {
    if (kind >= FolderProgram && kind <= FolderDocuments) Overrides[kind] = path;
}

MString ProgramFolder() {
    if (!Overrides[FolderProgram].IsEmpty()) return Overrides[FolderProgram];
    MString path = PlatformModulePath();
    int32_t cut = -1;
    for (int32_t i = 0; i < path.Length; i++) {
        char16_t c = path.Text[i];
        if (c == u'/' || c == u'\\' || c == u':') cut = i;
    }
    return cut < 0 ? path : Head(path, cut);
}

bool FolderExists(const MString& path) {
    MString folder = NormalisePath(path);
    if (folder.IsEmpty()) return false;
    return PlatformPathKind(folder) == PathFolder;
}

bool PathExists(const MString& path) {
    MString name = NormalisePath(path);
    if (name.IsEmpty()) return false;
    return PlatformPathKind(name) != PathMissing;
}

// The scan starts at the fourth character so that a drive prefix such as
// "C:\" is never tested or made; a native path keeps its first folder below
// the root for the same reason.
bool CreateFolders(const MString& path) {
    MString folder = NormalisePath(path);
    if (folder.IsEmpty()) return false;
    if (PlatformPathKind(folder) == PathFolder) return true;
    for (int32_t i = 3; i <= folder.Length; i++) {
        if (i < folder.Length && folder.Text[i] != PathSeparator) continue;
        MString part = Head(folder, i);
        if (PlatformPathKind(part) == PathFolder) continue;
        if (!PlatformCreateFolder(part)) return false;
        DebugOutput(MString(u"New folder created: \"") + part + "\"\n");
    }
    return true;
}

int64_t FileSizeOf(const MString& path) {
    int64_t size = PlatformSizeOfFile(NormalisePath(path));
    return size < 0 ? 0 : size;
}

static MString UserFolder(FolderKind kind, const MString& company, const MString& product) {
    MString base = Overrides[kind].IsEmpty() ? PlatformUserFolder(kind) : Overrides[kind];
    if (base.IsEmpty()) return MString();
    MString folder = JoinPath(JoinPath(NormalisePath(base), company), product);
    if (!CreateFolders(folder)) return MString();
    return folder;
}

MString AppDataFolder(const MString& company, const MString& product) {
    return UserFolder(FolderAppData, company, product);
}

MString DocumentsFolder(const MString& company, const MString& product) {
    return UserFolder(FolderDocuments, company, product);
}
