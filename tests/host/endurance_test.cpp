// A long day of a host: what a session took, it gives back.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <vector>

#include "support/windows/host_fixture.h"
#include "support/windows/system_objects.h"

namespace glimmer::test {
namespace {

/// One session each, in their order and in one process: `counts` is what the process held after each.
class Endurance : public HostTest, public testing::WithParamInterface<size_t> {
protected:
    static inline std::vector<SystemObjects> counts;
};

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

TEST_P(Endurance, ASessionOfAHundredCapturesLeavesNothing) {
    session(host_);
    HostedLibrary::takeNotices();
    EXPECT_THAT(takeDialogs(), testing::IsEmpty());
    counts.push_back(countObjects());
    const SystemObjects& now = counts.back();
    std::cout << "after session " << GetParam() << ": " << now << std::endl;
    if (counts.size() <= 2) return;  // the first ones fill what is kept for good
    const SystemObjects& second = counts[1];
    EXPECT_LE(now.handles, second.handles + 3);
    EXPECT_LE(now.gdi, second.gdi + 3);
    EXPECT_LE(now.user, second.user + 3);
    // The heap's own room for pieces comes and goes.
    EXPECT_LE(now.privateBytes, second.privateBytes + (2U << 20U));
}

INSTANTIATE_TEST_SUITE_P(Sessions, Endurance, testing::Range<size_t>(1, 6));

}  // namespace
}  // namespace glimmer::test
