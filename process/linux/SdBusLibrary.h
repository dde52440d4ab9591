#pragma once

#include <optional>
#include <systemd/sd-bus.h>

namespace kelvinbar {

/// The functions of libsystemd that are used, under their names without "sd_bus_". The library is loaded when
/// it is needed, so that it is no dependency of the program and costs nothing at other times.
struct SdBusLibrary {
    decltype(&::sd_bus_open_user) openUser = nullptr;
    decltype(&::sd_bus_close_unref) closeUnref = nullptr;
    decltype(&::sd_bus_call_async) callAsync = nullptr;
    decltype(&::sd_bus_process) process = nullptr;
    decltype(&::sd_bus_wait) wait = nullptr;
    decltype(&::sd_bus_message_new_method_call) newMethodCall = nullptr;
    decltype(&::sd_bus_message_unref) unrefMessage = nullptr;
    decltype(&::sd_bus_message_set_auto_start) setAutoStart = nullptr;
    decltype(&::sd_bus_message_append_basic) appendBasic = nullptr;
    decltype(&::sd_bus_message_is_method_error) isMethodError = nullptr;
    decltype(&::sd_bus_message_enter_container) enterContainer = nullptr;
    decltype(&::sd_bus_message_exit_container) exitContainer = nullptr;
    decltype(&::sd_bus_message_read_basic) readBasic = nullptr;
    decltype(&::sd_bus_message_skip) skip = nullptr;
};

/// No value if the library or one of the functions is missing. The library stays loaded. Any thread.
std::optional<SdBusLibrary> loadSdBusLibrary();

} // namespace kelvinbar
