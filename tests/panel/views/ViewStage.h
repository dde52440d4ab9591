#pragma once

#include "panel/PanelContent.h"
#include "tests/fakes/FakeShell.h"

#include <QObject>
#include <QQuickItem>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <memory>
#include <vector>

class QQmlEngine;

namespace kelvinbar {

/// The stage for tests of views: a panel's content over a made-up machine, its store, and simulated input.
/// Main thread.
class ViewStage final : public QObject {
    Q_OBJECT
    /// Null before the first scene.
    Q_PROPERTY(kelvinbar::PanelContent* content READ content NOTIFY contentChanged)
    /// How often the panel was asked to close, in this scene.
    Q_PROPERTY(int closings READ closings)
    /// What the controls of makeControls() opened, and how often they quit.
    Q_PROPERTY(QStringList openedAddresses READ openedAddresses)
    Q_PROPERTY(int quits READ quits)

  public:
    ViewStage();
    ViewStage(const ViewStage&) = delete;
    ViewStage& operator=(const ViewStage&) = delete;
    ~ViewStage() override;

    [[nodiscard]] PanelContent* content() const;

    [[nodiscard]] int closings() const;

    [[nodiscard]] QStringList openedAddresses() const { return openedAddresses_; }

    [[nodiscard]] int quits() const { return quits_; }

    /// The number of scenes so far.
    [[nodiscard]] std::size_t sceneCount() const { return scenes_.size(); }

    // Scenes

    /// The demo machine after its first refresh, with the panel open.
    Q_INVOKABLE void start();
    /// The same before its first refresh ends.
    Q_INVOKABLE void startScanning();
    /// A machine whose SMC lists no key, or one without an SMC; after the first refresh.
    Q_INVOKABLE void startEmpty(bool hasController);
    /// A machine without an SMC whose system knows some facts; after the first refresh.
    Q_INVOKABLE void startWithSystemFacts();

    /// Controls over the scene's store, with these values of the build; they open nothing and do not quit.
    /// They live as long as the scene.
    Q_INVOKABLE kelvinbar::PanelControls* makeControls(const QString& author, const QString& contact,
                                                       const QString& donationPage);

    // The machine

    Q_INVOKABLE void advanceClock(int seconds);
    Q_INVOKABLE void beginRefresh();
    /// Completes the running refresh.
    Q_INVOKABLE void finishRefresh();
    Q_INVOKABLE void refresh();
    /// Whether a pass over the machine is queued.
    Q_INVOKABLE [[nodiscard]] bool isRefreshing() const;

    // The list, without a machine behind it

    /// Shows one row in the CPU section for each of `names`, which the store does not know.
    Q_INVOKABLE void showReadings(const QStringList& names, const QString& value);

    /// `root` and its visible descendants, in order.
    Q_INVOKABLE [[nodiscard]] static QVariantList itemsIn(QQuickItem* root);
    /// Completes the layout of the views in the window of `item`.
    Q_INVOKABLE static void layOut(QQuickItem* item);

    // The store

    Q_INVOKABLE [[nodiscard]] QStringList pins() const;
    Q_INVOKABLE void setPins(const QStringList& keys);
    Q_INVOKABLE [[nodiscard]] QStringList hiddenKeys() const;
    Q_INVOKABLE void hide(const QString& key);
    Q_INVOKABLE void showAll();
    Q_INVOKABLE [[nodiscard]] bool isFast() const;
    Q_INVOKABLE [[nodiscard]] bool isDynamic() const;
    Q_INVOKABLE void setDynamic(bool isDynamic);
    Q_INVOKABLE [[nodiscard]] double height() const;
    Q_INVOKABLE void setHeight(double height);
    /// What dynamic mode would give on a screen that is high enough.
    Q_INVOKABLE [[nodiscard]] double dynamicHeight() const;
    Q_INVOKABLE [[nodiscard]] bool isLoading() const;
    Q_INVOKABLE [[nodiscard]] QString statusMessage() const;
    Q_INVOKABLE [[nodiscard]] QString exportText() const;

    // The desktop

    Q_INVOKABLE [[nodiscard]] bool startsAtLogin() const { return loginItemService_.registered; }

    Q_INVOKABLE void setLoginItemWorks(bool works) { loginItemService_.succeeds = works; }

    Q_INVOKABLE [[nodiscard]] static QString clipboardText();
    Q_INVOKABLE static void setClipboardText(const QString& text);
    Q_INVOKABLE [[nodiscard]] static bool hasDrawing(const QString& symbol);

    /// Two clicks of the left button on the centre of `item`, `milliseconds` apart by their timestamps.
    Q_INVOKABLE void clickTwice(QQuickItem* item, int milliseconds);
    /// A click of the left button at that place in the window of `item`, so many milliseconds after the last.
    Q_INVOKABLE void clickAt(QQuickItem* item, double x, double y, int milliseconds);

  signals:
    void contentChanged();

  private:
    struct Scene;

    [[nodiscard]] Scene& scene() const { return *scenes_.back(); }

    void enter(std::unique_ptr<Scene> scene);

    fakes::ShellJournal journal_;
    fakes::FakeLoginItemService loginItemService_{journal_};
    LoginItemManager loginItem_{loginItemService_};
    std::vector<std::unique_ptr<Scene>> scenes_; ///< views of earlier scenes may still exist
    QStringList openedAddresses_;
    int quits_ = 0;
    int mouseTime_ = 1'000'000;
};

} // namespace kelvinbar
