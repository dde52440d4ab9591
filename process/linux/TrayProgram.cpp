#include "process/TrayProgram.h"

#include "process/linux/SdBusLibrary.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>
#include <systemd/sd-bus.h>

namespace kelvinbar {

namespace {

// As docs/bus.md describes them.
constexpr const char* service = "org.kelvinbar.Kelvinbar";
constexpr const char* object = "/org/kelvinbar/Kelvinbar1";
constexpr const char* interface = "org.kelvinbar.Kelvinbar1";

using Bus = std::unique_ptr<sd_bus, decltype(SdBusLibrary::closeUnref)>;
using Message = std::unique_ptr<sd_bus_message, decltype(SdBusLibrary::unrefMessage)>;

/// What has come by now.
struct Answer {
    const SdBusLibrary& functions; ///< to read it with
    bool hasCome = false;
    TrayAnswer content = NoAnswer::silent;
};

/// Reads the property's value from an answer. One use.
class CostReader {
  public:
    CostReader(const SdBusLibrary& library, sd_bus_message* message) : library_(library), message_(message) {}

    /// No value for an answer of another form.
    std::optional<ProgramCost> read() {
        if (!enter(SD_BUS_TYPE_VARIANT, "a{sv}") || !enter(SD_BUS_TYPE_ARRAY, "{sv}")) return std::nullopt;
        while (enter(SD_BUS_TYPE_DICT_ENTRY, "sv")) {
            const char* name = nullptr;
            if (library_.readBasic(message_, SD_BUS_TYPE_STRING, &name) <= 0) return std::nullopt;
            readEntry(name);
            library_.exitContainer(message_);
        }
        return cost_;
    }

  private:
    bool enter(char type, const char* contents) {
        return library_.enterContainer(message_, type, contents) > 0;
    }

    /// The number in the variant that comes next; skips a variant of another type.
    template <typename Number>
    std::optional<Number> number(const char* type) {
        if (!enter(SD_BUS_TYPE_VARIANT, type)) {
            library_.skip(message_, "v");
            return std::nullopt;
        }
        Number value{};
        const bool isRead = library_.readBasic(message_, *type, &value) > 0;
        library_.exitContainer(message_);
        return isRead ? std::optional(value) : std::nullopt;
    }

    void readEntry(std::string_view name) {
        if (name == "MeasuredTime") {
            cost_.measuredTime = number<double>("d");
        } else if (name == "CpuTimePerMinute") {
            cost_.cpuTimePerMinute = number<double>("d");
        } else if (name == "WakeUpsPerMinute") {
            cost_.wakeUpsPerMinute = number<double>("d");
        } else if (name == "ResidentMemory") {
            cost_.residentMemory = number<std::uint64_t>("t");
        } else if (name == "PrivateMemory") {
            cost_.privateMemory = number<std::uint64_t>("t");
        } else if (name == "AccessesOfLastPass") {
            cost_.accessesOfLastPass = number<std::uint32_t>("u");
        } else {
            library_.skip(message_, "v"); // of a later version
        }
    }

    const SdBusLibrary& library_;
    sd_bus_message* message_;
    ProgramCost cost_;
};

/// Whether the answer comes from the bus, which knows no program of that name.
bool isAboutAMissingProgram(const SdBusLibrary& library, sd_bus_message* message) {
    return library.isMethodError(message, SD_BUS_ERROR_SERVICE_UNKNOWN) > 0 ||
           library.isMethodError(message, SD_BUS_ERROR_NAME_HAS_NO_OWNER) > 0;
}

int noteAnswer(sd_bus_message* message, void* data, sd_bus_error* /*error*/) {
    auto& answer = *static_cast<Answer*>(data);
    answer.hasCome = true;
    if (isAboutAMissingProgram(answer.functions, message)) {
        answer.content = NoAnswer::notRunning;
    } else if (answer.functions.isMethodError(message, nullptr) == 0) {
        if (const auto cost = CostReader(answer.functions, message).read()) answer.content = *cost;
    }
    return 0;
}

/// Why a connection to the session bus failed with `error`: where the environment names no bus and the usual
/// place has none, nobody expects one.
NoAnswer reasonOf(int error) {
    const char* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS"); // NOLINT(concurrency-mt-unsafe)
    if (address != nullptr) return *address == '\0' ? NoAnswer::notRunning : NoAnswer::unreachable;
    return error == -ENOENT || error == -ENOMEDIUM ? NoAnswer::notRunning : NoAnswer::unreachable;
}

/// The question for the property; null if there is no memory for it.
Message question(const SdBusLibrary& library, sd_bus* bus) {
    sd_bus_message* created = nullptr;
    library.newMethodCall(bus, &created, service, object, "org.freedesktop.DBus.Properties", "Get");
    Message message(created, library.unrefMessage);
    const bool isComplete = message != nullptr &&
                            library.appendBasic(created, SD_BUS_TYPE_STRING, interface) >= 0 &&
                            library.appendBasic(created, SD_BUS_TYPE_STRING, "Cost") >= 0 &&
                            library.setAutoStart(created, 0) >= 0;
    if (!isComplete) message.reset();
    return message;
}

/// Also while the connection is made, for which the library's own calls would wait longer.
void waitFor(const Answer& answer, sd_bus* bus, std::chrono::microseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!answer.hasCome) {
        const int progress = answer.functions.process(bus, nullptr);
        const auto left =
            std::chrono::ceil<std::chrono::microseconds>(deadline - std::chrono::steady_clock::now());
        if (progress < 0 || left.count() <= 0) return;
        if (progress > 0) continue;
        if (answer.functions.wait(bus, static_cast<std::uint64_t>(left.count())) < 0) return;
    }
}

} // namespace

TrayAnswer askTrayProgram(std::chrono::microseconds limit) {
    const auto library = loadSdBusLibrary();
    if (!library) return NoAnswer::cannotAsk;
    Answer answer{.functions = *library};
    sd_bus* opened = nullptr;
    const int error = library->openUser(&opened);
    const Bus bus(opened, library->closeUnref);
    if (error < 0) return reasonOf(error);
    const Message message = question(*library, bus.get());
    if (message == nullptr) return NoAnswer::silent;
    const auto longest = static_cast<std::uint64_t>(limit.count());
    if (library->callAsync(bus.get(), nullptr, message.get(), noteAnswer, &answer, longest) >= 0) {
        waitFor(answer, bus.get(), limit);
    }
    return answer.content;
}

} // namespace kelvinbar
