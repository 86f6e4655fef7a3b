#include "app/intake/batch/tellings.h"

#include <nlohmann/json.hpp>
#include <sstream>

#include "app/intake/commands/reading.h"
#include "app/intake/console.h"
#include "app/intake/dump/dump.h"
#include "app/intake/show/show.h"

namespace program {

void tellReport(const std::string& text, Told& told, MadeOutput& output) {
    const auto report = nlohmann::json::parse(text, nullptr, false);
    if (!report.is_object()) return;
    const nlohmann::json layers = report.value("layers", nlohmann::json::array());
    for (const auto& layer : layers) {
        output.layers.emplace_back(layer.value("name", ""), layer.value("features", int64_t{0}));
    }
    const nlohmann::json losses = report.value("losses", nlohmann::json::array());
    for (const auto& loss : losses) {
        std::string words = loss.value("layer", "");
        if (!words.empty()) words += ": ";
        words += loss.value("reason", "");
        const int64_t count = loss.value("count", int64_t{1});
        if (count > 1) words += ", " + std::to_string(count) + " times";
        told.tell("warn", words);
    }
}

void tellLines(const std::string& text, Told& told) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t colon = line.find(": ");
        const std::string level = line.substr(0, colon);
        if (colon == std::string::npos || level == "note" || level == "inform") continue;
        told.tell(level == "warning" ? "warn" : "error", line.substr(colon + 2));
    }
}

void countFeatures(const std::string& dataset, const std::string& kind, MadeOutput& output) {
    std::ostringstream text;
    Console silent{text, text};
    const Listening listening(silent);
    try {
        std::ostringstream heads;
        dump(dataset, {headClasses(), kind}, heads);
        Description description;
        std::istringstream lines(heads.str());
        for (std::string line; std::getline(lines, line);) {
            describeHead(nlohmann::json::parse(line), description);
        }
        const Description features = description.value("features", Description::object());
        for (const auto& [name, count] : features.items()) {
            output.layers.emplace_back(name, count.get<int64_t>());
        }
        const Description tables = description.value("tables", Description::array());
        for (const Description& table : tables) {
            output.layers.emplace_back(table.value("name", ""),
                                       table.value("recordCount", int64_t{0}));
        }
    } catch (const std::exception&) {
        // It counts as made all the same; whoever reads it is told.
    }
}

}  // namespace program
