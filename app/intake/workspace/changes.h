// intake remove, intake rename and intake import --replace, and what they all begin with.
#ifndef APP_INTAKE_WORKSPACE_CHANGES_H
#define APP_INTAKE_WORKSPACE_CHANGES_H

#include <cstdint>
#include <string>
#include <vector>

#include "app/intake/console.h"

namespace program {

// The workspace in which a dataset lies, "." for a name alone.
std::string workspaceOf(const std::string& dataset);

// Brings to its end what a command that was killed began in a workspace; what cannot be is told.
void finishChanges(const std::string& workspace, Console& console);

// Removes datasets, each after it was asked for, unless yes. Gives the exit status.
int removeDatasets(const std::vector<std::string>& paths, bool yes, Console& console);

int renameDataset(const std::string& path, const std::string& name, Console& console);

// A dataset that is imported beside the one that it is to replace.
class Replacement {
  public:
    // Throws a std::runtime_error where that cannot be replaced; it is as it was then.
    explicit Replacement(const std::string& dataset);
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    // The path to import to.
    const std::string& beside() const { return beside_; }
    // A text that names it, as one that names the dataset.
    std::string shown(std::string text) const;
    // Puts what was imported in the place of the dataset. Throws a std::runtime_error where that
    // cannot be.
    void put();

  private:
    void addOld(const std::string& path);

    std::string dataset_;
    std::string beside_;
    std::vector<std::string> members_;  // of a stack: its grids go with it
    int32_t change_ = 0;
};

}  // namespace program

#endif
