#include "desktop/linux/session/OfferedReading.h"

#include <QDBusMetaType>
#include <algorithm>
#include <limits>

namespace kelvinbar {

namespace {

OfferedReading offeredReading(const SMCReading& reading) {
    const std::string_view category = rawValue(reading.category);
    return {.key = QString::fromStdString(reading.key),
            .name = QString::fromStdString(reading.name),
            .category = QString::fromUtf8(category.data(), static_cast<qsizetype>(category.size())),
            .type = QString::fromStdString(reading.type),
            .value = QString::fromStdString(reading.value),
            .number = reading.numericValue.value_or(std::numeric_limits<double>::quiet_NaN()),
            .unit = QString::fromStdString(reading.unit),
            .raw = QString::fromStdString(reading.raw),
            .status = QString::fromStdString(reading.status)};
}

} // namespace

OfferedReadings offeredReadings(const std::vector<SMCReading>& readings) {
    const std::size_t count = std::min(readings.size(), mostOfferedReadings);
    OfferedReadings offered;
    offered.reserve(static_cast<qsizetype>(count));
    for (std::size_t index = 0; index < count; ++index) offered.append(offeredReading(readings[index]));
    return offered;
}

QDBusArgument& operator<<(QDBusArgument& argument, const OfferedReading& reading) {
    argument.beginStructure();
    argument << reading.key << reading.name << reading.category << reading.type << reading.value
             << reading.number << reading.unit << reading.raw << reading.status;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, OfferedReading& reading) {
    argument.beginStructure();
    argument >> reading.key >> reading.name >> reading.category >> reading.type >> reading.value >>
        reading.number >> reading.unit >> reading.raw >> reading.status;
    argument.endStructure();
    return argument;
}

void registerOfferedReadingTypes() {
    qDBusRegisterMetaType<OfferedReading>();
    qDBusRegisterMetaType<OfferedReadings>();
}

} // namespace kelvinbar
