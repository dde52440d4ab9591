#pragma once

#include "panel/KeyedListModel.h"
#include "panel/SensorListLayout.h"
#include "panel/SensorSections.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>
#include <string>
#include <string_view>

namespace kelvinbar {

class SensorRowsModel;

/// One card as it is drawn.
struct SensorCardItem {
    SensorCardItem(const SensorSectionModel& section, const Span& place, const std::string& longestValue,
                   SensorRowsModel& rowsOfCard);

    [[nodiscard]] std::string_view id() const { return sectionId; }

    /// The roles in which `next` differs.
    [[nodiscard]] QList<int> changedRoles(const SensorCardItem& next) const;

    // The texts have static lifetime: they are in the table of sections.
    std::string_view sectionId;
    std::string_view title;
    std::string_view subtitle;
    std::string_view icon;
    Accent accent;
    int count;             ///< of rows, including those off screen
    Span span;             ///< in the list
    QString valueShape;    ///< see longestValueShape()
    SensorRowsModel* rows; ///< owned by SensorList
};

/// The cards that are at least partly on the screen. SensorList updates it. Main thread.
class SensorCardsModel : public KeyedListModel<SensorCardItem> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")

  public:
    enum Role {
        IdRole = Qt::UserRole,
        TitleRole,
        SubtitleRole,
        IconRole, ///< name of the symbol
        AccentRole,
        CountRole,      ///< of all its rows
        TopRole,        ///< points from the top of the list
        HeightRole,     ///< points
        ValueShapeRole, ///< as wide as the column of values
        RowsRole,       ///< a SensorRowsModel
    };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
};

} // namespace kelvinbar
