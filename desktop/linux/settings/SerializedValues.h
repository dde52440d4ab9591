#pragma once

#include <QByteArray>

namespace kelvinbar {

/// Whether QSettings would restore objects from their serialized form when it reads this text in its INI
/// format, such as "@Variant(…)", also behind escapes and quotes. We store no such values, and restoring a
/// damaged one may demand any amount of memory. May also hold for a text in quotes that only looks like one.
/// Pure function; any thread.
bool holdsSerializedValues(const QByteArray& text);

} // namespace kelvinbar
