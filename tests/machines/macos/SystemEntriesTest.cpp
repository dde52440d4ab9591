#include "machines/macos/SystemEntries.h"

#include <cstring>
#include <map>
#include <sys/sysctl.h>

#include <gtest/gtest.h>

namespace {

/// Fake sysctl entries.
struct Kernel {
    std::map<std::string, std::string> entries;
    bool refusesValues = false;
    std::size_t missingBytes = 0; ///< by which a value is shorter than announced
};

Kernel& kernel() {
    static Kernel one;
    return one;
}

} // namespace

extern "C" int sysctlbyname(const char* name, void* value, size_t* size, void* newValue, size_t newSize) {
    EXPECT_EQ(newValue, nullptr);
    EXPECT_EQ(newSize, 0U);
    const auto found = kernel().entries.find(name);
    if (found == kernel().entries.end()) return -1;
    if (value == nullptr) {
        *size = found->second.size();
        return 0;
    }
    if (kernel().refusesValues || *size < found->second.size()) return -1;
    *size = found->second.size() - kernel().missingBytes;
    std::memcpy(value, found->second.data(), *size);
    return 0;
}

namespace kelvinbar::system_entries_test {

namespace {

using namespace std::string_literals;

class SystemEntries : public testing::Test {
  protected:
    SystemEntries() { kernel() = {.entries = {{"hw.model", "Model1,1\0"s}, {"empty", ""}}}; }
};

TEST_F(SystemEntries, GivesTheBytesWithTheirEnd) { EXPECT_EQ(systemEntry("hw.model"), "Model1,1\0"s); }

TEST_F(SystemEntries, HasNoneOfAnUnknownName) { EXPECT_EQ(systemEntry("hw.none"), std::nullopt); }

TEST_F(SystemEntries, AnEmptyEntryIsEmpty) { EXPECT_EQ(systemEntry("empty"), ""); }

TEST_F(SystemEntries, AValueThatIsRefusedIsNone) {
    kernel().refusesValues = true;
    EXPECT_EQ(systemEntry("hw.model"), std::nullopt);
}

TEST_F(SystemEntries, AValueThatIsShorterThanAnnouncedEndsInZeros) {
    kernel().missingBytes = 3;
    EXPECT_EQ(systemEntry("hw.model"), "Model1\0\0\0"s);
}

TEST_F(SystemEntries, ANameIsTakenAsFarAsItGoes) {
    EXPECT_EQ(systemEntry(std::string_view("hw.modelled").substr(0, 8)), "Model1,1\0"s);
}

} // namespace
} // namespace kelvinbar::system_entries_test
