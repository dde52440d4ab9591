// Changes a preference without end, until it is killed: a list in which each time another number stands many
// times. Prints each number as "change N" before and "saved N" after.

#include "base/Log.h"
#include "desktop/linux/settings/PreferencesFile.h"
#include "process/StandardErrorSink.h"

#include <QCoreApplication>
#include <chrono>
#include <cstdint>
#include <iostream>
#include <string>

int main(int argc, char** argv) {
    using namespace kelvinbar;
    const QCoreApplication application(argc, argv);
    StandardErrorSink sink;
    Log log(sink);
    PreferencesFile preferences("victim", log);
    const auto stored = preferences.textList("List");
    std::int64_t number = stored ? std::stoll(stored->front()) : 0;
    std::cout << "loaded " << number << std::endl;
    constexpr std::size_t repetitions = 500;
    for (;;) {
        const std::string text = std::to_string(++number);
        std::cout << "change " << text << std::endl;
        preferences.setTextList("List", TextList(repetitions, text));
        if (!preferences.flush(std::chrono::seconds(10))) return 1;
        std::cout << "saved " << text << std::endl;
    }
}
