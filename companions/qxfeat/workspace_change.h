// A change to a workspace as a whole: what is moved, listed and erased. It is written down before
// the first step, in a folder of its own beside the datasets, and each step knows whether it was
// taken. So whoever finds the folder of a process that was killed takes the steps that are left;
// where nothing was written down yet nothing was changed, and the folder goes.
//
// All paths are from the workspace on. The folders of changes lie together in one, which is there
// for as long as one of them is; whoever uses one holds the lock on it.
#ifndef COMPANIONS_QXFEAT_WORKSPACE_CHANGE_H
#define COMPANIONS_QXFEAT_WORKSPACE_CHANGE_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "companions/qxfeat/catalogue.h"

namespace qxfeat {

inline constexpr std::string_view kWorkFolders = ".intake";

struct Move {
    enum Kind : int32_t {
        kAway = 0,  // was taken if there is something where it leads
        kIn = 1,    // out of the work folder: was taken if nothing is left there
        kOver = 2   // the same, in the place of a file
    };
    int32_t kind = kAway;
    std::string from;
    std::string to;
};

class WorkspaceChange {
  public:
    // workspace is its path, work the path of the work folder in it.
    WorkspaceChange(std::string workspace, std::string work)
        : workspace_(std::move(workspace)), work_(std::move(work)) {}

    std::vector<Move> moves;       // in this order
    std::vector<Listing> erased;   // from the catalogue
    std::vector<Listing> entered;  // into it, behind the erased ones
    std::vector<int32_t> numbers;  // of tables whose files go

    // Writes the change down and takes all steps. False if it could not be written down, and then
    // nothing has changed, or if a step failed, which is taken when the change is found again. Both
    // are noted as failed writes.
    bool carryOut();
    // Takes what was written down and is left to do. False if a step failed, or what was written
    // down cannot be read. A folder in which nothing was written down is given up.
    bool finish();

  private:
    std::string pathOf(std::string_view inside) const;
    std::string journal() const;
    bool write() const;
    bool read();
    bool takeSteps();
    bool isReached(std::string_view inside) const;
    bool take(const Move& move, bool& taken) const;
    bool renumber(const Move& move);
    bool removeTableFiles() const;
    bool giveUp() const;

    std::string workspace_;
    std::string work_;
};

// Finishes or gives up what processes that are no more have left in a workspace.
bool finishChanges(const std::string& workspace);

}  // namespace qxfeat

#endif
