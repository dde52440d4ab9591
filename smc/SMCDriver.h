#pragma once

#include "smc/ReturnCode.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace kelvinbar {

/// Port: the kernel driver of the controller. Called from any thread, but never by two at once: SMCConnection
/// holds its lock for every call.
class SMCDriver {
  public:
    using Service = std::uint32_t;
    /// A handle; 0 means none.
    using Connection = std::uint32_t;

    struct OpenResult {
        ReturnCode code = kernSuccess;
        Connection connection = 0; ///< must be closed unless 0, even if `code` is a failure
    };

    virtual ~SMCDriver() = default;

    /// The first service of the class, or no value if there is none. The caller passes it to `open`, which
    /// releases it.
    virtual std::optional<Service> findService(std::string_view className) = 0;

    /// Opens a connection of type 0 for this process. Releases `service` in any case.
    virtual OpenResult open(Service service) = 0;

    /// Calls the method `selector` with `input` and fills `output`. `outputSize` is the capacity of `output`
    /// on entry and the number of returned bytes on exit.
    virtual ReturnCode callStructMethod(Connection connection, std::uint32_t selector,
                                        std::span<const std::byte> input, std::span<std::byte> output,
                                        std::size_t& outputSize) = 0;

    virtual void close(Connection connection) = 0;
};

} // namespace kelvinbar
