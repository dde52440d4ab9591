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

/// A Core Foundation object of a type that the program does not convert, such as a date.
struct OtherObject {
    friend bool operator==(const OtherObject&, const OtherObject&) = default;
};

/// The value of a CFNumber: integers of every size, those beyond 64 signed bits, and floating-point numbers.
using FakeNumber =
    std::variant<std::int64_t, std::int8_t, std::int16_t, std::int32_t, std::uint64_t, float, double>;

using FakeValue = std::variant<std::u16string, FakeNumber, bool, std::vector<std::uint8_t>, OtherObject>;

struct FakeRegistryEntry {
    std::string className;
    std::string name;
    std::vector<std::pair<FakeValue, FakeValue>> properties;
    kern_return_t propertiesCode = KERN_SUCCESS;
    bool givesNoDictionary = false;
    kern_return_t nameCode = KERN_SUCCESS; ///< returned for class and name
};

/// A fake I/O Kit in this process. Answers as a test tells it to, counts living objects, and aborts when an
/// object is released twice, used after its release, or used as another type.
class FakeIOKit {
  public:
    /// The instance behind the system's functions. Tests reset it.
    static FakeIOKit& shared();

    /// Resets everything; aborts when an object is still alive.
    void reset();

    /// The number of objects and ports that have not been released.
    [[nodiscard]] std::size_t liveCount() const { return live; }

    std::string serviceClass = "AppleSMC"; ///< empty for no service
    kern_return_t openCode = KERN_SUCCESS;
    bool opensHandle = true;
    std::function<kern_return_t(std::uint32_t selector, const void* input, std::size_t inputSize,
                                void* output, std::size_t* outputSize)>
        call;
    kern_return_t iteratorCode = KERN_SUCCESS;
    std::vector<FakeRegistryEntry> entries;
    std::optional<std::size_t> invalidAfter; ///< entries after which the iterator is invalid

    std::string openedPlane;
    IOOptionBits openedOptions = 0;
    std::size_t openScopes = 0; ///< autorelease scopes that are open now
    std::size_t scopes = 0;     ///< all that were ever opened

    std::size_t convertedValues = 0; ///< values of properties whose type was asked for

    std::size_t live = 0; ///< living objects, counted by the functions of the system
};

} // namespace kelvinbar::fakes
