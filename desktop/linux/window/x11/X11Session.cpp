#include "desktop/linux/window/x11/X11Session.h"

#include "desktop/linux/window/x11/X11Connection.h"
#include "desktop/linux/window/x11/X11Reply.h"

#include <QGuiApplication>
#include <algorithm>
#include <string_view>
#include <xcb/shape.h>

namespace kelvinbar {

namespace {

constexpr std::uint32_t longestProperty = 4096; // in units of four bytes

QByteArray quotedStartupId(QByteArray id) {
    return '"' + id.replace('\\', "\\\\").replace('"', "\\\"") + '"';
}

/// The four depths of a strut, and for each the first and last pixel along its edge, as in
/// _NET_WM_STRUT_PARTIAL.
void appendStruts(Struts& struts, std::span<const std::uint32_t> values) {
    constexpr std::array edges{Qt::LeftEdge, Qt::RightEdge, Qt::TopEdge, Qt::BottomEdge};
    for (std::size_t index = 0; index < edges.size(); ++index) {
        if (values[index] == 0) continue;
        struts.push_back({.edge = edges.at(index),
                          .depth = static_cast<int>(values[index]),
                          .first = static_cast<int>(values[4 + 2 * index]),
                          .last = static_cast<int>(values[5 + 2 * index])});
    }
}

/// The older property without ranges, as one that reaches along the whole edges.
std::vector<std::uint32_t> partialStrut(std::vector<std::uint32_t> depths, QSize desktop) {
    const auto width = static_cast<std::uint32_t>(desktop.width());
    const auto height = static_cast<std::uint32_t>(desktop.height());
    depths.insert(depths.end(), {0, height - 1, 0, height - 1, 0, width - 1, 0, width - 1});
    return depths;
}

} // namespace

std::unique_ptr<X11Session> X11Session::ofApplication() {
    const auto* const application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    // Platforms without a display have the interface, too, but no connection.
    auto* const connection = application == nullptr ? nullptr : application->connection();
    return connection == nullptr ? nullptr : std::make_unique<X11Session>(connection);
}

X11Session::X11Session(xcb_connection_t* connection)
    : connection_(connection), screen_(&firstScreen(connection)) {
    constexpr std::array<std::string_view, atomCount> names{"_NET_ACTIVE_WINDOW",
                                                            "_NET_CLIENT_LIST",
                                                            "_NET_CURRENT_DESKTOP",
                                                            "_NET_STARTUP_INFO",
                                                            "_NET_STARTUP_INFO_BEGIN",
                                                            "_NET_SUPPORTING_WM_CHECK",
                                                            "_NET_WM_NAME",
                                                            "_NET_WM_STATE",
                                                            "_NET_WM_STATE_SKIP_PAGER",
                                                            "_NET_WM_STATE_SKIP_TASKBAR",
                                                            "_NET_WM_STRUT",
                                                            "_NET_WM_STRUT_PARTIAL",
                                                            "_NET_WM_CM_S0"};
    std::array<xcb_intern_atom_cookie_t, atomCount> cookies{};
    std::ranges::transform(names, cookies.begin(), [this](std::string_view name) {
        return xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    });
    std::ranges::transform(cookies, atoms_.begin(), [this](xcb_intern_atom_cookie_t cookie) {
        const auto reply = ownedReply(xcb_intern_atom_reply(connection_, cookie, nullptr));
        return reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
    });
}

QSize X11Session::desktopSize() const {
    const auto geometry = ownedReply(
        xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, screen_->root), nullptr));
    return geometry == nullptr ? QSize() : QSize(geometry->width, geometry->height);
}

bool X11Session::isComposited() const {
    const auto owner = ownedReply(xcb_get_selection_owner_reply(
        connection_, xcb_get_selection_owner(connection_, atoms_[compositorSelection]), nullptr));
    return owner != nullptr && owner->owner != XCB_WINDOW_NONE;
}

void X11Session::hideFromTaskbar(xcb_window_t window) const {
    const std::array states{atoms_[netWmStateSkipTaskbar], atoms_[netWmStateSkipPager]};
    const auto cookie =
        xcb_change_property_checked(connection_, XCB_PROP_MODE_REPLACE, window, atoms_[netWmState],
                                    XCB_ATOM_ATOM, 32, states.size(), states.data());
    ownedReply(xcb_request_check(connection_, cookie));
}

void X11Session::activate(xcb_window_t window, std::uint32_t time) const {
    constexpr std::uint32_t fromApplication = 1;
    tellWindowManager(window, atoms_[netActiveWindow], {fromApplication, time, XCB_WINDOW_NONE, 0, 0});
    xcb_flush(connection_);
}

void X11Session::tellWindowManager(xcb_window_t window, xcb_atom_t type,
                                   const std::array<std::uint32_t, 5>& data) const {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::ranges::copy(data, static_cast<std::uint32_t*>(message.data.data32));
    xcb_send_event(connection_, 0, screen_->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
}

/// The message is broadcast in pieces of 20 bytes, up to and including a zero byte.
void X11Session::endStartupFeedback(const QByteArray& startupId) const {
    if (startupId.isEmpty()) return;
    const QByteArray text = "remove: ID=" + quotedStartupId(startupId);
    const xcb_window_t sender = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, sender, screen_->root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    constexpr qsizetype pieceSize = 20;
    for (qsizetype start = 0; start <= text.size(); start += pieceSize) {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 8;
        message.window = sender;
        message.type = atoms_[start == 0 ? netStartupInfoBegin : netStartupInfo];
        const QByteArray piece = text.mid(start, pieceSize);
        std::ranges::copy(piece, static_cast<std::uint8_t*>(message.data.data8));
        xcb_send_event(connection_, 0, screen_->root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char*>(&message));
    }
    xcb_destroy_window(connection_, sender);
    xcb_flush(connection_);
}

void X11Session::setInputArea(xcb_window_t window, const QRect& area) const {
    const xcb_query_extension_reply_t* const shape = xcb_get_extension_data(connection_, &xcb_shape_id);
    if (shape == nullptr || shape->present == 0) return;
    const xcb_rectangle_t rectangle{static_cast<std::int16_t>(area.x()), static_cast<std::int16_t>(area.y()),
                                    static_cast<std::uint16_t>(area.width()),
                                    static_cast<std::uint16_t>(area.height())};
    xcb_shape_rectangles(connection_, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
                         window, 0, 0, 1, &rectangle);
    xcb_flush(connection_);
}

xcb_get_property_cookie_t X11Session::request(xcb_window_t window, xcb_atom_t property) const {
    return xcb_get_property(connection_, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty);
}

/// Empty if the window or the property is gone, or does not hold numbers.
std::vector<std::uint32_t> X11Session::received(xcb_get_property_cookie_t request) const {
    const auto reply = ownedReply(xcb_get_property_reply(connection_, request, nullptr));
    if (reply == nullptr || reply->format != 32) return {};
    const auto* const first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

std::vector<std::uint32_t> X11Session::longs(xcb_window_t window, xcb_atom_t property) const {
    return received(request(window, property));
}

QByteArray X11Session::windowManager() const {
    const std::vector<xcb_window_t> check = longs(screen_->root, atoms_[netSupportingWmCheck]);
    // The property outlives its window manager; the window that it names does not.
    if (check.empty() || longs(check.front(), atoms_[netSupportingWmCheck]) != check) return {};
    const auto name =
        ownedReply(xcb_get_property_reply(connection_, request(check.front(), atoms_[netWmName]), nullptr));
    if (name == nullptr || name->value_len == 0) return "unnamed";
    return {static_cast<const char*>(xcb_get_property_value(name.get())),
            xcb_get_property_value_length(name.get())};
}

xcb_atom_t X11Session::interned(const QByteArray& name) const {
    const auto reply = ownedReply(xcb_intern_atom_reply(
        connection_,
        xcb_intern_atom(connection_, 1, static_cast<std::uint16_t>(name.size()), name.constData()), nullptr));
    return reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
}

/// All windows are asked before the first answer is read, so that many windows cost one round trip.
Struts X11Session::struts() const {
    const std::vector<xcb_window_t> windows = longs(screen_->root, atoms_[netClientList]);

    struct Requests {
        xcb_get_property_cookie_t partial;
        xcb_get_property_cookie_t whole;
    };

    std::vector<Requests> requests;
    requests.reserve(windows.size());
    for (const xcb_window_t window : windows) {
        requests.push_back({request(window, atoms_[netWmStrutPartial]), request(window, atoms_[netWmStrut])});
    }
    const QSize desktop = desktopSize();
    Struts struts;
    for (const Requests& sent : requests) {
        auto partial = received(sent.partial);
        auto whole = received(sent.whole);
        if (partial.size() < 12 && whole.size() == 4) partial = partialStrut(std::move(whole), desktop);
        if (partial.size() >= 12) appendStruts(struts, partial);
    }
    return struts;
}

QList<QRect> X11Session::workAreas() const {
    const std::vector<std::uint32_t> desktops = longs(screen_->root, atoms_[netCurrentDesktop]);
    const QByteArray desktop = QByteArray::number(desktops.empty() ? 0U : desktops.front());
    const std::vector<std::uint32_t> values = longs(screen_->root, interned("_GTK_WORKAREAS_D" + desktop));
    QList<QRect> areas;
    for (std::size_t index = 0; index + 3 < values.size(); index += 4) {
        areas.append({static_cast<int>(values[index]), static_cast<int>(values[index + 1]),
                      static_cast<int>(values[index + 2]), static_cast<int>(values[index + 3])});
    }
    return areas;
}

} // namespace kelvinbar
