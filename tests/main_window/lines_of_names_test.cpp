#include "main_window/lines_of_names.h"

#include <gtest/gtest.h>

namespace glimmer {
namespace {

TEST(LinesOfNames, AreTenAtMostAndSayHowManyMoreThereAre) {
    std::vector<std::string> names(10, "x");
    std::string ten;
    for (int i = 0; i < 10; ++i) ten += ", x";
    EXPECT_EQ(linesOf(names, ", "), ten);
    names.insert(names.end(), {"y", "z"});
    EXPECT_EQ(linesOf(names, ", "), ten + ", and 2 more");
}

}  // namespace
}  // namespace glimmer
