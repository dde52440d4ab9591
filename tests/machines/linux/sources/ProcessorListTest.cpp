#include "machines/linux/sources/ProcessorList.h"

#include <cstdint>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::processor_list_test {

namespace {

using Processors = std::vector<std::uint32_t>;

TEST(ProcessorList, ASingleNumberIsOneProcessor) {
    EXPECT_EQ(processorsInList("0"), Processors{0});
    EXPECT_EQ(processorsInList("127"), Processors{127});
}

TEST(ProcessorList, ARangeHoldsBothItsEnds) {
    EXPECT_EQ(processorsInList("4-7"), (Processors{4, 5, 6, 7}));
    EXPECT_EQ(processorsInList("5-5"), Processors{5});
}

TEST(ProcessorList, RangesAndNumbersStandInTheOrderOfTheList) {
    EXPECT_EQ(processorsInList("0-3,8,10-11"), (Processors{0, 1, 2, 3, 8, 10, 11}));
    EXPECT_EQ(processorsInList("8,0-1"), (Processors{8, 0, 1}));
}

TEST(ProcessorList, AMalformedListHasNoProcessors) {
    for (const std::string_view list : {"",           ",",
                                        "-",          "-1",
                                        "0-",         "0,",
                                        ",0",         "0,,1",
                                        "3-1",        "1-2-3",
                                        "0-3;5",      " 0",
                                        "0-3\n",      "0 - 3",
                                        "+1",         "0x1",
                                        "a",          "0-a",
                                        "0-3,b",      "1.5",
                                        "4294967296", "99999999999999999999"}) {
        SCOPED_TRACE(list);
        EXPECT_EQ(processorsInList(list), Processors{});
    }
}

TEST(ProcessorList, ARangeBeyondAnyMachineIsNotFilled) {
    EXPECT_EQ(processorsInList("0-4294967295"), Processors{});
    EXPECT_EQ(processorsInList("4294967294-4294967295"), Processors{});
}

TEST(ProcessorList, ALargeMachineHasAllItsProcessors) {
    const auto processors = processorsInList("0-8191");
    ASSERT_EQ(processors.size(), 8192U);
    EXPECT_EQ(processors.front(), 0U);
    EXPECT_EQ(processors.back(), 8191U);
}

} // namespace
} // namespace kelvinbar::processor_list_test
