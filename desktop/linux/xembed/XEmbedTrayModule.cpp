// Icons in XEmbed trays, as a module that is loaded if no StatusNotifierItem tray runs.

#include "desktop/linux/XEmbedTray.h"

#include <QApplication>
#include <QIcon>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <utility>

namespace kelvinbar {

namespace {

class SystemTrayIcon final : public XEmbedTrayIcon {
  public:
    explicit SystemTrayIcon(std::function<void(QRect)> onActivated) {
        QObject::connect(&icon_, &QSystemTrayIcon::activated,
                         [this, handler = std::move(onActivated)](QSystemTrayIcon::ActivationReason reason) {
                             if (reason == QSystemTrayIcon::Trigger) handler(icon_.geometry());
                         });
    }

    void setIcon(const QList<QImage>& sizes) override {
        QIcon icon;
        for (const QImage& image : sizes) icon.addPixmap(QPixmap::fromImage(image));
        icon_.setIcon(icon);
    }

    void setToolTip(const QString& text) override { icon_.setToolTip(text); }

    void setShown(bool isShown) override { icon_.setVisible(isShown); }

    [[nodiscard]] bool hasTray() const override { return QSystemTrayIcon::isSystemTrayAvailable(); }

  private:
    QSystemTrayIcon icon_;
};

QGuiApplication* makeApplication(int& argc, char** argv) { return new QApplication(argc, argv); }

XEmbedTrayIcon* makeIcon(std::function<void(QRect)> onActivated) {
    return new SystemTrayIcon(std::move(onActivated));
}

} // namespace

} // namespace kelvinbar

extern "C" Q_DECL_EXPORT void kelvinbarXEmbedTray(kelvinbar::XEmbedTrayModule& module) {
    module = {kelvinbar::makeApplication, kelvinbar::makeIcon};
}
