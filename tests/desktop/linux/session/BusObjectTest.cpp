#include "desktop/linux/session/BusObject.h"

#include "tests/desktop/BusPeer.h"
#include "tests/desktop/EventLoop.h"

#include <QDBusAbstractAdaptor>
#include <QDBusError>
#include <QDBusMessage>
#include <chrono>
#include <memory>

#include <gtest/gtest.h>

namespace kelvinbar::bus_object_test {

namespace {

constexpr auto path = "/Counter";
constexpr auto interface = "org.kelvinbar.Counter";

} // namespace

/// Counts its calls.
class CounterAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kelvinbar.Counter")

  public:
    explicit CounterAdaptor(BusObject& object) : QDBusAbstractAdaptor(&object) {}

    int calls = 0;

  public slots: // NOLINT(readability-redundant-access-specifiers)

    int Count() { return ++calls; }

  signals:
    void Changed();
};

namespace {

class BusObjectTest : public testing::Test {
  protected:
    static constexpr int burst = 10;

    BusObjectTest() { object_.moveTo(bus_.connection()); }

    /// How many of these calls, sent at once, are answered with an error.
    static int refusalsAmong(int calls, BusPeer& caller) {
        int refusals = 0;
        for (int call = 0; call < calls; ++call) {
            if (caller.call("Count").type() == QDBusMessage::ErrorMessage) ++refusals;
        }
        return refusals;
    }

    PrivateBus bus_;
    BusObject object_{path, CallLimit(burst, 0)};
    CounterAdaptor* counter_ = new CounterAdaptor(object_);
    BusPeer caller_{bus_.address(), path, interface};
};

TEST_F(BusObjectTest, AnswersCallsWithinTheLimit) {
    EXPECT_EQ(refusalsAmong(burst, caller_), 0);
    EXPECT_EQ(counter_->calls, burst);
}

TEST_F(BusObjectTest, RefusesFurtherCallsWithAnError) {
    EXPECT_EQ(refusalsAmong(burst + 5, caller_), 5);
    EXPECT_EQ(counter_->calls, burst);
    EXPECT_EQ(caller_.call("Count").errorName(), QDBusError::errorString(QDBusError::UnknownObject));
}

TEST_F(BusObjectTest, RefusesTheReadingOfPropertiesToo) {
    refusalsAmong(burst, caller_);
    BusPeer reader(bus_.address(), path, "org.freedesktop.DBus.Properties");
    EXPECT_EQ(reader.call("GetAll", {interface}).type(), QDBusMessage::ErrorMessage);
}

TEST_F(BusObjectTest, TellsOnceThatItHasRefusedCalls) {
    int reports = 0;
    QObject::connect(&object_, &BusObject::callsRefused, [&] { ++reports; });
    refusalsAmong(burst, caller_);
    runEventLoop(2 * BusObject::refusalPeriod);
    EXPECT_EQ(reports, 0);
    refusalsAmong(20, caller_);
    EXPECT_TRUE(waitFor([&] { return reports == 1; }));
    runEventLoop(2 * BusObject::refusalPeriod);
    EXPECT_EQ(reports, 1);
}

TEST_F(BusObjectTest, SendsSignalsWhateverItRefuses) {
    refusalsAmong(2 * burst, caller_);
    emit counter_->Changed();
    EXPECT_EQ(caller_.received("Changed").size(), 1);
}

TEST_F(BusObjectTest, IsOnlyOnTheBusThatItHasMovedTo) {
    const PrivateBus next;
    object_.moveTo(next.connection());
    BusPeer caller(next.address(), path, interface);
    EXPECT_EQ(refusalsAmong(1, caller), 0);
    emit counter_->Changed();
    EXPECT_EQ(caller.received("Changed").size(), 1); // and not once more from the earlier connection
    EXPECT_EQ(refusalsAmong(1, caller_), 1);
    EXPECT_EQ(counter_->calls, 1);
}

TEST_F(BusObjectTest, ComesFromNoBusToABus) {
    BusObject object("/Other");
    object.moveTo(QDBusConnection("no such bus"));
    new CounterAdaptor(object);
    object.moveTo(bus_.connection());
    BusPeer caller(bus_.address(), "/Other", interface);
    EXPECT_EQ(refusalsAmong(1, caller), 0);
}

} // namespace
} // namespace kelvinbar::bus_object_test

#include "BusObjectTest.moc"
