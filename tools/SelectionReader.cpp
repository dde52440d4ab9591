#include "tools/SelectionReader.h"

#include <utility>

namespace kelvinbar {

SelectionReader::SelectionReader(SnapshotTaker& taker, ReadingSelection selection)
    : taker_(taker), selection_(std::move(selection)) {}

Snapshot SelectionReader::begin(const Machine& machine, const Dictionary& preferences) {
    Snapshot first = taker_.begin(machine, preferences);
    learn(first);
    return first;
}

Snapshot SelectionReader::next() {
    Snapshot snapshot = taker_.next(keys_);
    if (snapshot.isOfAllKeys) learn(snapshot);
    return snapshot;
}

void SelectionReader::followPins(const Dictionary& preferences) {
    selection_.keys = taker_.pin(preferences);
    keys_ = keysToRead({}, selection_);
}

std::vector<SMCReading> SelectionReader::selected(const Snapshot& snapshot) const {
    return selectedReadings(snapshot.readings, selection_);
}

void SelectionReader::learn(const Snapshot& snapshot) {
    selection_.keys =
        selection_.isPinned ? snapshot.pinned : unmaskedKeys(selection_.keys, snapshot.readings);
    keys_ = keysToRead(snapshot.readings, selection_);
}

} // namespace kelvinbar
