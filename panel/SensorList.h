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

/// The list of the panel: all sections, the part of them on the screen, and the row that has the keyboard
/// focus.
///
/// A machine may have thousands of readings. All rows have the same height, so the position of each is known
/// without a view, and the models hold only the rows and cards inside the viewport. The view reports its
/// viewport and moves it on request.
///
/// When readings come and go, what the user looks at stays in place: the row under the pointer, or else the
/// first visible row. At the top of the list, new rows push the others down.
///
/// Why not the toolkit's ListView with sections, tried with reused delegates in Qt 6.4:
/// - A card frames its rows. ListView draws a section's header alone.
/// - ListView estimates its height from the delegates that it has: 5350 to 8770 points for a list of 5773,
///   changing while it scrolls. The scroll bar jumps, and no place can be computed before it is seen.
/// - ListView keeps its scroll position at the top and its first row elsewhere, but not the row under the
///   pointer: a row that comes or goes above moves it.
///
/// Lengths are in points. Main thread.
class SensorList final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")
    Q_PROPERTY(kelvinbar::SensorCardsModel* cards READ cards CONSTANT)
    Q_PROPERTY(double rowHeight READ rowHeight CONSTANT)
    /// Of a card, above its first row.
    Q_PROPERTY(double headerHeight READ headerHeight CONSTANT)
    /// Above the first card and below the last one.
    Q_PROPERTY(double margin READ margin CONSTANT)
    Q_PROPERTY(double contentHeight READ contentHeight NOTIFY contentHeightChanged)
    /// The number of rows in all cards.
    Q_PROPERTY(int rowTotal READ rowTotal NOTIFY rowTotalChanged)
    /// The row with the keyboard focus; empty without one.
    Q_PROPERTY(QString currentKey READ currentKey NOTIFY currentKeyChanged)

  public:
    /// The characters of `texts` outlive the list.
    explicit SensorList(const SensorListMetrics& metrics, const MachineTexts& texts = {})
        : metrics_(metrics), texts_(texts) {}

    /// Replaces the measures, with the same rows. Call while no view shows the list.
    void setMetrics(const SensorListMetrics& metrics);

    /// Replaces the content. If the current row has gone, the row below it becomes current, or else the row
    /// above.
    void update(const std::vector<SMCReading>& readings, const KeySet& hiddenKeys,
                const std::vector<std::string>& menuBarKeys);

    /// Shows new values, texts and pins in the rows that there are, which keep their places: nothing comes,
    /// goes or changes its order until the next `update`.
    void updateInPlace(const std::vector<SMCReading>& readings, const std::vector<std::string>& menuBarKeys);

    [[nodiscard]] SensorCardsModel* cards() { return &cardsModel_; }

    [[nodiscard]] double rowHeight() const { return metrics_.rowHeight; }

    [[nodiscard]] double headerHeight() const { return metrics_.cardHeader; }

    [[nodiscard]] double margin() const { return metrics_.margin; }

    [[nodiscard]] double contentHeight() const { return listHeight(metrics_, cardSpans_); }

    [[nodiscard]] int rowTotal() const { return static_cast<int>(rowCount()); }

    [[nodiscard]] QString currentKey() const;

    /// Readings that are not hidden, including those that belong to no section.
    [[nodiscard]] std::size_t visibleReadingCount() const { return visibleReadingCount_; }

    [[nodiscard]] std::size_t sectionCount() const { return sections_.size(); }

    /// The reading with `key`; null when the list does not contain it. Valid until the next `update`.
    [[nodiscard]] const SMCReading* reading(const QString& key) const;

    /// Call when the view scrolls or is resized; `top` is measured from the top of the list.
    Q_INVOKABLE void setViewport(double top, double height);

    /// Call when the pointer enters or leaves a row. The row under the pointer stays in place when readings
    /// come and go.
    Q_INVOKABLE void hover(const QString& key, bool isHovered);

    /// Whether the pointer is over a row.
    [[nodiscard]] bool isHovered() const { return !hoveredKey_.empty(); }

    /// The row at a distance from the top of the list; empty between rows.
    Q_INVOKABLE [[nodiscard]] QString keyAt(double y) const;
    /// The distance of a row's lower edge from the top of the list; 0 for unknown keys.
    Q_INVOKABLE [[nodiscard]] double bottomOf(const QString& key) const;

    /// Call when the list gets the keyboard focus. Makes a row current and scrolls to it: the previous
    /// current row, or else the first one on the screen.
    Q_INVOKABLE void ensureCurrent();
    /// Makes a row current without scrolling. Unknown keys are ignored.
    void setCurrentKey(const QString& key);
    /// The following make another row current and scroll to it. Movements beyond an end stop there.
    Q_INVOKABLE void moveCurrent(int rows);
    Q_INVOKABLE void moveCurrentByPages(int pages);
    Q_INVOKABLE void moveCurrentToFirst();
    Q_INVOKABLE void moveCurrentToLast();
    /// The same for the next row whose name contains `text`, in any case; after the last row comes the first.
    /// `isAfterCurrent`: whether the current row comes last instead of first. Returns false without such a
    /// row.
    bool goToRowNamed(const QString& text, bool isAfterCurrent);

  signals:
    void contentHeightChanged();
    void rowTotalChanged();
    void currentKeyChanged();
    /// The view must scroll so that its top is at `top`.
    void viewportTopRequested(double top);

  private:
    /// A row by its section and its position in it.
    struct RowIndex {
        std::size_t section = 0;
        std::size_t row = 0;
    };

    /// A row with its distance from the top of the list.
    struct RowPlace {
        std::string key;
        double top = 0;
    };

    /// Rows are numbered from 0 through all sections.
    [[nodiscard]] std::size_t rowCount() const;
    [[nodiscard]] RowIndex rowIndex(std::size_t number) const;
    [[nodiscard]] std::optional<std::size_t> numberOfRow(const std::string& key) const;
    [[nodiscard]] const SMCReading& readingOfRow(std::size_t number) const;
    [[nodiscard]] Span spanOfRow(std::size_t number) const;
    [[nodiscard]] Span spanWithHeader(std::size_t number) const;
    /// The rows of which the first that remains keeps its place on the screen.
    [[nodiscard]] std::vector<RowPlace> placesToKeep() const;

    /// Rebuilds the sections and their positions.
    void derive(const std::vector<SMCReading>& readings, const KeySet& hiddenKeys);
    void layOut();
    void measureValues();
    [[nodiscard]] std::vector<std::string> successorsOfCurrentRow() const;
    void keepCurrentRow(const std::vector<std::string>& successors);
    void makeCurrent(const std::string& key);
    /// Makes a row current and scrolls to it.
    void goToRow(std::size_t number);
    /// Scrolls, within the ends of the list.
    void requestViewportTop(double top);
    /// Updates the models to the viewport.
    void publish();
    /// `firstNumber`: of the section's first row, from 0 through the list.
    [[nodiscard]] std::vector<SensorRowItem> shownRows(const SensorSectionModel& section,
                                                       std::size_t firstNumber, const Span& card) const;
    [[nodiscard]] bool isPinned(const std::string& key) const;
    SensorRowsModel& rowsModel(std::string_view sectionId);

    SensorListMetrics metrics_;
    const MachineTexts texts_;
    std::vector<SMCReading> readings_;         ///< all readings, including hidden ones
    std::vector<SensorSectionModel> sections_; ///< points into `readings_`
    std::vector<Span> cardSpans_;              ///< by section
    std::vector<std::string> valueShapes_;     ///< by section
    std::vector<std::string> menuBarKeys_;     ///< pinned keys
    std::size_t visibleReadingCount_ = 0;
    Span viewport_;          ///< the part on the screen
    std::string hoveredKey_; ///< empty without one
    std::string currentKey_;
    SensorCardsModel cardsModel_;
    std::map<std::string_view, std::unique_ptr<SensorRowsModel>> rowsModels_; ///< by section
};

} // namespace kelvinbar
