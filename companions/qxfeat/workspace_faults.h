// What is wrong in a workspace, and how it is mended.
#ifndef COMPANIONS_QXFEAT_WORKSPACE_FAULTS_H
#define COMPANIONS_QXFEAT_WORKSPACE_FAULTS_H

#include <cstdint>
#include <string>
#include <vector>

#include "companions/qxfeat/catalogue.h"
#include "host/qxfeat/workspace_check.h"

namespace qxfeat {

struct Fault {
    QxFault fault{};
    std::string about;  // a path, or the name of a table
    QxMending mending = QX_MENDS_NOT;
};

class WorkspaceFaults {
  public:
    explicit WorkspaceFaults(std::string workspace);

    const std::vector<Fault>& all() const { return faults_; }
    // False if it cannot be mended, or is no more what it was.
    bool mend(const Fault& fault) const;

  private:
    void checkTables();
    void checkUnlisted(const std::vector<Listing>& listed);
    void checkFiles(const std::string& dataset);
    void checkRecords(const std::string& path, bool mustBeRecords);

    std::string workspace_;
    std::string info_;
    std::vector<Fault> faults_;
    std::vector<Listing> unlisted_;  // tables whose files are sound, that a damaged list lacks
};

}  // namespace qxfeat

#endif
