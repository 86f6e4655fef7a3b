#include "formats/csv/csv.h"

#include <optional>
#include <stdexcept>

#include "formats/csv/table.h"

namespace formats::csv {

namespace {

constexpr std::string_view kEnding = ".csv";

class Tables : public Writer {
  public:
    bool add(int64_t fid, const Geometry& geometry, std::span<const Value> values) override {
        return table_->add(fid, geometry, values);
    }
    void end() override {
        table_->end();
        table_.reset();
    }

  protected:
    std::optional<Table> table_;
};

class SingleFile : public Tables {
  public:
    SingleFile(const std::string& path, const Options& options)
        : part_(path, Part::Kind::kFile, options.replace), wellKnownText_(options.wellKnownText) {}

    std::string begin(const Layer& layer) override {
        if (begun_) {
            throw std::runtime_error(part_.target() +
                                     ": a file holds one table, and there are several; they go "
                                     "into a folder");
        }
        begun_ = true;
        table_.emplace(part_.path(), part_.target(), layer, wellKnownText_);
        return layer.name;
    }
    bool text(const Text&) override { return false; }
    void finish() override { part_.putInPlace(); }

  private:
    Part part_;
    bool wellKnownText_;
    bool begun_ = false;
};

class OneFileEach : public Tables {
  public:
    OneFileEach(const std::string& path, const Options& options)
        : folder_(path, options.replace, kEnding), wellKnownText_(options.wellKnownText) {}

    std::string begin(const Layer& layer) override {
        const std::string fileName = folder_.nameFor(layer.name, kEnding);
        table_.emplace(folder_.pathOf(fileName), folder_.target(), layer, wellKnownText_);
        return fileName.substr(0, fileName.size() - kEnding.size());
    }
    bool text(const Text& text) override {
        folder_.writeText(text);
        return true;
    }
    void finish() override { folder_.putInPlace(); }

  private:
    Folder folder_;
    bool wellKnownText_;
};

class Maker : public WriterMaker {
  public:
    std::unique_ptr<Writer> make(const std::string& path, const Options& options) const override {
        if (options.folder) return std::make_unique<OneFileEach>(path, options);
        return std::make_unique<SingleFile>(path, options);
    }
};

}  // namespace

const WriterMaker& tables() {
    static const Maker maker;
    return maker;
}

}  // namespace formats::csv
