#pragma once

#include "platform/replay/RecordedMachine.h"
#include "smc/SMCDriver.h"
#include "smc/SMCParamBlock.h"

#include <unordered_map>
#include <vector>

namespace kelvinbar {

/// A controller that answers from recorded keys: key by index in their order, information and bytes of a key,
/// and "#KEY" with their number.
class ReplayDriver final : public SMCDriver {
  public:
    /// `hasService` false makes a machine whose controller cannot be found.
    ReplayDriver(std::vector<RecordedKey> keys, bool hasService);

    std::optional<Service> findService(std::string_view className) override;
    OpenResult open(Service service) override;
    ReturnCode callStructMethod(Connection connection, std::uint32_t selector,
                                std::span<const std::byte> input, std::span<std::byte> output,
                                std::size_t& outputSize) override;

    void close(Connection /*connection*/) override {}

  private:
    [[nodiscard]] SMCParamBlock answer(const SMCParamBlock& question) const;
    [[nodiscard]] SMCParamBlock keyAtIndex(std::uint32_t index) const;
    [[nodiscard]] const RecordedKey* find(std::uint32_t code) const;

    std::vector<RecordedKey> keys_;
    std::unordered_map<std::uint32_t, std::size_t> places_;
    RecordedKey keyCount_;
    bool hasService_;
};

} // namespace kelvinbar
