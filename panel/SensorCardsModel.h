#pragma once

#include "panel/KeyedListModel.h"
#include "panel/SensorListLayout.h"
#include "panel/SensorSections.h"

#include <QObject>
#include <qqmlregistration.h>
#include <string_view>

namespace kelvinbar {

class SensorRowsModel;

/// One card as it is drawn.
struct SensorCardItem {
    SensorCardItem(const SensorSectionModel& section, const Span& place, SensorRowsModel& rowsOfCard);

    [[nodiscard]] std::string_view id() const { return sectionId; }

    /// The roles in which `next` differs.
    [[nodiscard]] QList<int> changedRoles(const SensorCardItem& next) const;

    // What a section never changes is kept as it is in the table of sections.
    std::string_view sectionId;
    std::string_view title;
    std::string_view subtitle;
    std::string_view icon;
    Accent accent;
    int count;
    Span span;
    SensorRowsModel* rows;
};

/// The cards that are on the screen. Main thread.
class SensorCardsModel : public KeyedListModel<SensorCardItem> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")

  public:
    enum Role {
        IdRole = Qt::UserRole,
        TitleRole,
        SubtitleRole,
        IconRole,
        AccentRole,
        CountRole,
        TopRole,
        HeightRole,
        RowsRole,
    };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
};

} // namespace kelvinbar
