#include "machines/linux/sources/LinuxKeys.h"

#include "machines/linux/files/DevicePath.h"
#include "machines/linux/files/SystemFile.h"
#include "smc/SMCKeyText.h"

#include <chrono>
#include <system_error>
#include <utility>

namespace kelvinbar {

LinuxKeys::LinuxKeys(std::shared_ptr<SensorInventory> inventory, OpenController openController)
    : inventory_(std::move(inventory))
    , openController_(std::move(openController))
    , sensors_(std::make_shared<SensorInventoryList>()) {}

bool LinuxKeys::isPresent() {
    rebuild();
    isFresh_ = true;
    return controller_ != nullptr || !sensors_->isEmpty();
}

std::size_t LinuxKeys::keyCount() {
    // The list that told whether there is anything to open serves the listing that follows at once.
    constexpr std::chrono::seconds moment{1};
    if (!std::exchange(isFresh_, false) || inventory_->age() > moment) rebuild();
    return controllerKeyCount_ + sensors_->keys.size();
}

void LinuxKeys::rebuild() {
    if (controller_ == nullptr) {
        auto registers = openController_();
        if (registers != nullptr) controller_ = std::make_unique<AppleSMCKeys>(std::move(registers));
    }
    controllerKeyCount_ = controller_ == nullptr ? 0 : controller_->keyCount();
    // A controller that lists nothing has gone; the next list looks for it again.
    if (controllerKeyCount_ == 0) controller_ = nullptr;
    KeyAssignment::KeySet controllerKeys;
    if (controller_ != nullptr) {
        for (const std::uint32_t code : controller_->codes()) controllerKeys.insert(fourCharString(code));
    }
    inventory_->rebuild(controllerKeys);
    sensors_ = inventory_->current();
    lastPlace_ = 0;
}

/// Keys are read in their order, each of them asked for several times: most are the last one or the next.
const SensorKey* LinuxKeys::findSensor(std::uint32_t code) {
    const std::vector<SensorKey>& keys = sensors_->keys;
    for (const std::size_t place : {lastPlace_, lastPlace_ + 1}) {
        if (place >= keys.size() || keys[place].code != code) continue;
        lastPlace_ = place;
        return &keys[place];
    }
    const SensorKey* const key = sensors_->find(code);
    if (key != nullptr) lastPlace_ = static_cast<std::size_t>(key - keys.data());
    return key;
}

std::optional<std::uint32_t> LinuxKeys::keyAtIndex(std::uint32_t index) {
    if (index < controllerKeyCount_) return controller_->keyAtIndex(index);
    const std::size_t place = index - controllerKeyCount_;
    return place < sensors_->keys.size() ? std::optional(sensors_->keys[place].code) : std::nullopt;
}

std::optional<SMCKeySource::KeyInfo> LinuxKeys::keyInfo(std::uint32_t code) {
    if (const SensorKey* const key = findSensor(code)) {
        return KeyInfo{.dataSize = key->type->size, .dataType = key->typeCode};
    }
    return controller_ == nullptr ? std::nullopt : controller_->keyInfo(code);
}

std::uint8_t LinuxKeys::readBytes(std::uint32_t code, SMCBytes& bytes) {
    if (const SensorKey* const key = findSensor(code)) {
        const auto read = key->sensor.bytes(*key->type);
        if (!read) return smcresult::keyNotReadable;
        bytes = *read;
        return smcresult::success;
    }
    return controller_ == nullptr ? smcresult::keyNotFound : controller_->readBytes(code, bytes);
}

std::unique_ptr<AppleSMCRegisters> openAppleSMC(SensorInventory& inventory) {
    for (const std::filesystem::path& entry : classEntries(inventory.root(), "hwmon")) {
        for (const std::filesystem::path& folder : {entry, entry / "device"}) {
            std::error_code error;
            if (systemFileLine(folder / "name") != "applesmc" ||
                !std::filesystem::exists(folder / "key_at_index", error)) {
                continue;
            }
            if (auto registers = openAppleSMCFiles(folder)) return registers;
            inventory.say("the keys of Apple's controller cannot be listed without write access to its "
                          "key_at_index; its temperatures and fans are shown");
        }
    }
    return nullptr;
}

} // namespace kelvinbar
