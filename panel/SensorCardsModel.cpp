#include "panel/SensorCardsModel.h"

#include "panel/QtColors.h"
#include "panel/SensorRowsModel.h"
#include "qt/QtText.h"

namespace kelvinbar {

SensorCardItem::SensorCardItem(const SensorSectionModel& section, const Span& place,
                               const std::string& longestValue, SensorRowsModel& rowsOfCard)
    : sectionId(section.id)
    , title(section.title)
    , subtitle(section.subtitle)
    , icon(section.icon)
    , accent(section.accent)
    , count(static_cast<int>(section.readings.size()))
    , span(place)
    , valueShape(qtText(longestValue))
    , rows(&rowsOfCard) {}

QList<int> SensorCardItem::changedRoles(const SensorCardItem& next) const {
    using Model = SensorCardsModel;
    QList<int> roles;
    if (count != next.count) roles << Model::CountRole;
    if (span.top != next.span.top) roles << Model::TopRole;
    if (span.height != next.span.height) roles << Model::HeightRole;
    if (valueShape != next.valueShape) roles << Model::ValueShapeRole;
    return roles;
}

QVariant SensorCardsModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const SensorCardItem& card = items()[static_cast<std::size_t>(index.row())];
    switch (role) {
    case IdRole:
        return qtText(card.sectionId);
    case TitleRole:
        return qtText(card.title);
    case SubtitleRole:
        return qtText(card.subtitle);
    case IconRole:
        return qtText(card.icon);
    case AccentRole:
        return qtColor(shade(card.accent));
    case CountRole:
        return card.count;
    case TopRole:
        return card.span.top;
    case HeightRole:
        return card.span.height;
    case ValueShapeRole:
        return card.valueShape;
    case RowsRole:
        return QVariant::fromValue(card.rows);
    default:
        return {};
    }
}

QHash<int, QByteArray> SensorCardsModel::roleNames() const {
    return {{IdRole, "sectionId"}, {TitleRole, "title"},       {SubtitleRole, "subtitle"},
            {IconRole, "icon"},    {AccentRole, "accent"},     {CountRole, "count"},
            {TopRole, "cardTop"},  {HeightRole, "cardHeight"}, {ValueShapeRole, "valueShape"},
            {RowsRole, "rows"}};
}

} // namespace kelvinbar
