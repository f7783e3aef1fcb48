#include "upload/answers/xml_answer.h"

#include <windows.h>
// After it.
#include <objidl.h>
#include <xmllite.h>

#include <memory>

#include "common/system_library.h"
#include "common/text.h"
#include "common/wide_text.h"
#include "upload/answers/xml_text.h"

// Not every reader that calls itself the system's is as strict as Windows' own: some accept an end tag of another name
// and repeat empty nodes for ever where the input ends inside of one. What the list of elements relies on is checked
// here.

namespace glimmer {

namespace {

Failure refused() { return {"The server's answer is not XML, or too much of it."}; }

struct Releaser {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <class Interface>
using ComPointer = std::unique_ptr<Interface, Releaser>;

ComPointer<IStream> streamOf(std::string_view bytes) {
    IStream* made = nullptr;
    if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, &made))) return nullptr;
    ComPointer<IStream> stream(made);
    ULONG written = 0;
    const HRESULT result = stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), &written);
    if (FAILED(result) || written != bytes.size() || FAILED(stream->Seek({}, STREAM_SEEK_SET, nullptr))) return nullptr;
    return stream;
}

/// A reader at the start of `stream`; null when there is none, or none that refuses document types.
ComPointer<IXmlReader> readerOf(IStream* stream) {
    static const auto create = systemFunction<decltype(&CreateXmlReader)>(L"xmllite.dll", "CreateXmlReader");
    void* made = nullptr;
    if (create == nullptr || FAILED(create(__uuidof(IXmlReader), &made, nullptr))) return nullptr;
    ComPointer<IXmlReader> reader(static_cast<IXmlReader*>(made));
    if (FAILED(reader->SetProperty(XmlReaderProperty_DtdProcessing, DtdProcessing_Prohibit))) return nullptr;
    if (FAILED(reader->SetProperty(XmlReaderProperty_XmlResolver, 0))) return nullptr;
    return SUCCEEDED(reader->SetInput(stream)) ? std::move(reader) : nullptr;
}

/// One reading.
class Listing {
public:
    Listing(IXmlReader& reader, const AnswerLimits& limits) : reader_(reader), limits_(limits) {}

    Result<Answer> read();

private:
    bool addNode(XmlNodeType type);
    bool beginElement();
    bool addAttributes(AnswerElement& element);
    bool addText();
    bool endElement();
    bool stuck(XmlNodeType type);
    bool name(std::string& into);
    bool value(std::string& into);

    IXmlReader& reader_;
    const AnswerLimits limits_;
    Answer answer_;
    std::vector<size_t> open_;  ///< the elements around the place, the outermost first
    size_t attributes_ = 0;
    XmlNodeType lastType_ = XmlNodeType_None;
    UINT lastLine_ = 0;
    UINT lastColumn_ = 0;
};

Result<Answer> Listing::read() {
    // What stands behind the outermost element is not looked at.
    while (answer_.elements.empty() || !open_.empty()) {
        XmlNodeType type = XmlNodeType_None;
        if (reader_.Read(&type) != S_OK || stuck(type) || !addNode(type)) return refused();
    }
    for (AnswerElement& element : answer_.elements) {
        std::optional<std::string> text = fromAsciiXml(trimmed(element.text));
        if (!text) return refused();
        element.text = std::move(*text);
    }
    return std::move(answer_);
}

/// Whether this node has the kind and the place of the last one.
bool Listing::stuck(XmlNodeType type) {
    UINT line = 0;
    UINT column = 0;
    reader_.GetLineNumber(&line);
    reader_.GetLinePosition(&column);
    const bool same = type == lastType_ && line == lastLine_ && column == lastColumn_;
    lastType_ = type;
    lastLine_ = line;
    lastColumn_ = column;
    return same;
}

bool Listing::addNode(XmlNodeType type) {
    switch (type) {
        case XmlNodeType_Element:
            return beginElement();
        case XmlNodeType_EndElement:
            return endElement();
        case XmlNodeType_Text:
        case XmlNodeType_CDATA:
            return !open_.empty() && addText();
        case XmlNodeType_Whitespace:
            return open_.empty() || addText();
        case XmlNodeType_DocumentType:
            return false;
        default:
            return true;
    }
}

bool Listing::beginElement() {
    if (open_.size() >= static_cast<size_t>(limits_.depth) || answer_.elements.size() >= limits_.elements) return false;
    // Asked here, since at an attribute the answer is another one.
    const bool isEmpty = reader_.IsEmptyElement() != FALSE;
    AnswerElement element;
    if (!name(element.name) || !addAttributes(element)) return false;
    if (!isEmpty) open_.push_back(answer_.elements.size());
    answer_.elements.push_back(std::move(element));
    return true;
}

bool Listing::addAttributes(AnswerElement& element) {
    HRESULT result = reader_.MoveToFirstAttribute();
    for (; result == S_OK; result = reader_.MoveToNextAttribute()) {
        if (++attributes_ > limits_.elements) return false;
        auto& [attributeName, text] = element.attributes.emplace_back();
        if (!name(attributeName) || !value(text)) return false;
        std::optional<std::string> original = fromAsciiXml(text);
        if (!original) return false;
        text = std::move(*original);
    }
    return SUCCEEDED(result) && SUCCEEDED(reader_.MoveToElement());
}

bool Listing::addText() { return value(answer_.elements[open_.back()].text); }

bool Listing::endElement() {
    std::string ended;
    if (open_.empty() || !name(ended) || answer_.elements[open_.back()].name != ended) return false;
    open_.pop_back();
    return true;
}

bool Listing::name(std::string& into) {
    const wchar_t* text = nullptr;
    UINT length = 0;
    if (FAILED(reader_.GetQualifiedName(&text, &length)) || text == nullptr || length == 0) return false;
    into = fromWide(std::wstring_view(text, length));
    return true;
}

/// Adds to `into`.
bool Listing::value(std::string& into) {
    const wchar_t* text = nullptr;
    UINT length = 0;
    if (FAILED(reader_.GetValue(&text, &length)) || (text == nullptr && length > 0)) return false;
    if (length > 0) into += fromWide(std::wstring_view(text, length));
    return true;
}

}  // namespace

Result<Answer> readXmlAnswer(std::string_view bytes, const AnswerLimits& limits) {
    if (bytes.size() > limits.bytes) return Failure{"The server's answer is too long."};
    const std::optional<std::string> text = asciiXml(bytes);
    if (!text) return refused();
    const ComPointer<IStream> stream = streamOf(*text);
    const ComPointer<IXmlReader> reader = stream ? readerOf(stream.get()) : nullptr;
    if (!reader) return Failure{"The system's reader of XML cannot be used."};
    return Listing(*reader, limits).read();
}

}  // namespace glimmer
