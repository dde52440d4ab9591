#include "resources/SampleMachines.h"

#include <array>

namespace kelvinbar {

extern const std::string_view intelNotebookText;
extern const std::string_view appleSiliconDesktopText;
extern const std::string_view amdPcText;
extern const std::string_view linuxPcText;

std::span<const SampleMachine> sampleMachines() {
    static const std::array samples{
        SampleMachine{"intel-notebook", intelNotebookText},
        SampleMachine{"apple-silicon-desktop", appleSiliconDesktopText},
        SampleMachine{"amd-pc", amdPcText},
        SampleMachine{"linux-pc", linuxPcText},
    };
    return samples;
}

} // namespace kelvinbar
