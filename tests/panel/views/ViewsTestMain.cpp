// Runs the tests of the views, the tst_*.qml files in this folder, on an offscreen platform; with
// QT_QUICK_BACKEND in the environment, on the X11 display, with the renderer that it names.

#include "tests/CommaLocale.h"
#include "tests/panel/views/ViewStage.h"

#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QtQuickTest/quicktest.h>
#include <cstdio>
#include <cstdlib>
#include <memory>

void qml_register_types_Kelvinbar_Panel();

namespace {

/// As in the program.
bool wantsAnotherRenderer() { return qEnvironmentVariableIsSet("QT_QUICK_BACKEND"); }

class Setup : public QObject {
    Q_OBJECT

  public:
    /// Whether a test has set a scene.
    [[nodiscard]] bool didTest() const { return testCount_ > 0; }

  public slots:

    void applicationAvailable() { // NOLINT(readability-convert-member-functions-to-static): it is a slot
        if (!wantsAnotherRenderer()) QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
        qml_register_types_Kelvinbar_Panel();
    }

    /// Each file has its own engine and stage.
    void qmlEngineAvailable(QQmlEngine* engine) {
        stage_ = std::make_unique<kelvinbar::ViewStage>();
        engine->rootContext()->setContextProperty("stage", stage_.get());
        QObject::connect(stage_.get(), &kelvinbar::ViewStage::contentChanged, this, [this] { ++testCount_; });
    }

    void cleanupTestCase() { stage_.reset(); }

  private:
    std::unique_ptr<kelvinbar::ViewStage> stage_;
    std::size_t testCount_ = 0;
};

int failure(const char* reason) {
    std::fputs(reason, stderr);
    return EXIT_FAILURE;
}

} // namespace

int main(int argc, char** argv) {
    const QTemporaryDir home;
    for (const char* folder : {"HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"})
        qputenv(folder, home.path().toUtf8());
    if (!kelvinbar::enterCommaLocale(KELVINBAR_LOCALES)) {
        return failure("the locale with a decimal comma is missing\n");
    }
    // The platform without a display has the software renderer alone.
    qputenv("QT_QPA_PLATFORM", wantsAnotherRenderer() ? "xcb" : "offscreen");
    // The JIT compiler of Qt 6.4 occasionally crashes in tests that visit many items.
    qputenv("QV4_FORCE_INTERPRETER", "1");
    Setup setup;
    const int failures = quick_test_main_with_setup(argc, argv, "views", KELVINBAR_VIEW_TESTS, &setup);
    if (!setup.didTest()) return failure("no test ran\n");
    return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

#include "ViewsTestMain.moc"
