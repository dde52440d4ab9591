#include "machines/linux/naming/ChipName.h"

#include "base/Text.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <system_error>

namespace kelvinbar {

namespace {

/// Takes numbers and separators off the front of a device's name.
class NameReader {
  public:
    explicit NameReader(std::string_view name) : rest_(name) {}

    std::optional<std::uint32_t> number(int base) {
        std::uint32_t value = 0;
        const auto [stop, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value, base);
        if (error != std::errc()) return std::nullopt;
        rest_.remove_prefix(static_cast<std::size_t>(stop - rest_.data()));
        return value;
    }

    bool take(std::string_view text) {
        if (!rest_.starts_with(text)) return false;
        rest_.remove_prefix(text.size());
        return true;
    }

    void skipTo(char separator) {
        const std::size_t place = rest_.find(separator);
        rest_.remove_prefix(place == std::string_view::npos ? rest_.size() : place);
    }

  private:
    std::string_view rest_;
};

std::string hexText(std::uint32_t number, int digits) {
    std::array<char, 16> text{};
    const int length = std::snprintf(text.data(), text.size(), "%0*x", digits, number);
    return {text.data(), static_cast<std::size_t>(length)};
}

std::string busAddress(std::string_view bus, std::uint32_t address, int digits) {
    return std::string(bus).append("-").append(hexText(address, digits));
}

std::string busAddress(std::string_view bus, std::uint32_t busNumber, std::uint32_t address, int digits) {
    return busAddress(std::string(bus).append("-").append(std::to_string(busNumber)), address, digits);
}

/// "0-0050". libsensors reserves bus 9191 for the old ISA bus.
std::optional<std::string> i2cAddress(std::string_view name) {
    constexpr std::uint32_t isaBus = 9191;
    NameReader reader(name);
    const auto bus = reader.number(10);
    if (!bus || !reader.take("-")) return std::nullopt;
    const auto address = reader.number(16);
    if (!address) return std::nullopt;
    return *bus == isaBus ? busAddress("isa", *address, 4) : busAddress("i2c", *bus, *address, 2);
}

/// "spi0.1"
std::optional<std::string> spiAddress(std::string_view name) {
    NameReader reader(name);
    if (!reader.take("spi")) return std::nullopt;
    const auto bus = reader.number(10);
    if (!bus || !reader.take(".")) return std::nullopt;
    const auto select = reader.number(10);
    if (!select) return std::nullopt;
    return busAddress("spi", *bus, *select, 1);
}

/// Four numbers in `base`, with these separators in between.
std::optional<std::array<std::uint32_t, 4>> fourNumbers(std::string_view name, int base,
                                                        std::array<std::string_view, 3> separators) {
    NameReader reader(name);
    std::array<std::uint32_t, 4> numbers{};
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        if (index > 0 && !reader.take(separators.at(index - 1))) return std::nullopt;
        const auto number = reader.number(base);
        if (!number) return std::nullopt;
        numbers.at(index) = *number;
    }
    return numbers;
}

/// "0000:01:00.0": domain, bus, slot and function in one number.
std::optional<std::string> pciAddress(std::string_view name) {
    const auto place = fourNumbers(name, 16, {":", ":", "."});
    if (!place) return std::nullopt;
    const auto [domain, bus, slot, function] = *place;
    return busAddress("pci", (domain << 16U) + (bus << 8U) + (slot << 3U) + function, 4);
}

/// "nct6775.656": after the dot, a port address or a counter.
std::string platformAddress(std::string_view name) {
    NameReader reader(name);
    reader.skipTo('.');
    const auto address = reader.take(".") ? reader.number(10) : std::nullopt;
    return busAddress("isa", address.value_or(0), 4);
}

/// "0003:1B1C:1C05.0004": bus, vendor, product and a counter.
std::optional<std::string> hidAddress(std::string_view name) {
    const auto place = fourNumbers(name, 16, {":", ":", "."});
    if (!place) return std::nullopt;
    return busAddress("hid", place->front(), place->back(), 1);
}

/// "r8169-0-300:00"
std::string mdioAddress(std::string_view name) {
    NameReader reader(name);
    reader.skipTo(':');
    const auto address = reader.take(":") ? reader.number(10) : std::nullopt;
    return busAddress("mdio", address.value_or(0), 1);
}

/// "1:0:0:0": host, channel, target and unit.
std::optional<std::string> scsiAddress(std::string_view name) {
    const auto place = fourNumbers(name, 10, {":", ":", ":"});
    if (!place) return std::nullopt;
    const auto [host, channel, target, unit] = *place;
    return busAddress("scsi", host, (channel << 8U) + (target << 4U) + unit, 1);
}

/// Kernels before 2.6.12 have no link to the bus; the form of the name identifies it.
std::optional<std::string> addressByForm(std::string_view name) {
    if (auto address = i2cAddress(name)) return address;
    if (auto address = spiAddress(name)) return address;
    if (auto address = pciAddress(name)) return address;
    return platformAddress(name);
}

std::optional<std::string> addressOf(const DeviceStep& step) {
    if (step.subsystem.empty()) return addressByForm(step.name);
    if (step.subsystem == "i2c") return i2cAddress(step.name);
    if (step.subsystem == "spi") return spiAddress(step.name);
    if (step.subsystem == "pci") return pciAddress(step.name);
    if (step.subsystem == "platform" || step.subsystem == "of_platform") return platformAddress(step.name);
    if (step.subsystem == "acpi") return "acpi-0";
    if (step.subsystem == "hid") return hidAddress(step.name);
    if (step.subsystem == "mdio_bus") return mdioAddress(step.name);
    if (step.subsystem == "scsi") return scsiAddress(step.name);
    return std::nullopt;
}

} // namespace

std::string chipName(std::string_view driverName, std::span<const DeviceStep> steps) {
    std::string name(driverName);
    for (const DeviceStep& step : steps) {
        if (const auto address = addressOf(step)) return name.append("-").append(*address);
    }
    return name.append("-virtual-0");
}

} // namespace kelvinbar
