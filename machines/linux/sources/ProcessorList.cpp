#include "machines/linux/sources/ProcessorList.h"

#include "base/NumberText.h"

#include <optional>

namespace kelvinbar {

namespace {

constexpr std::uint32_t maximumProcessors = 65'536; // more than any kernel supports

std::optional<std::uint32_t> takeProcessor(std::string_view& list) {
    const auto number = takeWholeNumber<std::uint32_t>(list);
    return number && *number < maximumProcessors ? number : std::nullopt;
}

} // namespace

std::vector<std::uint32_t> processorsInList(std::string_view list) {
    std::vector<std::uint32_t> processors;
    for (;;) {
        const auto first = takeProcessor(list);
        auto last = first;
        if (list.starts_with('-')) {
            list.remove_prefix(1);
            last = takeProcessor(list);
        }
        if (!first || !last || *last < *first || processors.size() > maximumProcessors) return {};
        for (std::uint32_t processor = *first; processor <= *last; ++processor) {
            processors.push_back(processor);
        }
        if (!list.starts_with(',')) break;
        list.remove_prefix(1);
    }
    return list.empty() ? processors : std::vector<std::uint32_t>();
}

} // namespace kelvinbar
