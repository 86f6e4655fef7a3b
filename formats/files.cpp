#include "formats/files.h"

#include <deque>
#include <stdexcept>

namespace formats {

namespace {

std::string lastOf(const std::string& path) { return path.substr(path.find_last_of('/') + 1); }

class InFolder : public Files {
  public:
    InFolder(const std::string& path, bool replace, std::string_view endings)
        : folder_(path, replace, endings) {}
    NewFile add(std::string_view name, std::string_view ending, bool) override {
        const std::string file = folder_.nameFor(name, ending);
        return {folder_.pathOf(file), file};
    }
    const std::string& target() const override { return folder_.target(); }
    void putInPlace() override { folder_.putInPlace(); }

  private:
    Folder folder_;
};

class Beside : public Files {
  public:
    Beside(const std::string& path, bool replace)
        : main_(path, Part::Kind::kFile, replace), replace_(replace) {
        names_.takeExactly(lastOf(path));
        const std::string last = lastOf(path);
        stem_ = path.substr(0, path.size() - last.size()) + last.substr(0, last.rfind('.'));
    }
    NewFile add(std::string_view name, std::string_view ending, bool main) override {
        if (main) {
            if (taken_) {
                throw std::runtime_error(main_.target() +
                                         ": a file holds one of them, and there are several; "
                                         "they go into a folder, or with --bands into one");
            }
            taken_ = true;
            own_ = std::string(name) + ".";
            return {main_.path(), lastOf(main_.target())};
        }
        // The output's name stands for that of the one that it is named after.
        if (taken_ && name.starts_with(own_)) name.remove_prefix(own_.size());
        const std::string last = "." + fileName(name);
        std::string path = stem_ + last + std::string(ending);
        for (int count = 2; !names_.takeExactly(lastOf(path)); ++count) {
            path = stem_ + last + "_" + std::to_string(count) + std::string(ending);
        }
        const Part& part = parts_.emplace_back(path, Part::Kind::kFile, replace_);
        return {part.path(), lastOf(path)};
    }
    const std::string& target() const override { return main_.target(); }
    void putInPlace() override {
        // Without it the rest would stand beside nothing.
        if (!taken_) throw std::runtime_error(main_.target() + ": there is nothing to write");
        for (Part& each : parts_) each.putInPlace();
        main_.putInPlace();
    }

  private:
    Part main_;
    bool replace_;
    bool taken_ = false;
    std::string stem_;
    std::string own_;
    std::deque<Part> parts_;
    UniqueNames names_;
};

}  // namespace

std::unique_ptr<Files> filesInFolder(const std::string& path, bool replace,
                                     std::string_view endings) {
    return std::make_unique<InFolder>(path, replace, endings);
}

std::unique_ptr<Files> filesBeside(const std::string& path, bool replace) {
    return std::make_unique<Beside>(path, replace);
}

}  // namespace formats
