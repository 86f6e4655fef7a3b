// A list of paths, as find prints them.
#ifndef APP_INTAKE_BATCH_PATH_LIST_H
#define APP_INTAKE_BATCH_PATH_LIST_H

#include <string>

namespace program {

class PathList {
  public:
    // Of a file, or of standard input for "-". Throws a std::runtime_error whose text is for the
    // user.
    explicit PathList(const std::string& file);
    ~PathList();
    PathList(const PathList&) = delete;
    PathList& operator=(const PathList&) = delete;

    enum class Step { kPath, kEnd, kWait };
    // The next path: of a line or, in a list that has zeros among its first bytes (find -print0),
    // up to the next zero. With wait unset a list that has nothing more yet is not waited for.
    Step next(std::string& path, bool wait);
    int descriptor() const { return descriptor_; }

  private:
    bool fill(bool wait);

    std::string file_;
    int descriptor_;
    std::string bytes_;
    std::size_t at_ = 0;
    char separator_ = '\0';
    bool begun_ = false;
    bool ended_ = false;
};

}  // namespace program

#endif
