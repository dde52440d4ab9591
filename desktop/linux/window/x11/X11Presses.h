#pragma once

#include "desktop/linux/window/x11/X11Connection.h"

#include <QSocketNotifier>
#include <cstdint>
#include <functional>
#include <memory>

namespace kelvinbar {

/// Reports presses and releases of the pointer's buttons wherever they happen, without grabbing anything: raw
/// events of the X Input extension. Turns of a wheel are no presses.
///
/// Uses a connection of its own, which lives as long as the object. Limits: within a Wayland session the
/// server only knows of presses on X11 windows. Main thread.
class X11Presses {
  public:
    struct Handlers {
        std::function<void()> pressed;
        std::function<void()> released;
    };

    /// Watches the display of the environment. If it does not answer or lacks the extension in version 2.1,
    /// nothing is ever reported. The handlers may destroy the object.
    explicit X11Presses(Handlers handlers);

  private:
    /// Deletes later, because the notifier may be in the middle of reporting.
    struct Retirer {
        void operator()(QSocketNotifier* notifier) const {
            notifier->disconnect();
            notifier->setEnabled(false);
            notifier->deleteLater();
        }
    };

    void readEvents();
    void report(const xcb_generic_event_t& event) const;
    [[nodiscard]] bool selectEvents();

    std::shared_ptr<Handlers> handlers_;
    X11Connection connection_;
    std::uint8_t opcode_ = 0; ///< of the extension
    std::unique_ptr<QSocketNotifier, Retirer> notifier_;
};

} // namespace kelvinbar
