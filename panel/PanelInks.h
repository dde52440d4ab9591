#pragma once

namespace kelvinbar {

/// How opaque the white of texts and marks is, 0 to 1. Texts keep a contrast of 4.5 : 1 to what they are
/// drawn on, and strokes and marks that carry meaning 3 : 1. The exceptions are `metadata`, which repeats
/// what name and value say, `dim`, and the faint inks of what is shown instead of the list.
struct PanelInks {
    double title = 0.95; ///< headings, and the control under the pointer
    double label = 0.88;
    double rowName = 0.84;
    double secondary = 0.72;   ///< subtitles, explanations, symbols of controls
    double metadata = 0.34;    ///< the second line of a row
    double noticeTitle = 0.66; ///< instead of the list
    double scanning = 0.55;
    double noticeText = 0.38;
    double mark = 0.5; ///< rings, empty checks, the scroll bar, the frame of the row under the pointer
    double dim = 0.3;  ///< a control whose press changes nothing
};

/// For people who ask their desktop for more contrast: everything legible is at 4.5 : 1 or more.
constexpr PanelInks strongInks() {
    return {.title = 1,
            .label = 1,
            .rowName = 1,
            .secondary = 0.92,
            .metadata = 0.86,
            .noticeTitle = 0.92,
            .scanning = 0.86,
            .noticeText = 0.86,
            .mark = 0.75,
            .dim = 0.5};
}

constexpr PanelInks panelInks(bool isContrastHigh) { return isContrastHigh ? strongInks() : PanelInks(); }

} // namespace kelvinbar
