// The main function of every test that is a host of the library.

#include <gtest/gtest.h>

#include "support/windows/test_account.h"
#include "support/windows/watchdog.h"

int main(int argc, char** argv) {
    glimmer::test::useOwnFolders();
    testing::InitGoogleTest(&argc, argv);
    constexpr unsigned longestTest = 240;  // seconds; on a quiet machine none takes half a minute
    glimmer::test::startWatchdog(longestTest);
    return RUN_ALL_TESTS();
}
