#pragma once

#include "panel/PaintedItem.h"

#include <qqmlregistration.h>

namespace kelvinbar {

/// The shadow of the panel, in the room that the window has for it around the panel. A side without room has
/// no shadow. Nothing is drawn under the panel itself.
class PanelShadow : public kelvinbar::PaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// Room at each side, in points.
    Q_PROPERTY(double leftRoom READ leftRoom WRITE setLeftRoom NOTIFY leftRoomChanged)
    Q_PROPERTY(double topRoom READ topRoom WRITE setTopRoom NOTIFY topRoomChanged)
    Q_PROPERTY(double rightRoom READ rightRoom WRITE setRightRoom NOTIFY rightRoomChanged)
    Q_PROPERTY(double bottomRoom READ bottomRoom WRITE setBottomRoom NOTIFY bottomRoomChanged)
    /// The panel's corner radius in points.
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY radiusChanged)

  public:
    using PaintedItem::PaintedItem;

    [[nodiscard]] double leftRoom() const { return leftRoom_; }

    void setLeftRoom(double room) { assign(leftRoom_, room, &PanelShadow::leftRoomChanged); }

    [[nodiscard]] double topRoom() const { return topRoom_; }

    void setTopRoom(double room) { assign(topRoom_, room, &PanelShadow::topRoomChanged); }

    [[nodiscard]] double rightRoom() const { return rightRoom_; }

    void setRightRoom(double room) { assign(rightRoom_, room, &PanelShadow::rightRoomChanged); }

    [[nodiscard]] double bottomRoom() const { return bottomRoom_; }

    void setBottomRoom(double room) { assign(bottomRoom_, room, &PanelShadow::bottomRoomChanged); }

    [[nodiscard]] double radius() const { return radius_; }

    void setRadius(double radius) { assign(radius_, radius, &PanelShadow::radiusChanged); }

  signals:
    void leftRoomChanged();
    void topRoomChanged();
    void rightRoomChanged();
    void bottomRoomChanged();
    void radiusChanged();

  protected:
    [[nodiscard]] std::function<void(QPainter&)> painting() const override;

  private:
    double leftRoom_ = 0;
    double topRoom_ = 0;
    double rightRoom_ = 0;
    double bottomRoom_ = 0;
    double radius_ = 0;
};

} // namespace kelvinbar
