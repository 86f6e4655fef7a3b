// A folder for what is needed while a command runs.
#ifndef APP_INTAKE_TEMPORARY_FOLDER_H
#define APP_INTAKE_TEMPORARY_FOLDER_H

#include <string>

namespace program {

// Made in TMPDIR, or in /tmp; gone with all that is in it when it goes out of scope.
class TemporaryFolder {
  public:
    // Throws a std::runtime_error with the system's reason if it cannot be made.
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

}  // namespace program

#endif
