#pragma once

#include "shell/SystemSymbols.h"

#include <QHash>
#include <QImage>
#include <QString>
#include <utility>

class QQuickWindow;

namespace kelvinbar {

/// The system's symbols as images, each drawn once per size. Main thread.
class SystemMasks {
  public:
    /// `symbols` is empty for a system without symbols of its own.
    explicit SystemMasks(SystemSymbols symbols);

    /// The symbol's coverage in a square of `side` pixels; null where the system has no such symbol.
    QImage mask(const QString& name, int side);

  private:
    SystemSymbols symbols_;
    QHash<std::pair<QString, int>, QImage> drawn_; ///< null images for symbols that the system lacks
};

/// Lets the symbols in `window` use the system's. `masks` outlives the window.
void setSystemMasks(QQuickWindow& window, SystemMasks& masks);

/// What `setSystemMasks` set; null otherwise.
SystemMasks* systemMasksOf(const QQuickWindow* window);

} // namespace kelvinbar
