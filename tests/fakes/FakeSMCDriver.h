#pragma once

#include "smc/SMCDriver.h"
#include "smc/SMCKeyText.h"
#include "smc/SMCParamBlock.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvinbar::fakes {

/// A controller with a list of keys. Records every call. `intercept` can change any reply or return another
/// code.
class FakeSMCDriver final : public SMCDriver {
  public:
    struct Key {
        std::string name;
        std::string type;
        std::vector<std::uint8_t> bytes;
        std::uint32_t announcedSize = 0; ///< reported size; 0 for the number of bytes
        std::uint8_t infoResult = 0;
        std::uint8_t readResult = 0;
        std::uint8_t attributes = 0;
    };

    struct Call {
        SMCCommand command;
        std::string key;     ///< for commands 5 and 9
        std::uint32_t index; ///< for command 8
        SMCParamBlock input;
    };

    using Intercept =
        std::function<std::optional<ReturnCode>(const SMCParamBlock& input, SMCParamBlock& output)>;

    bool hasService = true;
    ReturnCode openCode = kernSuccess;
    Connection openConnection = 7;
    std::vector<Key> keys;
    Intercept intercept; ///< called with the fake's reply; its code, if any, replaces success

    std::vector<std::string> searchedClasses;
    int openCount = 0;
    std::vector<Connection> closed;
    std::vector<Call> calls;

    /// Adds a key. "#KEY" must be added like any other.
    FakeSMCDriver& add(std::string name, std::string type, std::vector<std::uint8_t> bytes) {
        keys.push_back({std::move(name), std::move(type), std::move(bytes)});
        return *this;
    }

    /// Adds "#KEY" with `count` as ui32.
    FakeSMCDriver& addKeyCount(std::uint32_t count) {
        return add("#KEY", "ui32",
                   {static_cast<std::uint8_t>(count >> 24U), static_cast<std::uint8_t>(count >> 16U),
                    static_cast<std::uint8_t>(count >> 8U), static_cast<std::uint8_t>(count)});
    }

    /// Adds "#KEY" with the number of keys, including itself.
    FakeSMCDriver& addKeyCount() { return addKeyCount(static_cast<std::uint32_t>(keys.size()) + 1); }

    std::optional<Service> findService(std::string_view className) override {
        searchedClasses.emplace_back(className);
        return hasService ? std::optional<Service>(3) : std::nullopt;
    }

    OpenResult open(Service /*service*/) override {
        ++openCount;
        return {openCode, openConnection};
    }

    ReturnCode callStructMethod(Connection /*connection*/, std::uint32_t selector,
                                std::span<const std::byte> input, std::span<std::byte> output,
                                std::size_t& outputSize) override {
        if (selector != 2 || input.size() != 80 || output.size() != 80 || outputSize != 80) return 0xE00002C2;
        SMCParamBlock request;
        std::memcpy(&request, input.data(), sizeof(request));
        calls.push_back(
            {static_cast<SMCCommand>(request.command), fourCharString(request.key), request.data32, request});
        SMCParamBlock reply = answer(request);
        std::optional<ReturnCode> code;
        if (intercept) code = intercept(request, reply);
        std::memcpy(output.data(), &reply, sizeof(reply));
        return code.value_or(kernSuccess);
    }

    void close(Connection connection) override { closed.push_back(connection); }

  private:
    [[nodiscard]] SMCParamBlock answer(const SMCParamBlock& request) const {
        SMCParamBlock reply;
        if (request.command == static_cast<std::uint8_t>(SMCCommand::keyByIndex)) {
            if (request.data32 < keys.size()) {
                reply.key = packedSMCKey(keys[request.data32].name);
            } else {
                reply.result = 0xB8;
            }
            return reply;
        }
        for (const Key& key : keys) {
            if (packedSMCKey(key.name) != request.key) continue;
            if (request.command == static_cast<std::uint8_t>(SMCCommand::readKeyInfo)) {
                reply.result = key.infoResult;
                reply.dataSize =
                    key.announcedSize != 0 ? key.announcedSize : static_cast<std::uint32_t>(key.bytes.size());
                std::string type = key.type;
                type.resize(4, '\0');
                reply.dataType = packedSMCKey(type);
                reply.dataAttributes = key.attributes;
            } else {
                reply.result = key.readResult;
                std::memcpy(reply.bytes.data(), key.bytes.data(),
                            std::min(key.bytes.size(), reply.bytes.size()));
            }
            return reply;
        }
        reply.result = 0x84;
        return reply;
    }
};

} // namespace kelvinbar::fakes
