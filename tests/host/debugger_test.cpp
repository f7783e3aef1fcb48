#include <gtest/gtest.h>
#include <windows.h>

#include "common/debug_channel.h"
#include "host/program/miscutils.h"
#include "support/not_copied.h"

namespace glimmer {
namespace {

/// What the next debug output of any process consists of: the protocol of the programs that show it.
class DebugViewer : test::NotCopied {
public:
    DebugViewer()
        : ready_(CreateEventW(nullptr, FALSE, TRUE, L"DBWIN_BUFFER_READY")),
          filled_(CreateEventW(nullptr, FALSE, FALSE, L"DBWIN_DATA_READY")),
          mapping_(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, bufferSize, L"DBWIN_BUFFER")),
          buffer_(static_cast<const char*>(MapViewOfFile(mapping_, FILE_MAP_READ, 0, 0, bufferSize))) {}
    ~DebugViewer() {
        UnmapViewOfFile(buffer_);
        for (HANDLE handle : {mapping_, filled_, ready_}) CloseHandle(handle);
    }

    /// The sender's process and text are in the buffer when the sending call returns.
    [[nodiscard]] bool filled() const { return WaitForSingleObject(filled_, 0) == WAIT_OBJECT_0; }
    [[nodiscard]] DWORD sender() const { return *reinterpret_cast<const DWORD*>(buffer_); }
    [[nodiscard]] std::string text() const { return buffer_ + sizeof(DWORD); }

private:
    static constexpr DWORD bufferSize = 4096;
    HANDLE ready_;
    HANDLE filled_;
    HANDLE mapping_;
    const char* buffer_;
};

TEST(Debugger, GetsRemarksOnceTheSystemIsConnected) {
    DebugViewer viewer;
    const DebugChannel before = setDebugChannel({});
    debugRemark("to nobody");
    EXPECT_FALSE(viewer.filled());
    connectSystem();
    debugRemark("Reached Max Page Number (256).\n");
    ASSERT_TRUE(viewer.filled());
    EXPECT_EQ(viewer.sender(), GetCurrentProcessId());
    EXPECT_EQ(viewer.text(), "Reached Max Page Number (256).\n");
    setDebugChannel(before);
}

}  // namespace
}  // namespace glimmer
