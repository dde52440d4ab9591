#pragma once

#include "tests/macos-runtime/system/FakeCocoa.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar {

/// A test of code that calls the system's frameworks. Fails if the code leaves anything behind: an object, an
/// observer, a monitor, a status item.
class CocoaTest : public testing::Test {
  protected:
    CocoaTest() { cocoa.start(); }

    void TearDown() override { EXPECT_THAT(cocoa.end(), testing::IsEmpty()); }

    fakes::FakeCocoa& cocoa = fakes::FakeCocoa::shared();
};

} // namespace kelvinbar
