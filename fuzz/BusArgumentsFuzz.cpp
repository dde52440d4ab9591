// Any calls of the menu and the item, as hosts on the bus make them. Input: a letter for each call, then its
// arguments.

#include "desktop/linux/tray/StatusMenu.h"
#include "desktop/linux/tray/StatusNotifierItem.h"
#include "fuzz/Check.h"
#include "fuzz/QuietLog.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QList>
#include <QString>
#include <QStringList>
#include <cstddef>
#include <cstdint>
#include <fuzzer/FuzzedDataProvider.h>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kelvinbar::fuzz {

namespace {

constexpr std::size_t longestText = 64;
constexpr std::size_t mostIds = 64;
constexpr int mostCalls = 64;

/// Never connected: what would be sent is dropped.
QDBusConnection noBus() { return QDBusConnection("none"); }

QString text(FuzzedDataProvider& input) {
    return QString::fromStdString(input.ConsumeRandomLengthString(longestText));
}

/// Small ones are likely to be known.
int idFrom(FuzzedDataProvider& input) {
    return input.ConsumeBool() ? input.ConsumeIntegralInRange(-1, 9) : input.ConsumeIntegral<int>();
}

QList<int> ids(FuzzedDataProvider& input) {
    QList<int> result;
    const auto count = input.ConsumeIntegralInRange<std::size_t>(0, mostIds);
    for (std::size_t index = 0; index < count; ++index) result.append(idFrom(input));
    return result;
}

QStringList names(FuzzedDataProvider& input) {
    return input.ConsumeBool() ? QStringList() : QStringList{"label", text(input)};
}

QDBusVariant data(FuzzedDataProvider& input) {
    return input.ConsumeBool() ? QDBusVariant(text(input)) : QDBusVariant(input.ConsumeIntegral<int>());
}

QString eventName(FuzzedDataProvider& input) { return input.ConsumeBool() ? "clicked" : text(input); }

/// A menu whose entries count how often they are chosen.
class CalledMenu {
  public:
    CalledMenu() { change(3); }

    void call(FuzzedDataProvider& input) {
        switch (input.ConsumeIntegralInRange(0, 7)) {
        case 0:
            getLayout(input);
            break;
        case 1:
            getGroupProperties(input);
            break;
        case 2:
            static_cast<void>(adaptor().GetProperty(idFrom(input), text(input)));
            break;
        case 3:
            event(input);
            break;
        case 4:
            eventGroup(input);
            break;
        case 5:
            static_cast<void>(adaptor().AboutToShow(idFrom(input)));
            break;
        case 6:
            aboutToShowGroup(input);
            break;
        default:
            change(input.ConsumeIntegralInRange(0, 5));
        }
    }

  private:
    [[nodiscard]] StatusMenuAdaptor& adaptor() const { return *menu_.findChild<StatusMenuAdaptor*>(); }

    [[nodiscard]] qsizetype entryCount() const { return static_cast<qsizetype>(menu_.entries().size()); }

    void change(int count) {
        std::vector<StatusMenuEntry> entries;
        for (int index = 0; index < count; ++index) {
            const QString identity = QString::number(index + count % 2);
            entries.push_back({identity, identity, [this](uint /*timestamp*/) { ++chosen_; }, std::nullopt});
        }
        menu_.setEntries(std::move(entries));
        QCoreApplication::processEvents();
    }

    void getLayout(FuzzedDataProvider& input) {
        StatusMenuLayout layout;
        const int parent = idFrom(input);
        static_cast<void>(adaptor().GetLayout(parent, input.ConsumeIntegral<int>(), names(input), layout));
        check(layout.children.size() <= entryCount(), "a layout has the menu's entries");
    }

    void getGroupProperties(FuzzedDataProvider& input) {
        const auto properties = adaptor().GetGroupProperties(ids(input), names(input));
        check(properties.size() <= entryCount() + 1, "each known id is answered once");
    }

    void event(FuzzedDataProvider& input) {
        const int before = chosen_;
        const int id = idFrom(input);
        const QString name = eventName(input);
        adaptor().Event(id, name, data(input), 0);
        check(chosen_ - before <= (name == "clicked" && id > 0 ? 1 : 0), "only a click chooses, and once");
    }

    void eventGroup(FuzzedDataProvider& input) {
        QList<StatusMenuEvent> events;
        for (const int id : ids(input)) events.append({id, eventName(input), data(input), 0});
        const int before = chosen_;
        const QList<int> unknown = adaptor().EventGroup(events);
        check(chosen_ - before <= entryCount(), "an entry is chosen at most once in a group");
        check(unknown.size() <= events.size(), "only ids that were given are unknown");
        check(unknown.size() <= StatusMenuAdaptor::mostUnknownIds, "the answer is bounded");
    }

    void aboutToShowGroup(FuzzedDataProvider& input) {
        const QList<int> given = ids(input);
        QList<int> errors;
        const QList<int> updates = adaptor().AboutToShowGroup(given, errors);
        check(updates.size() <= given.size() && errors.size() <= given.size(), "only given ids are answered");
    }

    StatusMenu menu_{noBus()};
    int chosen_ = 0;
};

void callItem(FuzzedDataProvider& input) {
    QuietLog quiet;
    int clicks = 0;
    QString token;
    StatusNotifierItem item(noBus(),
                            {.activated = [&](QPoint /*place*/) { ++clicks; },
                             .activationTokenGiven = [&](const QString& given) { token = given; }},
                            quiet.log());
    auto& adaptor = *item.findChild<StatusNotifierItemAdaptor*>();
    StatusNotifierContent content;
    content.label = text(input);
    item.setContent(content);
    check(adaptor.labelGuide().size() == content.label.size(), "the guide is as long as the label");
    const QString given = text(input);
    adaptor.ProvideXdgActivationToken(given);
    adaptor.Activate(input.ConsumeIntegral<int>(), input.ConsumeIntegral<int>());
    adaptor.Scroll(input.ConsumeIntegral<int>(), text(input));
    const bool isTaken = given.size() <= StatusNotifierItemAdaptor::longestToken;
    check(token == (isTaken ? given : QString()), "a token is passed on unless it is too long");
    check(clicks == 1, "one activation is one click");
}

void makeCalls(FuzzedDataProvider input) {
    callItem(input);
    CalledMenu menu;
    for (int call = 0; call < mostCalls && input.remaining_bytes() > 0; ++call) menu.call(input);
}

} // namespace

} // namespace kelvinbar::fuzz

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static const QCoreApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kelvinbar::fuzz::makeCalls(FuzzedDataProvider(data, size));
    return 0;
}
