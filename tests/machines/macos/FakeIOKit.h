#pragma once

#include <IOKit/IOKitLib.h>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace kelvinbar::fakes {

/// A Core Foundation object of a kind that the program does not know, such as a date.
struct OtherObject {
    friend bool operator==(const OtherObject&, const OtherObject&) = default;
};

/// What a number of some type of the system holds: whole numbers of every size, those beyond 64 signed bits,
/// and floating ones.
using FakeNumber =
    std::variant<std::int64_t, std::int8_t, std::int16_t, std::int32_t, std::uint64_t, float, double>;

using FakeValue = std::variant<std::u16string, FakeNumber, bool, std::vector<std::uint8_t>, OtherObject>;

struct FakeRegistryEntry {
    std::string className;
    std::string name;
    std::vector<std::pair<FakeValue, FakeValue>> properties;
    kern_return_t propertiesCode = KERN_SUCCESS;
    bool givesNoDictionary = false;
    kern_return_t nameCode = KERN_SUCCESS; ///< of class and name
};

/// I/O Kit in this process: answers as a test tells it, counts what is alive, and aborts when something is
/// released twice, used after its release, or taken for what it is not.
class FakeIOKit {
  public:
    /// The one that the functions of the system talk to. Tests reset it.
    static FakeIOKit& shared();

    /// Forgets all; aborts when something is still alive.
    void reset();

    /// Objects and ports that nobody has released.
    [[nodiscard]] std::size_t liveCount() const { return live; }

    std::string serviceClass = "AppleSMC"; ///< empty for no service
    kern_return_t openCode = KERN_SUCCESS;
    bool opensHandle = true;
    std::function<kern_return_t(std::uint32_t selector, const void* input, std::size_t inputSize,
                                void* output, std::size_t* outputSize)>
        call;
    kern_return_t iteratorCode = KERN_SUCCESS;
    std::vector<FakeRegistryEntry> entries;
    std::optional<std::size_t> invalidAfter; ///< entries after which the iterator gives none any more

    std::string openedPlane;
    IOOptionBits openedOptions = 0;
    std::size_t openScopes = 0; ///< autorelease scopes that are open now
    std::size_t scopes = 0;     ///< … that were ever opened

    std::size_t live = 0; ///< kept by the functions of the system
};

} // namespace kelvinbar::fakes
