#pragma once

#include "shell/SystemSymbols.h"

#include <QHash>
#include <QImage>
#include <QString>
#include <utility>

class QQuickWindow;

namespace kelvinbar {

/// The system's symbols as alpha masks, cached by name and size. Main thread.
class SystemMasks {
  public:
    /// `symbols` is empty on a system without symbols.
    explicit SystemMasks(SystemSymbols symbols);

    /// The symbol in a square of `side` pixels. A null image when the system does not have it.
    QImage mask(const QString& name, int side);

  private:
    SystemSymbols symbols_;
    QHash<std::pair<QString, int>, QImage> drawn_; ///< null images for missing symbols
};

/// Makes the symbols in `window` use `masks`, which outlives the window.
void setSystemMasks(QQuickWindow& window, SystemMasks& masks);

/// The masks set by `setSystemMasks`; null without any.
SystemMasks* systemMasksOf(const QQuickWindow* window);

} // namespace kelvinbar
