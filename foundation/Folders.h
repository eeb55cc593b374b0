#pragma once
// The program's folders: where it runs from, where each user's settings and
// documents go, and the creating and testing of folders.
//
// Paths the system builds use one separator: "\" in the Windows build and
// "/" in the native build (PathSeparator). The helpers here accept either
// separator in what they are given and turn it into the build's own.

#include "foundation/MString.h"

#include <cstdint>

extern const char16_t PathSeparator; // '\\' on Windows, '/' natively

// Every "/" and "\" of path turned into PathSeparator, and one trailing
// separator removed (the root "/" of the native build stays).
MString NormalisePath(MString path);
// folder + PathSeparator + name.
MString JoinPath(const MString& folder, const MString& name);

// The folder of the running program, without a trailing separator: the
// module's path cut at its last "/", "\" or ":". A path without any of them
// stays whole.
MString ProgramFolder();
// True when the path names a folder.
bool FolderExists(const MString& path);
// True when the path names anything: a file, a folder or another object.
bool PathExists(const MString& path);
// Makes the folder and all its missing parents, writing one debug line for
// each folder made. True when the folder exists afterwards; an empty path
// fails.
bool CreateFolders(const MString& path);
// Deletes the file; false when it could not be deleted. Defined in the
// platform files.
bool DeleteFileAt(const MString& path);
// The size of the file in bytes, 0 when it cannot be opened.
int64_t FileSizeOf(const MString& path);
// The user's application data folder and documents folder, each followed by
// company and product, created if missing. Empty on any failure.
MString AppDataFolder(const MString& company, const MString& product);
MString DocumentsFolder(const MString& company, const MString& product);

// ---- Overrides for tests. While one is set (not empty) the program folder
// or the user's base folder of that kind is taken from it instead of from the
// system; company and product are still appended and created.
enum FolderKind { FolderProgram = 0, FolderAppData = 1, FolderDocuments = 2 };
void SetFolderOverride(FolderKind kind, const MString& path);

// ---- The platform half, in Folders_win.cpp and Folders_posix.cpp.
MString PlatformModulePath();                // the running program's file
MString PlatformUserFolder(FolderKind kind); // AppData or Documents; empty on failure
enum PathKind { PathMissing = 0, PathFile = 1, PathFolder = 2 };
PathKind PlatformPathKind(const MString& path);  // what the path names now
bool PlatformCreateFolder(const MString& path);  // one folder, parent must exist
int64_t PlatformSizeOfFile(const MString& path); // -1 when it cannot be opened
