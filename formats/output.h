// Files and folders that appear under their name only when they are whole.
#ifndef FORMATS_OUTPUT_H
#define FORMATS_OUTPUT_H

#include <cstdio>
#include <functional>
#include <string>
#include <string_view>

#include "formats/names.h"

namespace formats {

// "PATH: No space left on device", thrown as a std::runtime_error. The number is an errno.
[[noreturn]] void failed(const std::string& path, int error);

// The name that an output grows under: a new one beside the path, which ends in .part.
class Part {
  public:
    enum class Kind { kFile, kFolder };

    // Makes an empty file or folder. Throws if that fails, or if the path is there and not to be
    // replaced. A folder that is empty is not there; one that is not is replaced only if all that
    // is in it are files with one of these endings (between blanks).
    Part(std::string path, Kind kind, bool replace, std::string_view endings = {});
    // Removes what has not been put in its place.
    ~Part();
    Part(const Part&) = delete;
    Part& operator=(const Part&) = delete;

    const std::string& target() const { return target_; }
    const std::string& path() const { return path_; }
    void putInPlace();

  private:
    void refuseWhatIsThere() const;

    std::string target_;
    std::string path_;
    std::string endings_;
    Kind kind_;
    bool replace_;
    bool placed_ = false;
};

// A file that is written from front to back in large pieces. Failures name the target. What look,
// if it is there, throws after a piece ends the writing.
class TextFile {
  public:
    TextFile(const std::string& path, std::string target, std::function<void()> look = {});
    ~TextFile();
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;

    // What is to be written next. Append to it and call written() now and then.
    std::string& text() { return text_; }
    void written() {
        if (text_.size() >= kPieceBytes) flush();
    }
    void flush();
    // Throws if what was written did not reach the system.
    void close();

  private:
    static constexpr std::size_t kPieceBytes = 1 << 18;

    std::FILE* file_;
    std::string target_;
    std::function<void()> look_;
    std::string text_;
};

// ".xml" for "text/xml".
std::string_view textEnding(std::string_view mimeType);

// Files that are written one after the other into a folder under names made of names.
class Folder {
  public:
    // Its files have one ending, besides those of texts.
    Folder(const std::string& path, bool replace, std::string_view ending);

    // The name of the new file. The ending has its dot.
    std::string nameFor(std::string_view name, std::string_view ending);
    std::string pathOf(const std::string& fileName) const;
    // Into a file of its own.
    void writeText(const Text& text);
    const std::string& target() const { return part_.target(); }
    void putInPlace() { part_.putInPlace(); }

  private:
    Part part_;
    UniqueNames names_;
};

}  // namespace formats

#endif
