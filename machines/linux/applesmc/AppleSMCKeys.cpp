#include "machines/linux/applesmc/AppleSMCKeys.h"

#include "smc/SMCKeyText.h"

#include <string>
#include <utility>

namespace kelvinbar {

namespace {

/// How often a read is tried when other programs interfere.
constexpr int maximumAttempts = 4;

/// Holds the lock for a scope if it can be had. Continues without it otherwise, since programs that do not
/// know the lock select keys regardless.
class Lock {
  public:
    explicit Lock(AppleSMCRegisters& registers) : registers_(registers), isHeld_(registers.lock()) {}

    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    ~Lock() {
        if (isHeld_) registers_.unlock();
    }

  private:
    AppleSMCRegisters& registers_;
    bool isHeld_;
};

/// The packed code of a type. The driver cuts a name at a zero byte, so missing characters are zeros.
std::uint32_t packedType(std::string_view name) {
    std::string bytes(name.substr(0, 4));
    bytes.resize(4, '\0');
    return packedSMCKey(bytes);
}

} // namespace

AppleSMCKeys::AppleSMCKeys(std::unique_ptr<AppleSMCRegisters> registers) : registers_(std::move(registers)) {}

std::size_t AppleSMCKeys::keyCount() {
    const std::uint32_t count = registers_->keyCount().value_or(0);
    if (count != listedCount_) list(count);
    for (Key& key : keys_) key.isRefused = false;
    return keys_.size();
}

void AppleSMCKeys::list(std::uint32_t count) {
    constexpr std::uint32_t maximumKeys = 8192;
    keys_.clear();
    places_.clear();
    // A disturbed listing is repeated at the next call, and so is one that memory did not suffice for.
    listedCount_ = 0;
    bool isDisturbed = false;
    for (std::uint32_t index = 0; index < count && index < maximumKeys; ++index) {
        std::uint32_t code = 0;
        const Outcome outcome = readCodeAt(index, code);
        isDisturbed = isDisturbed || outcome == Outcome::disturbed;
        if (outcome != Outcome::done || !places_.try_emplace(code, keys_.size()).second) continue;
        keys_.emplace_back(code, index);
    }
    if (!isDisturbed) listedCount_ = count;
}

AppleSMCKeys::Outcome AppleSMCKeys::readCodeAt(std::uint32_t index, std::uint32_t& code) {
    for (int attempt = 0; attempt < maximumAttempts; ++attempt) {
        const Lock lock(*registers_);
        if (!registers_->select(index)) return Outcome::refused;
        const auto name = registers_->keyName();
        if (registers_->selectedIndex() != index) continue;
        if (!name || !isPrintableSMCKey(*name)) return Outcome::refused;
        code = packedSMCKey(*name);
        return Outcome::done;
    }
    return Outcome::disturbed;
}

std::optional<std::uint32_t> AppleSMCKeys::keyAtIndex(std::uint32_t index) {
    return index < keys_.size() ? std::optional(keys_[index].code) : std::nullopt;
}

std::optional<SMCKeySource::KeyInfo> AppleSMCKeys::keyInfo(std::uint32_t code) {
    Key* const key = find(code);
    if (key == nullptr) return std::nullopt;
    if (key->info) return key->info;
    KeyInfo info;
    const Outcome outcome = readSelected(*key, [&](AppleSMCRegisters& registers) {
        const auto type = registers.typeName();
        const auto length = registers.dataLength();
        info = {.dataSize = length.value_or(0), .dataType = packedType(type.value_or(""))};
        return type && length;
    });
    if (outcome == Outcome::done) key->info = info;
    return key->info;
}

std::uint8_t AppleSMCKeys::readBytes(std::uint32_t code, SMCBytes& bytes) {
    Key* const key = find(code);
    if (key == nullptr) return smcresult::keyNotFound;
    if (key->isRefused) return smcresult::keyNotReadable;
    SMCBytes read{};
    const Outcome outcome = readSelected(*key, [&](AppleSMCRegisters& registers) {
        read = {};
        return registers.data(read);
    });
    key->isRefused = outcome == Outcome::refused;
    if (outcome != Outcome::done) return smcresult::keyNotReadable;
    bytes = read;
    return smcresult::success;
}

std::vector<std::uint32_t> AppleSMCKeys::codes() const {
    std::vector<std::uint32_t> codes;
    codes.reserve(keys_.size());
    for (const Key& key : keys_) codes.push_back(key.code);
    return codes;
}

AppleSMCKeys::Key* AppleSMCKeys::find(std::uint32_t code) {
    const auto place = places_.find(code);
    return place == places_.end() ? nullptr : &keys_[place->second];
}

template <typename Read>
AppleSMCKeys::Outcome AppleSMCKeys::readSelected(const Key& key, Read read) {
    const std::string name = fourCharString(key.code);
    for (int attempt = 0; attempt < maximumAttempts; ++attempt) {
        const Lock lock(*registers_);
        if (!registers_->select(key.index)) return Outcome::refused;
        if (registers_->keyName() != name) continue;
        const bool isRead = read(*registers_);
        if (registers_->keyName() == name) return isRead ? Outcome::done : Outcome::refused;
    }
    return Outcome::disturbed;
}

} // namespace kelvinbar
