// Icons in XEmbed trays, as a module that is loaded if no StatusNotifierItem tray runs.

#include "desktop/linux/tray/XEmbedTray.h"

#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTextDocument>
#include <memory>
#include <utility>

namespace kelvinbar {

namespace {

class SystemTrayIcon final : public XEmbedTrayIcon {
  public:
    explicit SystemTrayIcon(XEmbedTrayHandlers handlers) : handlers_(std::move(handlers)) {
        QObject::connect(&icon_, &QSystemTrayIcon::activated,
                         [this](QSystemTrayIcon::ActivationReason reason) {
                             if (reason == QSystemTrayIcon::Trigger) handlers_.activated(icon_.geometry());
                         });
        QObject::connect(&menu_, &QMenu::aboutToShow, [this] { fillMenu(); });
        icon_.setContextMenu(&menu_);
    }

    void setIcon(const QList<QImage>& sizes) override {
        QIcon icon;
        for (const QImage& image : sizes) icon.addPixmap(QPixmap::fromImage(image));
        icon_.setIcon(icon);
    }

    void setToolTip(const QString& text) override {
        // Qt shows what looks like markup as such.
        icon_.setToolTip(Qt::mightBeRichText(text) ? text.toHtmlEscaped() : text);
    }

    void setShown(bool isShown) override { icon_.setVisible(isShown); }

    [[nodiscard]] bool hasTray() const override { return QSystemTrayIcon::isSystemTrayAvailable(); }

  private:
    /// The values in the menu stay as they were when it opened.
    void fillMenu() {
        menu_.clear();
        for (const StatusMenuEntry& entry : handlers_.menuEntries()) addToMenu(entry);
    }

    void addToMenu(const StatusMenuEntry& entry) {
        if (entry.text.isEmpty()) {
            menu_.addSeparator();
            return;
        }
        // A single ampersand would mark the next letter as the access key.
        QAction* const action = menu_.addAction(QString(entry.text).replace('&', "&&"));
        action->setCheckable(entry.isChecked.has_value());
        action->setChecked(entry.isChecked.value_or(false));
        QObject::connect(action, &QAction::triggered, [act = entry.action] { act(0); });
    }

    XEmbedTrayHandlers handlers_;
    QMenu menu_;
    QSystemTrayIcon icon_;
};

QGuiApplication* makeApplication(int& argc, char** argv) {
    return std::make_unique<QApplication>(argc, argv).release();
}

XEmbedTrayIcon* makeIcon(XEmbedTrayHandlers handlers) {
    return std::make_unique<SystemTrayIcon>(std::move(handlers)).release();
}

} // namespace

} // namespace kelvinbar

extern "C" Q_DECL_EXPORT void kelvinbarXEmbedTray(kelvinbar::XEmbedTrayModule& module) {
    module = {kelvinbar::makeApplication, kelvinbar::makeIcon};
}
