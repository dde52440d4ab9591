#pragma once

#include "smc/SMCDriver.h"

namespace kelvinbar {

/// The driver of the controller behind I/O Kit.
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
