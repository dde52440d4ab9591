#pragma once

#include <QImage>
#include <QRect>
#include <QString>
#include <functional>
#include <memory>

class QGuiApplication;

namespace kelvinbar {

class Log;

/// An icon in a tray of the older kind, which embeds windows. Its module is loaded only where no tray speaks
/// the newer protocol: it takes another kind of application, and memory. Main thread.
class LegacyTrayIcon {
  public:
    virtual ~LegacyTrayIcon() = default;
    virtual void setIcon(const QList<QImage>& sizes) = 0;
    virtual void setToolTip(const QString& text) = 0;
    virtual void setShown(bool isShown) = 0;
};

/// What the module gives.
struct LegacyTrayModule {
    /// The application object with which such icons work; the caller owns it.
    QGuiApplication* (*makeApplication)(int& argc, char** argv) = nullptr;
    /// `onActivated` gets the icon's place on the screen. The caller owns the result.
    LegacyTrayIcon* (*makeIcon)(std::function<void(QRect)> onActivated) = nullptr;
};

/// The program's application object: of the kind for older trays where no newer one runs now.
std::unique_ptr<QGuiApplication> makeTrayApplication(int& argc, char** argv, Log& log);

/// An icon in an older tray; null where the application is not of its kind.
std::unique_ptr<LegacyTrayIcon> makeLegacyTrayIcon(std::function<void(QRect)> onActivated);

} // namespace kelvinbar
