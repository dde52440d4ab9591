// Any text as the preferences file.

#include "desktop/linux/settings/PreferencesFile.h"
#include "fuzz/Check.h"
#include "fuzz/InputText.h"
#include "fuzz/QuietLog.h"
#include "store/Preferences.h"
#include "tests/machines/linux/TemporaryTree.h"

#include <QString>
#include <QtGlobal>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar::fuzz {

namespace {

/// The user's folder for configuration, for the whole run.
fakes::TemporaryTree& configuration() {
    static fakes::TemporaryTree tree;
    return tree;
}

/// QSettings remembers files by their names, so each input has a new one.
std::string nextName() {
    static int last = 0;
    return std::to_string(++last);
}

void checkPreferences(const Preferences& preferences) {
    check(preferences.menuBarKeys.size() <= 6, "at most six pins");
    check(!preferences.hiddenKeys.contains(""), "no key is empty");
    check(preferences.manualPopoverSize.width > 0 && preferences.manualPopoverSize.height > 0,
          "the panel has a size");
}

/// What is stored into a file of any content is what the next start loads.
void storeAndLoad(const QString& name, Log& log) {
    const std::vector<std::string> pins{"TC0P", "k10temp-pci-00c3/temp1"};
    {
        PreferencesFile file(name, log);
        checkPreferences(loadPreferences(file));
        storeMenuBarKeys(file, pins);
        check(file.flush(std::chrono::seconds(10)), "preferences can be written");
    }
    // Of another name: in one process, QSettings takes a file of the same size and time for the same.
    const auto folder = configuration().root() / "kelvinbar";
    std::filesystem::copy_file(folder / (name + ".conf").toStdString(),
                               folder / (name + "-copy.conf").toStdString());
    const PreferencesFile file(name + "-copy", log);
    const Preferences preferences = loadPreferences(file);
    checkPreferences(preferences);
    check(preferences.menuBarKeys == pins, "what was stored is loaded");
}

void readPreferences(std::string_view text) {
    const std::string name = nextName();
    configuration().write("kelvinbar/" + name + ".conf", text);
    QuietLog quiet;
    storeAndLoad(QString::fromStdString(name), quiet.log());
    configuration().remove("kelvinbar");
}

} // namespace

} // namespace kelvinbar::fuzz

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    qputenv("XDG_CONFIG_HOME", kelvinbar::fuzz::configuration().root().c_str());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kelvinbar::fuzz::readPreferences(kelvinbar::fuzz::inputText({data, size}));
    return 0;
}
