#include "platform/linux/ProcessorList.h"

#include <charconv>
#include <optional>

namespace kelvinbar {

namespace {

constexpr std::uint32_t mostProcessors = 65'536; // beyond any kernel's limit

std::optional<std::uint32_t> takeNumber(std::string_view& text) {
    std::uint32_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || number >= mostProcessors) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return number;
}

} // namespace

std::vector<std::uint32_t> processorsInList(std::string_view list) {
    std::vector<std::uint32_t> processors;
    for (;;) {
        const auto first = takeNumber(list);
        auto last = first;
        if (list.starts_with('-')) {
            list.remove_prefix(1);
            last = takeNumber(list);
        }
        if (!first || !last || *last < *first || processors.size() > mostProcessors) return {};
        for (std::uint32_t processor = *first; processor <= *last; ++processor) {
            processors.push_back(processor);
        }
        if (!list.starts_with(',')) break;
        list.remove_prefix(1);
    }
    return list.empty() ? processors : std::vector<std::uint32_t>();
}

} // namespace kelvinbar
