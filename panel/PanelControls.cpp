#include "panel/PanelControls.h"

#include "panel/PanelActions.h"
#include "panel/PropertyChange.h"
#include "qt/Clipboard.h"
#include "qt/QtText.h"
#include "shell/LoginItemManager.h"
#include "store/KelvinbarStore.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QUrl>
#include <utility>

namespace kelvinbar {

PanelEnvironment PanelEnvironment::ofThisProgram(const ProgramFacts& facts) {
    QStringList lines;
    for (const std::string& line : kelvinbar::programLines(facts)) lines << qtText(line);
    return {.programLines = std::move(lines),
            .author = qtText(facts.author),
            .contact = qtText(facts.contact),
            .donationPage = qtText(facts.donationPage),
            .open = &QDesktopServices::openUrl,
            .quit = &QGuiApplication::quit};
}

PanelControls::PanelControls(KelvinbarStore& store, LoginItemManager& loginItem, PanelEnvironment environment)
    : store_(store)
    , loginItem_(loginItem)
    , environment_(std::move(environment))
    , readingsObserver_(store.readings().observe([this](const auto&) { areReadingsNew_ = true; })) {
    takeSettings();
}

void PanelControls::storeChanged() {
    takeSettings();
    if (isRefreshAsked_ && !store_.isRefreshing()) answerRefresh();
}

void PanelControls::takeSettings() {
    changeProperty(*this, isFast_, store_.samplingRate().value() == SMCSamplingRate::fast,
                   &PanelControls::isFastChanged);
    changeProperty(*this, isDynamic_, store_.displayMode().value() == SMCWindowDisplayMode::dynamic,
                   &PanelControls::isDynamicChanged);
    changeProperty(*this, manualHeight_, static_cast<double>(shownHeight(store_)),
                   &PanelControls::manualHeightChanged);
    changeProperty(*this, isLowest_, isLowestHeight(store_), &PanelControls::isLowestChanged);
    changeProperty(*this, isGreatest_, isGreatestHeight(store_), &PanelControls::isGreatestChanged);
}

void PanelControls::answerRefresh() {
    isRefreshAsked_ = false;
    refreshAnswer_ = areReadingsNew_ ? "New values" : "Nothing new";
    emit refreshAnswerChanged();
    refreshed_.show();
}

QString PanelControls::fastToolTip() { return qtText(samplingRateToolTip); }

QString PanelControls::dynamicToolTip() const {
    return qtText(displayModeToolTip(store_.displayMode().value()));
}

QString PanelControls::about() const { return qtText(store_.texts().about); }

QString PanelControls::loginToolTip() const {
    return qtText(loginItemToolTip(store_.texts(), loginItem_.canRegister()));
}

void PanelControls::readLoginItem() { setRunAtLogin(loginItem_.isEnabled()); }

void PanelControls::setRunAtLogin(bool runAtLogin) {
    if (runAtLogin_ == runAtLogin) return;
    runAtLogin_ = runAtLogin;
    emit runAtLoginChanged();
}

void PanelControls::toggleFast() { toggleSamplingRate(store_); }

void PanelControls::toggleDynamic() { toggleDisplayMode(store_); }

void PanelControls::decreaseHeight() { kelvinbar::decreaseHeight(store_); }

void PanelControls::resetHeight() { kelvinbar::resetHeight(store_); }

void PanelControls::increaseHeight() { kelvinbar::increaseHeight(store_); }

void PanelControls::toggleRunAtLogin() { setRunAtLogin(loginItem_.setEnabled(!runAtLogin_)); }

void PanelControls::refresh() {
    isRefreshAsked_ = true;
    areReadingsNew_ = false;
    store_.refresh(false);
}

void PanelControls::copy() {
    copyToClipboard(store_.exportText());
    copied_.show();
}

void PanelControls::showAll() { store_.unhideAllReadings(); }

void PanelControls::quit() const { environment_.quit(); }

void PanelControls::openDonationPage() { open(donationPage()); }

void PanelControls::writeToAuthor() { open("mailto:" + contact()); }

void PanelControls::open(const QString& address) {
    environment_.open(QUrl(address));
    emit linkOpened();
}

} // namespace kelvinbar
