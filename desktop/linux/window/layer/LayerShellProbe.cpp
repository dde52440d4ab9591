// Asks a Wayland compositor for layer surfaces, as a module that is loaded in Wayland sessions.

#include <QtGlobal>
#include <cstdint>
#include <memory>
#include <string_view>
#include <wayland-client.h>

namespace {

struct Disconnector {
    void operator()(wl_display* display) const { wl_display_disconnect(display); }
};

void noteOffer(void* isOffered, wl_registry* /*registry*/, std::uint32_t /*name*/, const char* interface,
               std::uint32_t /*version*/) {
    if (std::string_view(interface) == "zwlr_layer_shell_v1") *static_cast<bool*>(isOffered) = true;
}

void ignoreRemoval(void* /*isOffered*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}

constexpr wl_registry_listener listener{.global = noteOffer, .global_remove = ignoreRemoval};

} // namespace

extern "C" Q_DECL_EXPORT bool kelvinbarOffersLayerShell() {
    const std::unique_ptr<wl_display, Disconnector> display(wl_display_connect(nullptr));
    if (display == nullptr) return false;
    bool isOffered = false;
    wl_registry* const registry = wl_display_get_registry(display.get());
    wl_registry_add_listener(registry, &listener, &isOffered);
    const bool hasAnswered = wl_display_roundtrip(display.get()) >= 0;
    wl_registry_destroy(registry);
    return hasAnswered && isOffered;
}
