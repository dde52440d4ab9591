#pragma once

#include "smc/SMCDriver.h"

namespace kelvinbar {

/// The SMC's kernel driver, called through I/O Kit. Class name, connection type and selector come from the
/// caller; this class only translates types and keeps reference counts: `open` releases the service it is
/// given, `close` closes the connection.
///
/// The driver expects the integers of the parameter block in host byte order. Return codes are those of the
/// kernel, unchanged.
class IOKitSMCDriver final : public SMCDriver {
  public:
    std::optional<Service> findService(std::string_view className) override;
    OpenResult open(Service service) override;
    ReturnCode callStructMethod(Connection connection, std::uint32_t selector,
                                std::span<const std::byte> input, std::span<std::byte> output,
                                std::size_t& outputSize) override;
    void close(Connection connection) override;
};

} // namespace kelvinbar
