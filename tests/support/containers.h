// Containers as other programs make them.
#ifndef TESTS_SUPPORT_CONTAINERS_H
#define TESTS_SUPPORT_CONTAINERS_H

#include <string>
#include <utility>
#include <vector>

namespace intake::testing {

// Names and the bytes of the files.
using Contents = std::vector<std::pair<std::string, std::string>>;

// format: "zip", "ustar", "v7tar", "pax" or "raw" (one file); filters: "gzip", "bzip2", "xz",
// "zstd", "compress", the last of them outermost. With a password a zip file is encrypted.
std::string packed(const std::string& format, const std::vector<std::string>& filters,
                   const Contents& contents, const std::string& password = "");

}  // namespace intake::testing

#endif
