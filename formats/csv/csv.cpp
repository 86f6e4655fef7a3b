#include "formats/csv/csv.h"

#include <optional>
#include <stdexcept>

#include "formats/csv/well_known_text.h"
#include "formats/names.h"
#include "formats/numbers.h"
#include "formats/output.h"

namespace formats::csv {

namespace {

constexpr std::string_view kEnding = ".csv";

void appendField(std::string& text, std::string_view field) {
    if (!field.empty() && field.find_first_of(",\"\r\n") == std::string_view::npos &&
        field.front() != ' ' && field.back() != ' ') {
        text += field;
        return;
    }
    text += '"';
    for (const char c : field) {
        if (c == '"') text += c;
        text += c;
    }
    text += '"';
}

void appendValue(std::string& text, const Value& value, const Column& column) {
    if (const auto* integer = std::get_if<int64_t>(&value)) {
        appendInteger(text, *integer);
    } else if (const auto* real = std::get_if<double>(&value)) {
        appendReal(text, *real, column);
    } else if (const auto* field = std::get_if<std::string_view>(&value)) {
        appendField(text, *field);
    } else if (const auto* date = std::get_if<Date>(&value)) {
        appendDate(text, *date);
    }
}

// One file as it grows.
class Table {
  public:
    Table(const std::string& path, const std::string& target, const Layer& layer,
          bool wellKnownText)
        : file_(path, target),
          columns_(layer.columns),
          geometry_(wellKnownText ? layer.geometry : GeometryType::kNone) {
        std::string& text = file_.text();
        text += "fid";
        for (const std::string& name : columnNames(columns_)) {
            text += ',';
            appendField(text, name);
        }
        if (geometry_ != GeometryType::kNone) text += ",geom";
        text += "\r\n";
    }

    bool add(int64_t fid, const Geometry& geometry, std::span<const Value> values) {
        std::string& text = file_.text();
        appendInteger(text, fid);
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            text += ',';
            appendValue(text, values[i], columns_[i]);
        }
        bool kept = true;
        if (geometry_ != GeometryType::kNone) {
            text += ',';
            if (!geometry.empty()) {
                kept = isFinite(geometry);
                if (kept) appendQuotedWellKnownText(text, geometry_, geometry);
            }
        }
        text += "\r\n";
        file_.written();
        return kept;
    }
    void end() { file_.close(); }

  private:
    TextFile file_;
    std::vector<Column> columns_;
    GeometryType geometry_;
};

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
