// The program without layer surfaces.

#include "desktop/linux/window/LayerShell.h"

namespace kelvinbar {

bool offersLayerShell(Log& /*log*/) { return false; }

std::optional<LayerShell> layerShellOfApplication(Log& /*log*/) { return std::nullopt; }

} // namespace kelvinbar
