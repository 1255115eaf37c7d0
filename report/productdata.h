// What a product offers, as data: docs/json.md has the keys.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

#include <subsystem/printsession.h>

// What the number says: a length of the feature in millimetres, with its unit; another one as it is.
std::string DescribeNumber(const nlohmann::ordered_json& feature, const nlohmann::ordered_json& number);

// Of the session's printer; the name is what a user calls the product. Throws what the session throws.
nlohmann::ordered_json DescribeProduct(const std::string& name, const PrintSession& session);
