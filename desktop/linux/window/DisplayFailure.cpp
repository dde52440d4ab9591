#include "desktop/linux/window/DisplayFailure.h"

#include <QString>
#include <array>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace kelvinbar {

namespace {

constexpr std::array<std::string_view, 2> displayOptions{"-platform", "-display"};
constexpr std::array displayVariables{"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"};

/// What the message handler, a plain function, works with.
struct Report {
    Log* log = nullptr;
    std::string sentence;
};

Report& report() {
    static Report current;
    return current;
}

void handleMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    Log& log = *report().log;
    log.write(LogCategory::panel, LogLevel::info, [&] { return text.toStdString(); });
    if (type != QtFatalMsg) return;
    log.write(LogCategory::panel, LogLevel::error, [] { return report().sentence; });
    std::_Exit(EXIT_FAILURE); // the half-made toolkit must not be taken down
}

void append(std::string& list, std::string_view item) { list.append(list.empty() ? "" : ", ").append(item); }

std::string chosenOptions(int argc, const char* const* argv) {
    std::string list;
    for (int index = 1; index + 1 < argc; ++index) {
        for (const std::string_view option : displayOptions) {
            if (argv[index] == option) append(list, std::string(option) + " " + argv[index + 1]);
        }
    }
    return list;
}

std::string chosenVariables() {
    std::string list;
    for (const char* const name : displayVariables) {
        const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody writes it
        if (value != nullptr && *value != '\0') append(list, std::string(name) + "=" + value);
    }
    return list;
}

} // namespace

DisplayFailure::DisplayFailure(int argc, const char* const* argv, Log& log) {
    report() = {&log, displayFailureText(argc, argv)};
    earlier_ = qInstallMessageHandler(handleMessage);
}

DisplayFailure::~DisplayFailure() { qInstallMessageHandler(earlier_); }

std::string displayFailureText(int argc, const char* const* argv) {
    std::string tried = chosenOptions(argc, argv);
    if (const std::string variables = chosenVariables(); !variables.empty()) append(tried, variables);
    if (tried.empty()) {
        return "no display can be opened, because neither DISPLAY nor WAYLAND_DISPLAY is set; start the "
               "program "
               "from within a graphical session";
    }
    return "no display can be opened with " + tried +
           "; correct that, or start the program from within a graphical session";
}

} // namespace kelvinbar
