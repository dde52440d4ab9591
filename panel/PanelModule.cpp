// The panel as a module that the program loads when it is first opened.

#include "panel/PanelWindow.h"

#include <QtGlobal>
#include <utility>

/// Called through its name; the caller owns the result.
extern "C" Q_DECL_EXPORT kelvinbar::PanelWindow* kelvinbarMakePanel(kelvinbar::KelvinbarStore& store,
                                                                    kelvinbar::PanelHandlers handlers) {
    return kelvinbar::makePanelWindow(store, std::move(handlers)).release();
}
