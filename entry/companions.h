// The companion libraries in the process, for as long as an import runs.
#ifndef ENTRY_COMPANIONS_H
#define ENTRY_COMPANIONS_H

#include <array>
#include <cstdint>

#include "entry/platform.h"

namespace intake {

struct CompanionNames {
    const char* base = "qxbase.DLL";
    const char* feature = "qxfeat.DLL";
    const char* grid = "qxgridio.DLL";
};

class Companions {
  public:
    // Loads the three, in their order. One that does not load is reported, in a box or with quiet
    // on standard output, and nothing else comes of it: the process has them linked in any case.
    explicit Companions(int32_t quiet, const CompanionNames& names = {});
    ~Companions();
    Companions(const Companions&) = delete;
    Companions& operator=(const Companions&) = delete;

  private:
    LibraryHandle base_;
    LibraryHandle feature_;
    LibraryHandle grid_;
};

}  // namespace intake

#endif
