#pragma once

#include "catalogue/SMCReading.h"
#include "panel/SensorCardsModel.h"
#include "panel/SensorListLayout.h"
#include "panel/SensorRowsModel.h"
#include "panel/SensorSections.h"

#include <QObject>
#include <QString>
#include <map>
#include <memory>
#include <optional>
#include <qqmlregistration.h>
#include <string>
#include <vector>

namespace kelvinbar {

/// The list of the panel: all sections, the part of them that is on the screen, and the row that the keyboard
/// is at. A change of the readings leaves what the user looks at where it is. Main thread.
class SensorList final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")
    Q_PROPERTY(kelvinbar::SensorCardsModel* cards READ cards CONSTANT)
    Q_PROPERTY(double rowHeight READ rowHeight CONSTANT)
    Q_PROPERTY(double margin READ margin CONSTANT)
    Q_PROPERTY(double contentHeight READ contentHeight NOTIFY contentHeightChanged)
    Q_PROPERTY(QString currentKey READ currentKey NOTIFY currentKeyChanged)

  public:
    /// `memorySubtitle` outlives the list.
    explicit SensorList(const SensorListMetrics& metrics,
                        std::string_view memorySubtitle = MachineTexts().memoryCard)
        : metrics_(metrics), memorySubtitle_(memorySubtitle) {}

    /// What the list shows from now on.
    void update(const std::vector<SMCReading>& readings, const KeySet& hiddenKeys,
                const std::vector<std::string>& menuBarKeys);

    [[nodiscard]] SensorCardsModel* cards() { return &cardsModel_; }

    [[nodiscard]] double rowHeight() const { return metrics_.rowHeight; }

    [[nodiscard]] double margin() const { return metrics_.margin; }

    [[nodiscard]] double contentHeight() const { return listHeight(metrics_, cardSpans_); }

    [[nodiscard]] QString currentKey() const;

    [[nodiscard]] std::size_t visibleReadingCount() const { return visibleReadingCount_; }

    [[nodiscard]] std::size_t sectionCount() const { return sections_.size(); }

    /// The reading that is shown under `key`; null when there is none.
    [[nodiscard]] const SMCReading* reading(const QString& key) const;

    /// The part of the list that is on the screen, in points from its top.
    Q_INVOKABLE void setViewport(double top, double height);

    /// The pointer comes to a row, or leaves it. The row under it stays there when readings come and go.
    Q_INVOKABLE void hover(const QString& key, bool isHovered);

    /// The keyboard comes to the list: to the row where it was, else to the first one on the screen.
    Q_INVOKABLE void ensureCurrent();
    /// The keyboard goes on from there. The list stays where it is.
    void setCurrentKey(const QString& key);
    Q_INVOKABLE void moveCurrent(int rows);
    Q_INVOKABLE void moveCurrentByPages(int pages);
    Q_INVOKABLE void moveCurrentToFirst();
    Q_INVOKABLE void moveCurrentToLast();

  signals:
    void contentHeightChanged();
    void currentKeyChanged();
    /// The view is to show the list from there on.
    void viewportTopRequested(double top);

  private:
    /// A row by its section and its place in that.
    struct RowIndex {
        std::size_t section = 0;
        std::size_t row = 0;
    };

    /// Where a row is in the list, in points from its top.
    struct RowPlace {
        std::string key;
        double top = 0;
    };

    [[nodiscard]] std::size_t rowCount() const;
    [[nodiscard]] RowIndex rowIndex(std::size_t number) const;
    [[nodiscard]] std::optional<std::size_t> numberOfRow(const std::string& key) const;
    [[nodiscard]] const SMCReading& readingOfRow(std::size_t number) const;
    [[nodiscard]] Span spanOfRow(std::size_t number) const;
    [[nodiscard]] Span spanWithHeader(std::size_t number) const;
    [[nodiscard]] std::vector<RowPlace> placesToKeep() const;

    void derive(const std::vector<SMCReading>& readings, const KeySet& hiddenKeys);
    [[nodiscard]] std::vector<std::string> successorsOfCurrentRow() const;
    void keepCurrentRow(const std::vector<std::string>& successors);
    void makeCurrent(const std::string& key);
    void goToRow(std::size_t number);
    void requestViewportTop(double top);
    void publish();
    [[nodiscard]] std::vector<SensorRowItem> shownRows(const SensorSectionModel& section,
                                                       const Span& card) const;
    [[nodiscard]] bool isPinned(const std::string& key) const;
    SensorRowsModel& rowsModel(std::string_view sectionId);

    SensorListMetrics metrics_;
    const std::string_view memorySubtitle_;
    std::vector<SMCReading> readings_;         ///< of which the sections are made
    std::vector<SensorSectionModel> sections_; ///< over `readings_`
    std::vector<Span> cardSpans_;
    std::vector<std::string> menuBarKeys_;
    std::size_t visibleReadingCount_ = 0;
    Span viewport_;
    std::string hoveredKey_;
    std::string currentKey_;
    SensorCardsModel cardsModel_;
    std::map<std::string_view, std::unique_ptr<SensorRowsModel>> rowsModels_; ///< by section
};

} // namespace kelvinbar
