// switch_victim SIGN: switches HTTP/1.1 off, writes the file SIGN and stays like that until it is killed.

#include <windows.h>

#include <cstdio>

#include "upload/http/http11_switches.h"

int wmain(int count, wchar_t** arguments) {
    glimmer::Http11Switches switches;
    if (count < 2 || !switches.switchOff(false)) return 1;
    std::FILE* const sign = _wfopen(arguments[1], L"wb");
    if (sign == nullptr || std::fclose(sign) != 0) return 1;
    Sleep(INFINITE);
    return 0;
}
