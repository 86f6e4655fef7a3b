// The files of an output of several: all in a folder, or one under the output's name and the rest
// beside it.
#ifndef FORMATS_FILES_H
#define FORMATS_FILES_H

#include <memory>
#include <string>
#include <string_view>

#include "formats/output.h"

namespace formats {

// A file that grows: where, and what its name will be.
struct NewFile {
    std::string path;
    std::string name;  // without its folder
};

class Files {
  public:
    virtual ~Files() = default;
    // A file for something of a name. The ending has its dot; main is the one file that the output
    // is named after, where it is not a folder.
    virtual NewFile add(std::string_view name, std::string_view ending, bool main) = 0;
    virtual const std::string& target() const = 0;
    virtual void putInPlace() = 0;
};

// A folder, which is replaced only where all in it has one of the endings or is a text.
std::unique_ptr<Files> filesInFolder(const std::string& path, bool replace,
                                     std::string_view endings);
// For a raster X, soil.tif with soil.VAT.csv beside it for a table X.VAT, and soil.log.txt for a
// text.
std::unique_ptr<Files> filesBeside(const std::string& path, bool replace);

}  // namespace formats

#endif
