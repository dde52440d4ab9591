#pragma once

#include "panel/KeyedListModel.h"
#include "panel/PanelColor.h"

#include <QString>
#include <qqmlregistration.h>
#include <string>

namespace kelvinbar {

struct SMCReading;

/// One row as it is drawn.
struct SensorRowItem {
    SensorRowItem(const SMCReading& reading, Accent accent, bool isMenuBarSelected, double top);

    [[nodiscard]] std::string_view id() const { return key; }

    /// The roles in which `next` differs.
    [[nodiscard]] QList<int> changedRoles(const SensorRowItem& next) const;

    std::string key;
    QString name;
    QString metadata;
    QString value;
    Accent sectionAccent;
    bool isSelected;
    double top; ///< points below the card's upper edge
};

/// The rows of one card that are on the screen. Main thread.
class SensorRowsModel : public KeyedListModel<SensorRowItem> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")

  public:
    enum Role {
        KeyRole = Qt::UserRole,
        NameRole,
        MetadataRole,
        ValueRole,
        SelectedRole,
        ToolTipRole,
        BackgroundRole,
        TopRole,
    };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
};

} // namespace kelvinbar
