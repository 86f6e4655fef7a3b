// Paths are bytes, and JSON is Unicode.
#ifndef APP_INTAKE_BATCH_EXACT_PATH_H
#define APP_INTAKE_BATCH_EXACT_PATH_H

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace program {

// Adds a path under "path". Where it is no UTF-8 each wrong byte is shown as U+FFFD there, and
// "path_bytes" has the path exactly: every byte but letters, digits and -._~/ as %XX.
void addPath(nlohmann::ordered_json& object, std::string_view path);

// The exact path of an object of a report; empty where it has none.
std::string pathOf(const nlohmann::json& object);

}  // namespace program

#endif
