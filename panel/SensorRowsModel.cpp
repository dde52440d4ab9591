#include "panel/SensorRowsModel.h"

#include "panel/QtColors.h"
#include "panel/SensorRowTexts.h"
#include "qt/QtText.h"

namespace kelvinbar {

SensorRowItem::SensorRowItem(const SMCReading& reading, Accent accent, bool isMenuBarSelected,
                             std::string_view toolTipOfRow, int rowNumber, double rowTop)
    : key(reading.key)
    , name(qtText(rowName(reading)))
    , metadata(qtText(metadataLine(reading)))
    , value(qtText(rowValue(reading)))
    , sectionAccent(accent)
    , isSelected(isMenuBarSelected)
    , toolTip(toolTipOfRow)
    , number(rowNumber)
    , top(rowTop) {}

QList<int> SensorRowItem::changedRoles(const SensorRowItem& next) const {
    using Model = SensorRowsModel;
    QList<int> roles;
    if (name != next.name) roles << Model::NameRole;
    if (metadata != next.metadata) roles << Model::MetadataRole;
    if (value != next.value) roles << Model::ValueRole;
    if (isSelected != next.isSelected) {
        roles << Model::SelectedRole << Model::ToolTipRole << Model::BackgroundRole;
    }
    if (number != next.number) roles << Model::NumberRole;
    if (top != next.top) roles << Model::TopRole;
    return roles;
}

QVariant SensorRowsModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const SensorRowItem& row = items()[static_cast<std::size_t>(index.row())];
    switch (role) {
    case KeyRole:
        return qtText(row.key);
    case NameRole:
        return row.name;
    case MetadataRole:
        return row.metadata;
    case ValueRole:
        return row.value;
    case SelectedRole:
        return row.isSelected;
    case ToolTipRole:
        return qtText(row.toolTip);
    case BackgroundRole:
        return QVariant::fromValue(qtColors(rowBackgroundColors(row.isSelected, row.sectionAccent)));
    case NumberRole:
        return row.number;
    case TopRole:
        return row.top;
    default:
        return {};
    }
}

QHash<int, QByteArray> SensorRowsModel::roleNames() const {
    return {{KeyRole, "key"},
            {NameRole, "name"},
            {MetadataRole, "metadata"},
            {ValueRole, "valueText"},
            {SelectedRole, "isMenuBarSelected"},
            {ToolTipRole, "toolTip"},
            {BackgroundRole, "backgroundColors"},
            {NumberRole, "number"},
            {TopRole, "rowTop"}};
}

} // namespace kelvinbar
