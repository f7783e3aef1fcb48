// A long day of a host: what a session took, it gives back.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <vector>

#include "support/windows/host_fixture.h"
#include "support/windows/system_objects.h"

namespace glimmer::test {
namespace {

class Endurance : public HostTest {};

/// A hundred small captures of every way in, then the end of the session.
void session(const HostedLibrary& host) {
    constexpr int captures = 100;
    for (int i = 0; i < captures; ++i) {
        if (i % 10 == 9) {
            HDC context = nullptr;
            ASSERT_EQ(host.hostExecute(L"getBitmapDC", &context, 40, 30), 1);
            PatBlt(context, 0, 0, 40, 30, WHITENESS);
            host.hostFinishCapture(L"http://a/", L"Lent", GLIMMERPAD_LOAD + GLIMMERPAD_SILENT);
        } else {
            const int32_t action = i % 5 == 0 ? GLIMMERPAD_ENCODE_IMAGE : GLIMMERPAD_LOAD;
            host.capture(pngOf(patternPicture(40, 30, static_cast<uint32_t>(i))), action);
        }
        if (i % 25 == 0) pump();  // a host's loop turns now and then
    }
    EXPECT_TRUE(host.resumeAvailable());
    host.hostShutdown();
    pump();
    EXPECT_FALSE(host.resumeAvailable());
}

TEST_F(Endurance, FiveSessionsOfAHundredCapturesLeaveNothing) {
    constexpr int sessions = 5;
    std::vector<SystemObjects> after;
    for (int i = 0; i < sessions; ++i) {
        session(host_);
        if (HasFatalFailure()) return;
        after.push_back(countObjects());
        HostedLibrary::takeNotices();
        std::cout << "after session " << i + 1 << ": " << after.back() << std::endl;
    }
    EXPECT_THAT(takeDialogs(), testing::IsEmpty());
    const SystemObjects& second = after[1];
    for (size_t i = 2; i < after.size(); ++i) {
        EXPECT_LE(after[i].handles, second.handles + 3) << "session " << i + 1;
        EXPECT_LE(after[i].gdi, second.gdi + 3) << "session " << i + 1;
        EXPECT_LE(after[i].user, second.user + 3) << "session " << i + 1;
        // The heap's own room for pieces comes and goes.
        EXPECT_LE(after[i].privateBytes, second.privateBytes + (2U << 20U)) << "session " << i + 1;
    }
}

}  // namespace
}  // namespace glimmer::test
