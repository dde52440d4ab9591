#include "machines/macos/IOKitSMCDriver.h"

#include "machines/macos/AutoreleaseScope.h"
#include "machines/macos/MainPort.h"
#include "machines/macos/SystemHandles.h"

#include <bit>
#include <string>

namespace kelvinbar {

namespace {

constexpr std::uint32_t connectionType = 0;

// The driver takes the parameter block's integers in host byte order, and the block is stored little-endian.
static_assert(std::endian::native == std::endian::little);

ReturnCode returnCode(kern_return_t code) { return static_cast<ReturnCode>(code); }

} // namespace

std::optional<SMCDriver::Service> IOKitSMCDriver::findService(std::string_view className) {
    const AutoreleaseScope scope;
    CFMutableDictionaryRef matching = IOServiceMatching(std::string(className).c_str());
    if (matching == nullptr) return std::nullopt;
    // IOServiceGetMatchingService consumes the reference to the dictionary.
    const io_service_t service = IOServiceGetMatchingService(mainPort, matching);
    return service == IO_OBJECT_NULL ? std::nullopt : std::optional<Service>(service);
}

SMCDriver::OpenResult IOKitSMCDriver::open(Service service) {
    const AutoreleaseScope scope;
    const IOObject owned(service);
    io_connect_t connection = IO_OBJECT_NULL;
    const kern_return_t code = IOServiceOpen(owned.get(), mach_task_self(), connectionType, &connection);
    return {.code = returnCode(code), .connection = connection};
}

ReturnCode IOKitSMCDriver::callStructMethod(Connection connection, std::uint32_t selector,
                                            std::span<const std::byte> input, std::span<std::byte> output,
                                            std::size_t& outputSize) {
    const AutoreleaseScope scope;
    return returnCode(IOConnectCallStructMethod(connection, selector, input.data(), input.size(),
                                                output.data(), &outputSize));
}

void IOKitSMCDriver::close(Connection connection) {
    const AutoreleaseScope scope;
    IOServiceClose(connection);
}

} // namespace kelvinbar
