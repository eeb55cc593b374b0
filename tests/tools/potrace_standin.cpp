// A stand-in for the external tracer in the Windows-side tests, built as
// potrace.exe. It is started the way the program starts potrace:
//
//   potrace.exe -c -q -o OUTPUT.eps INPUT.bmp
//
// and writes beside itself "arguments.txt" (its whole command line on the
// first line, then each argument on a line of its own, UTF-8) and
// "given.bmp" (a copy of the picture it was given), then a flat EPS file of
// three points, (0, 0), (100, 0) and (100, 50), to the output path. It exits
// with 0 when all of that worked.

#include <windows.h>

#include <cstdio>
#include <string>

namespace {

std::string Utf8(const wchar_t* text) {
    int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 1) return std::string();
    std::string bytes(size_t(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, &bytes[0], size, nullptr, nullptr);
    bytes.resize(size_t(size - 1));
    return bytes;
}

std::wstring Beside(const wchar_t* name) {
    wchar_t module[MAX_PATH];
    DWORD length = GetModuleFileNameW(nullptr, module, MAX_PATH);
    std::wstring path(module, length);
    size_t slash = path.find_last_of(L"\\/");
    return path.substr(0, slash == std::wstring::npos ? 0 : slash + 1) + name;
}

const char* const Eps = "%!PS-Adobe-3.0 EPSF-3.0\r\n"
                        "%%Cinderlane Centre N\r\n"
                        "%%Cinderlane Scale N\r\n"
                        "%%BoundingBox: -10 -10 110 60\r\n"
                        "%%EndComments\r\n"
                        "gsave\r\n"
                        "0 0 moveto\r\n"
                        "100 0 lineto\r\n"
                        "100 50 lineto\r\n"
                        "0 setgray\r\n"
                        "2 setlinewidth stroke\r\n"
                        "grestore\r\n"
                        "%%EOF\r\n";

} // namespace

int wmain(int argc, wchar_t** argv) {
    FILE* record = _wfopen(Beside(L"arguments.txt").c_str(), L"wb");
    if (!record) return 1;
    std::fprintf(record, "%s\n", Utf8(GetCommandLineW()).c_str());
    for (int i = 1; i < argc; i++)
        std::fprintf(record, "%s\n", Utf8(argv[i]).c_str());
    std::fclose(record);
    if (argc != 6) return 2;
    if (!CopyFileW(argv[5], Beside(L"given.bmp").c_str(), FALSE)) return 3;
    FILE* output = _wfopen(argv[4], L"wb");
    if (!output) return 4;
    std::fputs(Eps, output);
    std::fclose(output);
    return 0;
}
