#pragma once

namespace kelvinbar {

/// The heights around the list, at the standard text size, in points. Together with the list's measures they
/// fit the height that dynamic mode gives (shell/PopoverSizing.h), which a test compares.
struct PanelFrameMetrics {
    double header = 80;
    double divider = 2;        ///< one below the header, one above the footer
    double footerPadding = 22; ///< above and below the rows of the footer
    double settingsRow = 48;
    double footerSpacing = 12; ///< between its rows
    double actionRow = 44;

    [[nodiscard]] double footer() const {
        return footerPadding + settingsRow + footerSpacing + actionRow + footerPadding;
    }

    /// Everything but the list.
    [[nodiscard]] double height() const { return header + divider + divider + footer(); }
};

} // namespace kelvinbar
