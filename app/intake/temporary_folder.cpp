#include "app/intake/temporary_folder.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace program {

TemporaryFolder::TemporaryFolder() {
    const char* place = std::getenv("TMPDIR");
    path_ = std::string(place && *place ? place : "/tmp") + "/intake-XXXXXX";
    if (!::mkdtemp(path_.data())) {
        throw std::runtime_error("no temporary folder can be made (" + path_ +
                                 "): " + std::generic_category().message(errno));
    }
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace program
