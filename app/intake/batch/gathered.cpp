#include "app/intake/batch/gathered.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "app/intake/batch/finished.h"
#include "app/intake/module.h"
#include "formats/gatherer.h"

namespace program {

namespace fs = std::filesystem;

Gathered::Gathered(const BatchOptions& options, const std::string& name) : options_(options) {
    if (!options.gather) return;
    name_ = name;
    const std::string path = options.folder + '/' + name;
    if (!options.resume && !options.retry) fs::remove_all(path);
    fs::create_directories(path);
}

void Gathered::merge(const std::string& unplaced) const {
    const std::string folder = options_.folder + '/' + name_;
    const std::string target = options_.folder + '/' + options_.gatheredName();
    std::vector<std::string> parts;
    for (const auto& each : fs::directory_iterator(folder)) {
        if (each.path().extension() == ".gpkg") parts.push_back(each.path().string());
    }
    std::sort(parts.begin(), parts.end());
    if (!parts.empty()) {
        const bool goesOn = options_.resume || options_.retry;
        const std::string made = unplaced + "/gathered.gpkg";
        const auto gatherer = loadModule<formats::GathererMaker>("gather").open(made);
        if (goesOn && fs::exists(target)) gatherer->addGathered(target);
        for (const std::string& part : parts) gatherer->addGathered(part);
        gatherer->finish();
        syncPath(unplaced, "gathered.gpkg");
        putInPlace(made, target, unplaced + "/old", goesOn || options_.force);
        syncPath(options_.folder, options_.gatheredName());
    }
    fs::remove_all(folder);
}

}  // namespace program
