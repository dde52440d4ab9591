#include "desktop/macos/LoginRefusal.h"

namespace kelvinbar {

const char* whyLoginIsRefused(std::string_view programFile) {
    const bool isTemporaryCopy = programFile.find("/AppTranslocation/") != std::string_view::npos;
    return isTemporaryCopy ? "macOS runs Kelvinbar from a temporary copy, which cannot start at login; move "
                             "it to the Applications folder and open it there first"
                           : "macOS refuses to change whether Kelvinbar starts at login";
}

} // namespace kelvinbar
