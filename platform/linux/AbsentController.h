#pragma once

#include "smc/IORegistry.h"
#include "smc/SMCDriver.h"

namespace kelvinbar {

/// The driver of a machine whose controller cannot be reached: there is no service to find.
class AbsentSMCDriver final : public SMCDriver {
  public:
    std::optional<Service> findService(std::string_view /*className*/) override { return std::nullopt; }

    OpenResult open(Service /*service*/) override { return {.code = kernNotFound, .connection = 0}; }

    ReturnCode callStructMethod(Connection /*connection*/, std::uint32_t /*selector*/,
                                std::span<const std::byte> /*input*/, std::span<std::byte> /*output*/,
                                std::size_t& /*outputSize*/) override {
        return kernInvalidArgument;
    }

    void close(Connection /*connection*/) override {}
};

/// A registry that no walk can be begun on.
class AbsentIORegistry final : public IORegistry {
  public:
    std::unique_ptr<IORegistryIterator> iterateRecursively(std::string_view /*plane*/) override {
        return nullptr;
    }
};

} // namespace kelvinbar
