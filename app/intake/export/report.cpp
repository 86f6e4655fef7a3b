#include "app/intake/export/report.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "app/intake/utf8.h"

namespace program {

namespace {

constexpr int64_t kExamples = 5;

}  // namespace

void ExportReport::loss(std::string_view layer, std::string_view reason, std::string_view example,
                        int64_t count) {
    auto found = std::find_if(losses_.begin(), losses_.end(), [&](const Loss& each) {
        return each.layer == layer && each.reason == reason;
    });
    if (found == losses_.end()) {
        losses_.push_back({std::string(layer), std::string(reason), 0, {}});
        found = losses_.end() - 1;
    }
    if (!example.empty() && found->count < kExamples) {
        if (!found->examples.empty()) found->examples += ", ";
        found->examples += example;
    }
    found->count += count;
}

std::string ExportReport::textOf(const Loss& loss) {
    std::string text = loss.layer.empty() ? loss.reason : loss.layer + ": " + loss.reason;
    if (loss.count > 1) text += ", " + std::to_string(loss.count) + " times";
    if (!loss.examples.empty()) {
        text += " (" + loss.examples + (loss.count > kExamples ? ", ...)" : ")");
    }
    return text;
}

void ExportReport::print(Console& console) const {
    for (const std::string& each : notes_)
        console.errors << lead(console, "note") << shown(each) << '\n';
    for (const Loss& each : losses_)
        console.errors << lead(console, "warning") << shown(textOf(each)) << '\n';
    std::size_t widest = 0;
    for (const LayerReport& each : layers) widest = std::max(widest, shown(each.name).size());
    for (const LayerReport& each : layers) {
        const std::string name = shown(each.name);
        console.errors << name << std::string(widest - name.size() + 2, ' ');
        if (each.bands != 0) {
            console.errors << each.columns << " x " << each.rows << " cells, " << each.type;
            if (each.bands != 1) console.errors << ", " << each.bands << " bands";
        } else {
            console.errors << each.features << (each.features == 1 ? " feature" : " features");
        }
        if (each.leftOut != 0) console.errors << ", " << each.leftOut << " left out or incomplete";
        console.errors << '\n';
    }
    console.errors.flush();
}

void ExportReport::printJson(Console& console, std::string_view dataset, std::string_view output,
                             std::string_view format, std::string_view system) const {
    nlohmann::ordered_json object;
    object["dataset"] = toUtf8(dataset);
    object["output"] = toUtf8(output);
    object["format"] = format;
    object["system"] = toUtf8(system);
    object["layers"] = nlohmann::ordered_json::array();
    for (const LayerReport& each : layers) {
        if (each.bands != 0) {
            object["layers"].push_back({{"name", each.name},
                                        {"columns", each.columns},
                                        {"rows", each.rows},
                                        {"bands", each.bands},
                                        {"type", each.type}});
            continue;
        }
        object["layers"].push_back(
            {{"name", each.name}, {"features", each.features}, {"leftOut", each.leftOut}});
    }
    object["losses"] = nlohmann::ordered_json::array();
    for (const Loss& each : losses_) {
        object["losses"].push_back({{"layer", toUtf8(each.layer)},
                                    {"reason", toUtf8(each.reason)},
                                    {"count", each.count},
                                    {"examples", toUtf8(each.examples)}});
    }
    object["notes"] = nlohmann::ordered_json::array();
    for (const std::string& each : notes_) object["notes"].push_back(toUtf8(each));
    console.output << object.dump() << std::endl;
    if (!console.output) throw std::runtime_error("could not write the output");
}

}  // namespace program
