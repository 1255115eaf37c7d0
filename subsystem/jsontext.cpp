// JSON as the host prints it.
#include "jsontext.h"

#include <nlohmann/json.hpp>

std::string FormatJson(const nlohmann::ordered_json& value) {
    return value.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}
