#pragma once

#include "catalogue/SMCReading.h"

#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QString>
#include <vector>

namespace kelvinbar {

/// A reading as other programs get it: (sssssdsss), the fields of SMCReading in their order.
struct OfferedReading {
    QString key;
    QString name;
    QString category; ///< its title
    QString type;
    QString value;
    double number = 0; ///< NaN if the reading has none
    QString unit;
    QString raw;
    QString status;
};

using OfferedReadings = QList<OfferedReading>;

/// More are left out, so that an answer stays far below the 64 MiB that an array may have.
inline constexpr std::size_t mostOfferedReadings = 10'000;

OfferedReadings offeredReadings(const std::vector<SMCReading>& readings);

QDBusArgument& operator<<(QDBusArgument& argument, const OfferedReading& reading);
const QDBusArgument& operator>>(const QDBusArgument& argument, OfferedReading& reading);

/// Registers the types with Qt D-Bus. Call before their first use; repeated calls do nothing.
void registerOfferedReadingTypes();

} // namespace kelvinbar

Q_DECLARE_METATYPE(kelvinbar::OfferedReading)
