#pragma once

#include <QImage>
#include <QString>
#include <functional>
#include <span>

namespace kelvinbar {

class PanelStage;

/// The rounded font of a picture, in a package that the tests need.
inline constexpr const char* roundFontFile = "/usr/share/fonts/truetype/quicksand/Quicksand-Bold.ttf";

/// A state of the panel that has a reference picture.
struct PanelPicture {
    const char* name; ///< of the file, without its extension
    QImage (*draw)();
};

/// Every main state of the panel.
std::span<const PanelPicture> panelPictures();

/// The picture "fixed", of a panel that was changed after it opened.
QImage fixedPanelAfter(const std::function<void(PanelStage&)>& change);

} // namespace kelvinbar
