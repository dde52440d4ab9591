#pragma once

#include "desktop/linux/window/x11/X11Reply.h"

#include <cstdint>
#include <string_view>
#include <vector>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <gtest/gtest.h>

namespace kelvinbar {

/// Another program on the X server: a bar, a window manager, a screen locker, or the user's hand.
class X11Client {
  public:
    X11Client() : connection_(xcb_connect(nullptr, nullptr)) {
        EXPECT_EQ(xcb_connection_has_error(connection_), 0) << "these tests need a display";
        root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    }

    X11Client(const X11Client&) = delete;
    X11Client& operator=(const X11Client&) = delete;

    ~X11Client() { xcb_disconnect(connection_); }

    [[nodiscard]] xcb_connection_t* connection() const { return connection_; }

    [[nodiscard]] xcb_window_t root() const { return root_; }

    [[nodiscard]] xcb_atom_t atom(std::string_view name) const {
        const auto reply = ownedReply(xcb_intern_atom_reply(
            connection_,
            xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
        return reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
    }

    /// Waits until the server has done everything.
    void finish() const {
        ownedReply(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    }

    [[nodiscard]] xcb_window_t makeWindow() const {
        const xcb_window_t window = xcb_generate_id(connection_);
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root_, 10, 10, 200, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        finish();
        return window;
    }

    void setNumbers(xcb_window_t window, std::string_view property, xcb_atom_t type,
                    const std::vector<std::uint32_t>& numbers) const {
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), type, 32,
                            static_cast<std::uint32_t>(numbers.size()), numbers.data());
        finish();
    }

    void setText(xcb_window_t window, std::string_view property, std::string_view text) const {
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), atom("UTF8_STRING"),
                            8, static_cast<std::uint32_t>(text.size()), text.data());
        finish();
    }

    void removeProperty(xcb_window_t window, std::string_view property) const {
        xcb_delete_property(connection_, window, atom(property));
        finish();
    }

    [[nodiscard]] std::vector<std::uint32_t> numbers(xcb_window_t window, std::string_view property) const {
        const auto reply = ownedReply(xcb_get_property_reply(
            connection_,
            xcb_get_property(connection_, 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, 100),
            nullptr));
        if (reply == nullptr || reply->format != 32) return {};
        const auto* const first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
        return {first, first + reply->value_len};
    }

    /// Receives what programs tell the window manager.
    void listenOnRoot(std::uint32_t events) const {
        xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &events);
        finish();
    }

    /// The client messages that have arrived.
    [[nodiscard]] std::vector<xcb_client_message_event_t> messages() const {
        finish();
        std::vector<xcb_client_message_event_t> found;
        while (const auto event = ownedReply(xcb_poll_for_event(connection_))) {
            if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE)
                found.push_back(reinterpret_cast<const xcb_client_message_event_t&>(*event));
        }
        return found;
    }

    /// Presses or releases a button of the pointer, as a person does.
    void button(std::uint8_t number, bool isPressed) const {
        xcb_test_fake_input(connection_, isPressed ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, number, 0, root_,
                            0, 0, 0);
        finish();
    }

  private:
    xcb_connection_t* connection_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
};

} // namespace kelvinbar
