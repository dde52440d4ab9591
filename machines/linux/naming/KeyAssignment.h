#pragma once

#include "machines/linux/naming/SensorChannel.h"
#include "machines/linux/naming/SensorRules.h"

#include <cstddef>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kelvinbar {

/// A channel by its place in a list of chips.
struct ChannelPlace {
    std::size_t chip = 0;
    std::size_t channel = 0;
};

struct AssignedKey {
    std::string key;       ///< four characters
    std::string_view type; ///< the four characters of its data type
    ChannelPlace place;
};

/// A fan that the registry publishes under its label instead.
struct RegistryFanPlace {
    std::string_view className;
    ChannelPlace place;
};

struct KeyPlan {
    std::vector<AssignedKey> keys; ///< in ascending order of key
    std::vector<RegistryFanPlace> registryFans;
    std::vector<ChannelPlace> unplaced; ///< channels for which there is no key
};

/// Gives channels their keys by the rules. Remembers what it gave: a channel keeps its key for as long as
/// its device stays, whatever others come and go, and gets it back when its device returns. Only when every
/// other key is taken is the key of an absent device given away for good. A program that
/// is started again gives the same keys to the same devices.
class KeyAssignment {
  public:
    using KeySet = std::set<std::string, std::less<>>;

    /// `controllerKeys` are the keys of a real controller, which are not given away.
    KeyPlan plan(const std::vector<SensorChip>& chips, const KeySet& controllerKeys);

  private:
    friend class KeyPlanner;

    struct Given {
        std::string key;
        std::string_view type;
    };

    /// By what identifies a channel.
    std::unordered_map<std::string, Given> remembered_;
    /// What identifies the channel that a key was given to last.
    std::unordered_map<std::string, std::string> owners_;
    /// Index of a chip in its family, by the family's pattern and what identifies the chip.
    std::map<std::pair<std::string_view, std::string>, int> indices_;
};

} // namespace kelvinbar
