// The entry point of the panel's module, which the program loads when the panel is first opened.

#include "panel/PanelWindow.h"

#include <QtGlobal>
#include <utility>

/// Looked up by name. The caller owns the result.
extern "C" Q_DECL_EXPORT kelvinbar::PanelWindow* kelvinbarMakePanel(kelvinbar::KelvinbarStore& store,
                                                                    kelvinbar::PanelHandlers handlers) {
    return kelvinbar::makePanelWindow(store, std::move(handlers)).release();
}
