// A folder for files that nobody is to find later.
#ifndef APP_INTAKE_TEMPORARY_FOLDER_H
#define APP_INTAKE_TEMPORARY_FOLDER_H

#include <cstddef>
#include <string>

namespace program {

// Made in a folder that is given, or in TMPDIR or /tmp, for this user alone, and removed with all
// that is in it when it goes out of scope or the program is ended by a signal (interrupts.h).
class TemporaryFolder {
  public:
    // Throws a std::runtime_error whose text is for the user.
    explicit TemporaryFolder(const std::string& parent = {});
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return path_; }

  private:
    std::string path_;
    std::size_t place_;  // in the list of those that there are
};

// Removes all that is in a folder.
void emptyFolder(const std::string& path) noexcept;

// Removes all temporary folders that there are, on a way out of the program that leaves no scope.
// May be called from another thread than the one that fills them.
void removeTemporaryFolders() noexcept;

}  // namespace program

#endif
