#pragma once

#include "panel/KeyedListModel.h"
#include "panel/PanelColor.h"

#include <QString>
#include <qqmlregistration.h>
#include <string>
#include <string_view>

namespace kelvinbar {

struct SMCReading;

/// One row as it is drawn. Texts are made once per update, not at each repaint.
struct SensorRowItem {
    SensorRowItem(const SMCReading& reading, Accent accent, bool isMenuBarSelected,
                  std::string_view toolTipOfRow, int number, double top);

    [[nodiscard]] std::string_view id() const { return key; }

    /// The roles in which `next` differs.
    [[nodiscard]] QList<int> changedRoles(const SensorRowItem& next) const;

    std::string key;
    QString name;
    QString metadata;
    QString value;
    Accent sectionAccent; ///< the colour of its section
    bool isSelected;      ///< pinned to the menu bar
    /// What a double-click does. Has static lifetime: it is one of the machine's texts.
    std::string_view toolTip;
    int number; ///< from 1 through the whole list
    double top; ///< points from the top of the card
};

/// The rows of one card that are at least partly on the screen. SensorList updates it. Main thread.
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
        ToolTipRole,    ///< what a double-click does
        BackgroundRole, ///< the gradient, a list of colours
        NumberRole,     ///< from 1 through the whole list
        TopRole,        ///< points from the top of the card
    };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
};

} // namespace kelvinbar
