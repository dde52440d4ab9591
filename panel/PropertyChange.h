#pragma once

#include <QObject>

namespace kelvinbar {

/// Gives a property of `object` another value, and emits its signal. Returns false, and does neither, if the
/// value is the same.
template <typename Object, typename Value>
bool changeProperty(Object& object, Value& field, const Value& value, void (Object::*changed)()) {
    if (field == value) return false;
    field = value;
    emit(object.*changed)();
    return true;
}

} // namespace kelvinbar
