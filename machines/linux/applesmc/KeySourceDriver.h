#pragma once

#include "machines/linux/applesmc/SMCKeySource.h"
#include "smc/SMCDriver.h"
#include "smc/SMCParamBlock.h"

#include <memory>

namespace kelvinbar {

/// Speaks the driver protocol for a controller whose keys are reached by another interface than its driver's
/// own. "#KEY" is the number of keys in the source.
class KeySourceDriver final : public SMCDriver {
  public:
    explicit KeySourceDriver(std::unique_ptr<SMCKeySource> source);

    std::optional<Service> findService(std::string_view className) override;
    OpenResult open(Service service) override;
    ReturnCode callStructMethod(Connection connection, std::uint32_t selector,
                                std::span<const std::byte> input, std::span<std::byte> output,
                                std::size_t& outputSize) override;

    void close(Connection /*connection*/) override {}

  private:
    [[nodiscard]] SMCParamBlock answer(const SMCParamBlock& question);
    [[nodiscard]] SMCParamBlock keyAtIndex(std::uint32_t index);
    [[nodiscard]] SMCParamBlock keyInfo(std::uint32_t code);
    [[nodiscard]] SMCParamBlock keyBytes(std::uint32_t code, std::uint32_t size);

    std::unique_ptr<SMCKeySource> source_;
};

} // namespace kelvinbar
