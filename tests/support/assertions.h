#pragma once

#include <gtest/gtest.h>

#include "common/assertion.h"

namespace glimmer::test {

/// The call finds a programming error, with that text and in that unit.
template <class Call>
void expectAssertion(const char* condition, const char* unit, Call call) {
    try {
        call();
        ADD_FAILURE() << "no assertion: " << condition;
    } catch (const AssertionFailure& failure) {
        EXPECT_STREQ(failure.condition, condition);
        EXPECT_STREQ(failure.unit, unit);
    }
}

}  // namespace glimmer::test
