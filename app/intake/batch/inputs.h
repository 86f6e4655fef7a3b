// The files that a batch is given: searched in folders, read from lists, named one by one.
#ifndef APP_INTAKE_BATCH_INPUTS_H
#define APP_INTAKE_BATCH_INPUTS_H

#include <cstdint>
#include <memory>
#include <string>

#include "app/intake/batch/folder_walk.h"
#include "app/intake/batch/options.h"
#include "app/intake/batch/path_list.h"
#include "app/intake/batch/places.h"
#include "app/intake/batch/volumes.h"

namespace program {

struct Input {
    std::string path;
    std::string place;  // of its outputs below their folder, without their endings
    Stamp stamp;
    bool mayFollow = false;  // it may be a further volume of another input
    std::string trouble;     // why it is no file that can be read
};

class Inputs {
  public:
    // Throws a std::runtime_error where a list cannot be opened. The options live longer.
    Inputs(const BatchOptions& options, Places& places);

    enum class Step {
        kInput,
        kNone,  // what was found is none, or another shard's
        kWait,  // for descriptor()
        kEnd
    };
    Step next(Input& input);
    int descriptor() const { return list_ ? list_->descriptor() : -1; }

    // Files in folders whose names were not meant, and links to folders.
    uint64_t otherNames() const { return otherNames_; }
    uint64_t linksToFolders() const { return linksToFolders_; }

  private:
    Step take(Input& input, const std::string& place, const IsBeside& isBeside);
    Step takeNamed(Input& input, std::string place);
    bool isMeant(const std::string& place) const;
    void open(const std::string& given);

    const BatchOptions& options_;
    Places& places_;
    std::size_t given_ = 0;
    std::unique_ptr<FolderWalk> walk_;
    std::unique_ptr<PathList> list_;
    uint64_t otherNames_ = 0;
    uint64_t linksToFolders_ = 0;
};

}  // namespace program

#endif
