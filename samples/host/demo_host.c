/* demo_host.exe [picture.png]: what a browser add-on does, in plain C. Loads the library, hands over a page capture and
 * prints where it was saved. */
#include <stdio.h>
#include <stdlib.h>
#include <windows.h>
/* After windows.h, which it needs. */
#include <shlobj.h>

#include "glimmerpad.h"

/* Writes in any language, which the C library's own functions do not: UTF-16 to a console, UTF-8 to a file or a pipe.
 */
static void print(DWORD where, const wchar_t* text) {
    const HANDLE output = GetStdHandle(where);
    DWORD mode, written;
    if (GetConsoleMode(output, &mode)) {
        WriteConsoleW(output, text, (DWORD)wcslen(text), &written, NULL);
        return;
    }
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, NULL, 0, NULL, NULL); /* with the zero at the end */
    char* bytes = size > 0 ? malloc((size_t)size) : NULL;
    if (bytes == NULL) return;
    WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes, size, NULL, NULL);
    WriteFile(output, bytes, (DWORD)size - 1, &written, NULL);
    free(bytes);
}

static void GLIMMERPAD_NOTIFY notify(const char* name, const wchar_t* value) {
    wchar_t wide_name[64] = L"";
    MultiByteToWideChar(CP_UTF8, 0, name, -1, wide_name, 64);
    print(STD_ERROR_HANDLE, L"host is asked: ");
    print(STD_ERROR_HANDLE, wide_name);
    print(STD_ERROR_HANDLE, L" ");
    print(STD_ERROR_HANDLE, value);
    print(STD_ERROR_HANDLE, L"\n");
}

/* The library beside this program, by its full path: a bare name would be looked for in the current folder, too. */
static HMODULE load_library(void) {
    static const wchar_t name[] = L"glimmerpad.dll";
    wchar_t path[MAX_PATH + sizeof name / sizeof *name];
    const DWORD length = GetModuleFileNameW(NULL, path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return NULL;
    wchar_t* last = wcsrchr(path, L'\\');
    wcscpy(last != NULL ? last + 1 : path, name);
    return LoadLibraryW(path);
}

static void* read_file(const wchar_t* path) {
    FILE* file = _wfopen(path, L"rb");
    if (file == NULL) return NULL;
    fseek(file, 0, SEEK_END);
    const long length = ftell(file);
    rewind(file);
    void* data = length > 0 ? malloc((size_t)length) : NULL;
    if (data != NULL && fread(data, 1, (size_t)length, file) != (size_t)length) {
        free(data);
        data = NULL;
    }
    fclose(file);
    return data;
}

/* The newest PNG file in the user's pictures folder, where captures are saved at first, if it is newer than `since`. */
static int newest_picture(const FILETIME* since, wchar_t path[MAX_PATH]) {
    wchar_t folder[MAX_PATH], pattern[MAX_PATH];
    WIN32_FIND_DATAW entry;
    FILETIME newest = *since;
    int found = 0;
    if (FAILED(SHGetFolderPathW(NULL, CSIDL_MYPICTURES, NULL, SHGFP_TYPE_CURRENT, folder))) return 0;
    _snwprintf(pattern, MAX_PATH, L"%ls\\*.png", folder);
    HANDLE search = FindFirstFileW(pattern, &entry);
    if (search == INVALID_HANDLE_VALUE) return 0;
    do {
        if (CompareFileTime(&entry.ftLastWriteTime, &newest) < 0) continue;
        newest = entry.ftLastWriteTime;
        _snwprintf(path, MAX_PATH, L"%ls\\%ls", folder, entry.cFileName);
        found = 1;
    } while (FindNextFileW(search, &entry));
    FindClose(search);
    return found;
}

static int fail(const char* text) {
    fprintf(stderr, "demo_host: %s\n", text);
    return 1;
}

int wmain(int count, wchar_t** arguments) {
    const wchar_t* picture = count > 1 ? arguments[1] : L"samples\\article-1280x1024.png";
    void* png = read_file(picture);
    if (png == NULL) return fail("the picture cannot be read");

    HMODULE library = load_library();
    if (library == NULL) return fail("glimmerpad.dll cannot be loaded");
    GlimmerpadInitLibrary init_library = (GlimmerpadInitLibrary)(void (*)(void))GetProcAddress(library, "initLibrary");
    GlimmerpadInterface glimmerpad = {.version = GLIMMERPAD_INTERFACE_VERSION};
    if (init_library == NULL || !init_library(&glimmerpad, sizeof glimmerpad)) {
        return fail("the library speaks another version");
    }

    FILETIME before;
    GetSystemTimeAsFileTime(&before);
    const GlimmerpadHostRecord host = {notify};
    const GlimmerpadHostInit host_init = GLIMMERPAD_ENTRY(GlimmerpadHostInit, glimmerpad.hostInit);
    const GlimmerpadHostCapture host_capture = GLIMMERPAD_ENTRY(GlimmerpadHostCapture, glimmerpad.hostCapture);
    const GlimmerpadHostShutdown host_shutdown = GLIMMERPAD_ENTRY(GlimmerpadHostShutdown, glimmerpad.hostShutdown);
    host_init(GLIMMERPAD_CHROME, &host);
    host_capture(L"http://example.com/article.html", L"An article with pictures", L"", png, GLIMMERPAD_SAVE_QUIETLY, 0,
                 0);
    host_shutdown();
    free(png);

    wchar_t path[MAX_PATH];
    if (!newest_picture(&before, path)) return fail("no picture was saved");
    print(STD_OUTPUT_HANDLE, path);
    print(STD_OUTPUT_HANDLE, L"\n");
    return 0;
}
