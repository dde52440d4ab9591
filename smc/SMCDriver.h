#pragma once

#include "smc/ReturnCode.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace kelvinbar {

/// Port: the driver through which the controller is reached. Calls are made one at a time, from any thread.
class SMCDriver {
  public:
    using Service = std::uint32_t;
    /// 0 is no connection.
    using Connection = std::uint32_t;

    struct OpenResult {
        ReturnCode code = kernSuccess;
        Connection connection =
            0; ///< may be a handle even where `code` says failure; then it is to be closed
    };

    virtual ~SMCDriver() = default;

    /// The first service of that class, if there is one. It is to be handed to `open`.
    virtual std::optional<Service> findService(std::string_view className) = 0;

    /// Opens a connection of type 0 for this process, and releases `service` whatever the outcome.
    virtual OpenResult open(Service service) = 0;

    /// Calls the connection's method `selector` with `input`; fills `output` and sets `outputSize` to the
    /// bytes that came back (on entry: the room there is).
    virtual ReturnCode callStructMethod(Connection connection, std::uint32_t selector,
                                        std::span<const std::byte> input, std::span<std::byte> output,
                                        std::size_t& outputSize) = 0;

    virtual void close(Connection connection) = 0;
};

} // namespace kelvinbar
