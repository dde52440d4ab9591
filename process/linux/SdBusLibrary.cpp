#include "process/linux/SdBusLibrary.h"

#include <dlfcn.h>

namespace kelvinbar {

namespace {

template <typename Symbol>
bool findSymbol(void* library, const char* name, Symbol& symbol) {
    symbol = reinterpret_cast<Symbol>(::dlsym(library, name));
    return symbol != nullptr;
}

bool findConnectionFunctions(void* handle, SdBusLibrary& library) {
    return findSymbol(handle, "sd_bus_open_user", library.openUser) &&
           findSymbol(handle, "sd_bus_close_unref", library.closeUnref) &&
           findSymbol(handle, "sd_bus_call_async", library.callAsync) &&
           findSymbol(handle, "sd_bus_process", library.process) &&
           findSymbol(handle, "sd_bus_wait", library.wait);
}

bool findMessageFunctions(void* handle, SdBusLibrary& library) {
    return findSymbol(handle, "sd_bus_message_new_method_call", library.newMethodCall) &&
           findSymbol(handle, "sd_bus_message_unref", library.unrefMessage) &&
           findSymbol(handle, "sd_bus_message_set_auto_start", library.setAutoStart) &&
           findSymbol(handle, "sd_bus_message_append_basic", library.appendBasic) &&
           findSymbol(handle, "sd_bus_message_is_method_error", library.isMethodError) &&
           findSymbol(handle, "sd_bus_message_enter_container", library.enterContainer) &&
           findSymbol(handle, "sd_bus_message_exit_container", library.exitContainer) &&
           findSymbol(handle, "sd_bus_message_read_basic", library.readBasic) &&
           findSymbol(handle, "sd_bus_message_skip", library.skip);
}

} // namespace

std::optional<SdBusLibrary> loadSdBusLibrary() {
    void* const handle = ::dlopen("libsystemd.so.0", RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) return std::nullopt;
    SdBusLibrary library;
    const bool isComplete = findConnectionFunctions(handle, library) && findMessageFunctions(handle, library);
    return isComplete ? std::optional(library) : std::nullopt;
}

} // namespace kelvinbar
