// Another program, for the tests of the saver.
//   saver_helper hold FILE SIGN      keeps FILE open for itself alone and writes SIGN when it has it; until it is
//   killed saver_helper clipboard FOLDER    writes what is on the clipboard to FOLDER\dibv5, dib and png, then
//   FOLDER\done

#include <windows.h>

#include <cstdio>
#include <string>

namespace {

bool writeAll(const std::wstring& path, const void* data, size_t size) {
    std::FILE* file = _wfopen(path.c_str(), L"wb");
    if (file == nullptr) return false;
    const bool written = std::fwrite(data, 1, size, file) == size;
    return std::fclose(file) == 0 && written;
}

int hold(const wchar_t* path, const wchar_t* sign) {
    const HANDLE file = CreateFileW(path, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE || !writeAll(sign, "", 0)) return 1;
    Sleep(INFINITE);
    return 0;
}

int readClipboard(const std::wstring& folder) {
    const struct {
        UINT format;
        const wchar_t* name;
    } formats[] = {{CF_DIBV5, L"dibv5"}, {CF_DIB, L"dib"}, {RegisterClipboardFormatW(L"PNG"), L"png"}};
    if (OpenClipboard(nullptr) == FALSE) return 1;
    for (const auto& [format, name] : formats) {
        const HANDLE memory = GetClipboardData(format);
        if (memory == nullptr) continue;
        writeAll(folder + L"\\" + name, GlobalLock(memory), GlobalSize(memory));
        GlobalUnlock(memory);
    }
    CloseClipboard();
    return writeAll(folder + L"\\done", "", 0) ? 0 : 1;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    const std::wstring verb = count > 1 ? arguments[1] : L"";
    if (verb == L"hold" && count == 4) return hold(arguments[2], arguments[3]);
    if (verb == L"clipboard" && count == 3) return readClipboard(arguments[2]);
    return 2;
}
