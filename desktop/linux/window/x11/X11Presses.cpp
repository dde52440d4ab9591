#include "desktop/linux/window/x11/X11Presses.h"

#include "desktop/linux/window/x11/X11Reply.h"

#include <utility>
#include <xcb/xinput.h>

namespace kelvinbar {

namespace {

bool isWheel(std::uint32_t button) { return button >= 4 && button <= 7; }

} // namespace

X11Presses::X11Presses(Handlers handlers)
    : handlers_(std::make_shared<Handlers>(std::move(handlers))), connection_(connectToX11()) {
    if (connection_ == nullptr || !selectEvents()) return;
    const int descriptor = xcb_get_file_descriptor(connection_.get());
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): the pointer's deleter is of its own kind
    notifier_.reset(new QSocketNotifier(descriptor, QSocketNotifier::Read));
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { readEvents(); });
}

bool X11Presses::selectEvents() {
    xcb_connection_t* const connection = connection_.get();
    const xcb_query_extension_reply_t* const extension = xcb_get_extension_data(connection, &xcb_input_id);
    if (extension == nullptr || extension->present == 0) return false;
    opcode_ = extension->major_opcode;
    // Before 2.1, a grab of another program would keep raw events from us.
    const auto version = ownedReply(
        xcb_input_xi_query_version_reply(connection, xcb_input_xi_query_version(connection, 2, 1), nullptr));
    const bool isNewEnough =
        version != nullptr && std::pair(version->major_version, version->minor_version) >=
                                  std::pair<std::uint16_t, std::uint16_t>(2, 1);
    if (!isNewEnough) return false;

    struct Selection {
        xcb_input_event_mask_t head;
        std::uint32_t events;
    };

    const Selection selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                              XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS |
                                  XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE};
    const xcb_window_t root = firstScreen(connection).root;
    const auto cookie = xcb_input_xi_select_events_checked(connection, root, 1, &selection.head);
    return ownedReply(xcb_request_check(connection, cookie)) == nullptr;
}

void X11Presses::readEvents() {
    const std::weak_ptr alive(handlers_);
    while (!alive.expired()) {
        const auto event = ownedReply(xcb_poll_for_event(connection_.get()));
        if (event == nullptr) break;
        report(*event);
    }
    // Otherwise the notifier would report the lost connection without end.
    if (!alive.expired() && xcb_connection_has_error(connection_.get()) != 0) notifier_ = nullptr;
}

void X11Presses::report(const xcb_generic_event_t& event) const {
    if (event.response_type != XCB_GE_GENERIC) return;
    const auto& raw = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    if (raw.extension != opcode_ || isWheel(raw.detail)) return;
    const auto handlers = handlers_; // a handler may destroy this object
    if (raw.event_type == XCB_INPUT_RAW_BUTTON_PRESS) handlers->pressed();
    if (raw.event_type == XCB_INPUT_RAW_BUTTON_RELEASE) handlers->released();
}

} // namespace kelvinbar
