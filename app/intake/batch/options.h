// What intake batch is asked for.
#ifndef APP_INTAKE_BATCH_OPTIONS_H
#define APP_INTAKE_BATCH_OPTIONS_H

#include <cstdint>
#include <string>
#include <vector>

namespace program {

struct BatchOptions {
    std::vector<std::string> inputs;
    std::string folder;                // of the outputs
    std::vector<std::string> include;  // names of files in folders; empty: the usual ones
    std::vector<std::string> formats;  // names of formats.h; empty: datasets are kept
    std::string system;                // as export has them
    std::string encoding = "windows-1252";
    uint64_t mostBytes = uint64_t{64} << 30;  // that may be expanded of one input
    int jobs = 0;                             // 0: as many as there are processors
    double timeout = 600;                     // seconds without progress
    uint64_t memory = uint64_t{1} << 30;      // of a worker
    std::string report;                       // empty: in the folder
    bool resume = false;
    bool retry = false;
    bool force = false;
    bool thumbnails = false;
    bool gather = false;  // GeoPackages in one
    bool quiet = false;
    uint32_t shard = 0;  // of so many
    uint32_t shards = 1;

    // What a name of a shard's own has of it.
    std::string shardName() const {
        return shards == 1 ? "" : '.' + std::to_string(shard) + "-of-" + std::to_string(shards);
    }
    // The one file of all that is gathered, below the folder.
    std::string gatheredName() const { return "gathered" + shardName() + ".gpkg"; }

    // What was made under other settings is made anew: those that make the outputs what they are,
    // as the report has them.
    std::string settings() const {
        std::string text;
        for (const std::string& format : formats) text += "--to " + format + ' ';
        if (!system.empty()) text += "--crs " + system + ' ';
        if (!formats.empty() && encoding != "windows-1252") text += "--encoding " + encoding + ' ';
        if (thumbnails) text += "--thumbnails ";
        if (gather) text += "--gather ";
        if (!text.empty()) text.pop_back();
        return text;
    }
};

}  // namespace program

#endif
