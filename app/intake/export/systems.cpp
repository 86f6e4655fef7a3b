#include "app/intake/export/systems.h"

#include <stdexcept>

#include "app/intake/module.h"
#include "datasets/side_texts.h"

namespace program {

namespace {

std::string projectionTextOf(const std::string& dataset) {
    std::string text;
    for (const std::string& line : datasets::sideText(dataset, datasets::SideText::projection)) {
        (text += line) += '\n';
    }
    return text;
}

}  // namespace

const crs::Systems& systems() { return loadModule<crs::Systems>("proj"); }

crs::ReferenceSystem systemOf(const std::string& dataset, const std::string& byHand,
                              ExportReport& report) {
    const std::string text = projectionTextOf(dataset);
    if (!byHand.empty()) {
        crs::ReferenceSystem system = systems().byHand(byHand);
        if (!system.defined()) throw std::runtime_error(byHand + ": " + system.stoppedBy);
        if (!text.empty()) system.heightUnits = systems().fromText(text).heightUnits;
        return system;
    }
    if (text.empty()) return {};
    crs::ReferenceSystem system = systems().fromText(text);
    if (!system.defined()) {
        report.note("the reference system is undefined: " + system.stoppedBy +
                    " --crs EPSG:n states it by hand.");
    }
    return system;
}

crs::ReferenceSystem systemIfKnown(const std::string& dataset) {
    const std::string text = projectionTextOf(dataset);
    if (text.empty()) return {};
    try {
        return systems().fromText(text);
    } catch (const std::runtime_error&) {
        return {};
    }
}

std::string systemInWords(const std::string& dataset) {
    const crs::ReferenceSystem system = systemIfKnown(dataset);
    return system.text.empty() ? std::string() : system.description;
}

}  // namespace program
