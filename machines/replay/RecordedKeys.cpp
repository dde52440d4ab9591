#include "machines/replay/RecordedKeys.h"

#include <algorithm>
#include <utility>

namespace kelvinbar {

RecordedKeys::RecordedKeys(std::vector<RecordedKey> keys, bool isPresent)
    : keys_(std::move(keys)), isPresent_(isPresent) {
    places_.reserve(keys_.size());
    for (std::size_t place = 0; place < keys_.size(); ++place) places_.emplace(keys_[place].code, place);
}

std::optional<std::uint32_t> RecordedKeys::keyAtIndex(std::uint32_t index) {
    return index < keys_.size() ? std::optional(keys_[index].code) : std::nullopt;
}

std::optional<SMCKeySource::KeyInfo> RecordedKeys::keyInfo(std::uint32_t code) {
    const RecordedKey* const key = find(code);
    if (key == nullptr) return std::nullopt;
    return KeyInfo{.dataSize = static_cast<std::uint32_t>(key->bytes.size()), .dataType = key->dataType};
}

std::uint8_t RecordedKeys::readBytes(std::uint32_t code, SMCBytes& bytes) {
    const RecordedKey* const key = find(code);
    if (key == nullptr) return smcresult::keyNotFound;
    std::ranges::copy(key->bytes, bytes.begin());
    return smcresult::success;
}

const RecordedKey* RecordedKeys::find(std::uint32_t code) const {
    const auto found = places_.find(code);
    return found == places_.end() ? nullptr : &keys_[found->second];
}

} // namespace kelvinbar
