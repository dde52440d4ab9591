// Measures the time from a click on the status item to the panel's first frame, on the real program, from
// outside. The click is sent over D-Bus, as a tray does; the screen is polled every millisecond.
//
// usage: kelvinbar_panel_opening DEMO [ARGUMENTS OF IT]

#include <QDBusConnection>
#include <QDBusInterface>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QThread>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>
#include <vector>

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds pollInterval{1};
constexpr std::chrono::seconds timeout{5};
constexpr int openings = 30;

/// The middle of the header of a panel in the top right corner. The header is drawn first.
QImage cornerOfScreen() {
    const QScreen& screen = *QGuiApplication::primaryScreen();
    const QRect frame = screen.geometry();
    return QGuiApplication::primaryScreen()->grabWindow(0, frame.width() - 240, 20, 8, 8).toImage();
}

class Program {
  public:
    Program(const QString& path, const QStringList& arguments) {
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_.start(path, arguments);
        process_.waitForStarted();
    }

    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    ~Program() {
        process_.terminate();
        process_.waitForFinished();
    }

    /// Clicks the status item, which opens or closes the panel.
    static void click() {
        QDBusMessage message = QDBusMessage::createMethodCall("org.kelvinbar.Demo", "/StatusNotifierItem",
                                                              "org.kde.StatusNotifierItem", "Activate");
        message << 4000 << 0;
        QDBusConnection::sessionBus().send(message);
    }

    /// Milliseconds from a click until the screen changes; nothing on a timeout.
    static std::optional<double> clickUntilTheScreenChanges() {
        const QImage before = cornerOfScreen();
        const auto start = std::chrono::steady_clock::now();
        click();
        while (cornerOfScreen() == before) {
            if (std::chrono::steady_clock::now() - start > timeout) return std::nullopt;
            QThread::usleep(std::chrono::microseconds(pollInterval).count());
        }
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    }

    [[nodiscard]] double residentMiB() const {
        QFile status(QString("/proc/%1/status").arg(process_.processId()));
        if (!status.open(QIODevice::ReadOnly)) return 0;
        const QByteArray text = status.readAll();
        const qsizetype at = text.indexOf("VmRSS:");
        return text.mid(at + 6, 16).simplified().split(' ').front().toDouble() / 1024;
    }

  private:
    QProcess process_;
};

void rest(std::chrono::milliseconds time) { QThread::msleep(static_cast<unsigned long>(time.count())); }

} // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    Program program(arguments.at(1), arguments.mid(2));
    rest(4s);
    const double closed = program.residentMiB();
    const auto first = Program::clickUntilTheScreenChanges();
    if (!first) {
        std::puts("the panel did not open");
        return 1;
    }
    rest(3s);
    const double open = program.residentMiB();

    std::vector<double> next;
    for (int opening = 0; opening < openings; ++opening) {
        rest(400ms);
        Program::click();
        rest(600ms);
        if (const auto time = Program::clickUntilTheScreenChanges()) next.push_back(*time);
    }
    std::ranges::sort(next);
    std::printf("  %-44s %8.0f ms\n", "first opening ever, until its first picture", *first);
    std::printf("  %-44s %8.0f ms, slowest of %zu %.0f ms\n", "an opening after that (median)",
                next[next.size() / 2], next.size(), next.back());
    std::printf("  %-44s %8.1f MiB, before %.1f, after %zu openings %.1f\n", "resident with the panel open",
                open, closed, next.size(), program.residentMiB());
    return 0;
}
