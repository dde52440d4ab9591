#pragma once

#include "machines/replay/RecordedMachine.h"
#include "smc/SMCKeyText.h"
#include "tests/fakes/FakeSMCDriver.h"

#include <string>
#include <vector>

namespace kelvinbar::fakes {

/// Adds the keys of a recorded machine. "#KEY" becomes the number of recorded keys, because a recording may
/// lack some of the controller's keys.
inline void addRecordedKeys(FakeSMCDriver& driver, const std::vector<RecordedKey>& recorded) {
    for (const RecordedKey& key : recorded) {
        const std::string name = fourCharString(key.code);
        if (name != "#KEY") driver.add(name, fourCharString(key.dataType), key.bytes);
    }
    driver.addKeyCount();
}

} // namespace kelvinbar::fakes
