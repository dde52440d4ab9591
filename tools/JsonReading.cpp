#include "tools/JsonReading.h"

#include "base/Value.h"
#include "tools/cost/OwnReadings.h"

namespace kelvinbar {

Json jsonOf(const SMCReading& reading) {
    Json object = Json::object();
    for (const auto& [field, value] : encodedReading(reading)) {
        if (const auto number = numberIn(value)) {
            object[field] = *number;
        } else {
            object[field] = std::get<std::string>(value);
        }
    }
    object["category"] = categoryTitle(reading);
    return object;
}

std::string jsonText(const Json& document, int indentation) {
    return document.dump(indentation, ' ', false, Json::error_handler_t::replace);
}

} // namespace kelvinbar
