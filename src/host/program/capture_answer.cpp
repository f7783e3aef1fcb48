#include "host/program/capture_answer.h"

#include <windows.h>

#include <iterator>
#include <vector>

#include "common/wide_text.h"
#include "host/program/single_instance.h"

namespace glimmer {

namespace {

/// Lines of arguments; the last one names the events.
constexpr char separator = '\n';

std::wstring eventName(const std::string& name, int outcome) {
    return toWide("ZK2_APPLICATION_CAPTURE_" + name + "_" + std::to_string(outcome));
}

/// Whether the name is one of ours: it becomes a part of the name of an object.
bool isName(const std::string& name) {
    constexpr size_t longest = 20;
    return !name.empty() && name.size() <= longest && name.find_first_not_of("0123456789_") == std::string::npos;
}

}  // namespace

AwaitedAnswer::AwaitedAnswer() : name_(std::to_string(GetCurrentProcessId()) + "_" + std::to_string(GetTickCount())) {
    for (int i = 0; i < captureOutcomes; ++i)
        answers_[i] = CreateEventW(nullptr, TRUE, FALSE, eventName(name_, i).c_str());
}

AwaitedAnswer::~AwaitedAnswer() {
    for (void* answer : answers_)
        if (answer != nullptr) CloseHandle(answer);
}

std::string AwaitedAnswer::text(const CaptureRequest& request) const {
    std::string text;
    for (const std::string& argument : captureArguments(request)) text += argument + separator;
    return text + name_;
}

CaptureOutcome AwaitedAnswer::wait() const {
    std::vector<HANDLE> objects;
    for (void* answer : answers_) {
        if (answer == nullptr) return CaptureOutcome::Failed;
        objects.push_back(answer);
    }
    HANDLE const instance = OpenProcess(SYNCHRONIZE, FALSE, instanceProcess());
    if (instance != nullptr) objects.push_back(instance);
    const DWORD result = WaitForMultipleObjects(static_cast<DWORD>(objects.size()), objects.data(), FALSE, INFINITE);
    if (instance != nullptr) CloseHandle(instance);
    return result < static_cast<DWORD>(captureOutcomes) ? static_cast<CaptureOutcome>(result) : CaptureOutcome::Failed;
}

std::optional<HandedCapture> handedCapture(const std::string& text) {
    std::vector<std::string> lines;
    for (size_t at = 0; at <= text.size();) {
        const size_t end = std::min(text.find(separator, at), text.size());
        lines.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    constexpr size_t fewest = 3;
    if (lines.size() < fewest || !isName(lines.back())) return std::nullopt;
    HandedCapture handed;
    handed.answerTo = lines.back();
    lines.pop_back();
    const auto request = readCaptureArguments(lines);
    if (!request || !*request) return std::nullopt;
    handed.request = **request;
    return handed;
}

void answerCapture(const std::string& answerTo, CaptureOutcome outcome) {
    HANDLE event = OpenEventW(EVENT_MODIFY_STATE, FALSE, eventName(answerTo, static_cast<int>(outcome)).c_str());
    if (event == nullptr) return;  // the start has ended
    SetEvent(event);
    CloseHandle(event);
}

}  // namespace glimmer
