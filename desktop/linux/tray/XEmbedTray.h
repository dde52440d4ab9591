#pragma once

#include "desktop/linux/tray/StatusMenuEntry.h"

#include <QImage>
#include <QRect>
#include <QString>
#include <functional>
#include <memory>
#include <vector>

class QGuiApplication;

/// Icons in trays that use the XEmbed protocol, which embeds a window of the program. Used only if no tray
/// uses StatusNotifierItem (see StatusNotifierItem.h): XEmbed trays show no labels.
///
/// The implementation is in a module, because it needs Qt Widgets and a QApplication, which cost memory.
/// Limit: the choice is made when the application object is created. A program started while a
/// StatusNotifierItem tray runs has no icon in an XEmbed tray later.
namespace kelvinbar {

class Log;

/// An icon in an XEmbed tray. The destructor removes it. Main thread.
class XEmbedTrayIcon {
  public:
    virtual ~XEmbedTrayIcon() = default;
    /// The same image in several sizes.
    virtual void setIcon(const QList<QImage>& sizes) = 0;
    virtual void setToolTip(const QString& text) = 0;
    virtual void setShown(bool isShown) = 0;
    /// Whether an XEmbed tray runs at the moment.
    [[nodiscard]] virtual bool hasTray() const = 0;
};

/// What an icon needs from its owner. Called on the main thread.
struct XEmbedTrayHandlers {
    std::function<void(QRect frame)> activated; ///< a click, with the icon's frame on the screen
    /// The entries of the menu, asked for each time it opens.
    std::function<std::vector<StatusMenuEntry>()> menuEntries;
};

/// The functions of the module. Null if it is not loaded.
struct XEmbedTrayModule {
    /// Creates an application object that supports these icons. The caller owns it.
    QGuiApplication* (*makeApplication)(int& argc, char** argv) = nullptr;
    /// Creates an icon, hidden at first. The caller owns the result.
    XEmbedTrayIcon* (*makeIcon)(XEmbedTrayHandlers handlers) = nullptr;
};

/// Creates the program's application object. It supports XEmbed trays if no StatusNotifierItem tray runs at
/// the moment.
std::unique_ptr<QGuiApplication> makeTrayApplication(int& argc, char** argv, Log& log);

/// Creates an icon. Null if the application object does not support XEmbed trays.
std::unique_ptr<XEmbedTrayIcon> makeXEmbedTrayIcon(XEmbedTrayHandlers handlers);

} // namespace kelvinbar
