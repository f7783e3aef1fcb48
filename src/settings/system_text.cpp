#include "settings/system_text.h"

#include <windows.h>

#include "common/text.h"
#include "settings/file_text.h"

namespace glimmer {

namespace {

std::string fromSystemCodePage(std::string_view bytes) {
    if (bytes.empty()) return {};
    const auto length = static_cast<int>(bytes.size());  // a settings file is far smaller than 2 GB
    const int units = MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, nullptr, 0);
    std::u16string text(static_cast<size_t>(units), u'\0');
    MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, reinterpret_cast<wchar_t*>(text.data()), units);
    return toUtf8(text);
}

}  // namespace

void useSystemCodePage() { setAnsiDecoder(fromSystemCodePage); }

}  // namespace glimmer
