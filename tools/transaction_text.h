#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

/** Lines of monitors, see qeltvd-monitor in docs/host-runtime.md, for people. */
namespace tool {

/** The method of a line without what all have, "IQelTvApiConfig.config_get_value". */
std::string methodText(const nlohmann::ordered_json& line);

/** "(number=1, name=\"x\")"; long values are cut. */
std::string valuesText(const nlohmann::ordered_json& values);

/** What a call took and returned, or a notification with the names of its values. */
std::string transactionText(const nlohmann::ordered_json& line);

}  // namespace tool
