#pragma once

#include <windows.h>

#include <memory>

#include "common/geometry.h"
#include "editor/labels/label_control.h"

struct IUnknown;
class ITextHost;

namespace glimmer {

/// Creates the system's text services, as `CreateTextServices` of msftedit.dll does.
using MakeTextServices = HRESULT(WINAPI*)(IUnknown* outer, ITextHost* host, IUnknown** services);

/// A rich edit without a window: the system's text services, whose host is an area of a picture. It is never active, so
/// it has neither caret nor selection.
class TextServices {
public:
    /// Null when the system has none. Without `make`: the one of the system.
    static std::unique_ptr<TextServices> create(MakeTextServices make = nullptr);
    ~TextServices();
    TextServices(const TextServices&) = delete;
    TextServices& operator=(const TextServices&) = delete;
    TextServices(TextServices&&) = delete;
    TextServices& operator=(TextServices&&) = delete;

    [[nodiscard]] RichEdit edit() const { return RichEdit(*services_); }
    /// Text is wrapped at that width, pixels.
    void setWidth(int32_t width);
    /// Draws the text from its top into the area's upper left corner, at the context's origin. The background is left.
    void draw(HDC dc, Size area) const;

private:
    class Host;
    TextServices(Host& host, ITextServices& services) : host_(&host), services_(&services) {}

    Host* host_;
    ITextServices* services_;
};

}  // namespace glimmer
