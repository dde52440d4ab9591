#pragma once

#include "machines/linux/applesmc/SMCKeySource.h"
#include "smc/SMCDriver.h"
#include "smc/SMCParamBlock.h"

#include <memory>

namespace kelvinbar {

/// Serves the SMC driver protocol from a key source, so that SMCBridge can read an SMC that is not reached
/// through Apple's driver. Answers the commands that read keys; anything else is a bad command. Errors are
/// returned as a real SMC returns them, in the result byte of the block.
///
/// "#KEY" is the number of keys in the source. Not thread-safe: the bridge serialises its calls.
class KeySourceDriver final : public SMCDriver {
  public:
    explicit KeySourceDriver(std::unique_ptr<SMCKeySource> source);

    /// Finds a service when the source is present.
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
