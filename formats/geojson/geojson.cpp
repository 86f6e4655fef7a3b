#include "formats/geojson/geojson.h"

#include <optional>
#include <stdexcept>

#include "formats/geojson/feature_text.h"
#include "formats/geojson/json_text.h"
#include "formats/names.h"
#include "formats/output.h"

namespace formats::geojson {

namespace {

// What stands around and between features.
struct Form {
    std::string_view ending;
    bool collection;
};
constexpr Form kCollection{".geojson", true};
constexpr Form kLines{".geojsonl", false};

// One file as it grows.
class File {
  public:
    File(const std::string& path, const std::string& target, const Form& form)
        : file_(path, target), form_(form) {}

    // A name of the whole and the code of its reference system, if these are to be told.
    void begin(const std::string& name, int32_t epsg) {
        if (begun_) return;
        begun_ = true;
        if (!form_.collection) return;
        std::string& text = file_.text();
        text += R"({"type":"FeatureCollection",)";
        if (!name.empty()) {
            text += "\n\"name\":";
            appendQuoted(text, name);
            text += ',';
        }
        if (epsg != 0) {
            text +=
                "\n"
                R"("crs":{"type":"name","properties":{"name":"urn:ogc:def:crs:EPSG::)" +
                std::to_string(epsg) + R"("}},)";
        }
        text += "\n\"features\":[";
    }

    // Where the next feature is to be appended.
    std::string& feature() {
        if (form_.collection) file_.text() += first_ ? "\n" : ",\n";
        first_ = false;
        return file_.text();
    }
    void featureEnds() {
        if (!form_.collection) file_.text() += '\n';
        file_.written();
    }

    // With further members of the collection: ,"name":value
    void end(std::string_view members) {
        begin({}, 0);
        if (form_.collection) {
            file_.text() += "\n]";
            file_.text() += members;
            file_.text() += "}\n";
        }
        file_.close();
    }

  private:
    TextFile file_;
    const Form& form_;
    bool begun_ = false;
    bool first_ = true;
};

// What writers to a file and to a folder share.
class Features : public Writer {
  protected:
    Features(const Form& form, const Options& options) : form_(form), options_(options) {}

    void beginFeatures(const Layer& layer, const std::string& layerProperty, File& file,
                       const std::string& target) {
        Transform transform;
        if (!options_.asIs && layer.geometry != GeometryType::kNone) {
            if (options_.toWgs84) transform = options_.toWgs84(layer.system);
            if (!transform) {
                throw std::runtime_error(target +
                                         ": GeoJSON wants longitude and latitude, and there is no "
                                         "way to them from this reference system: " +
                                         layer.system.name +
                                         "; --crs states one, --as-is takes coordinates as they "
                                         "are");
            }
        }
        features_.emplace(layer, std::move(transform), layerProperty, options_.boundingBoxes);
        open_ = &file;
    }
    int32_t codeToTell(const Layer& layer) const { return options_.asIs ? layer.system.epsg : 0; }

    const Form& form_;
    Options options_;

  public:
    bool add(int64_t fid, const Geometry& geometry, std::span<const Value> values) override {
        const bool kept = features_->append(open_->feature(), fid, geometry, values);
        open_->featureEnds();
        return kept;
    }
    void end() override { features_.reset(); }

  private:
    std::optional<FeatureText> features_;
    File* open_ = nullptr;
};

class SingleFile : public Features {
  public:
    SingleFile(const std::string& path, const Form& form, const Options& options)
        : Features(form, options),
          part_(path, Part::Kind::kFile, options.replace),
          file_(part_.path(), part_.target(), form_) {}

    std::string begin(const Layer& layer) override {
        std::string name = names_.take(layer.name.empty() ? "layer" : layer.name);
        file_.begin({}, codeToTell(layer));
        beginFeatures(layer, name, file_, part_.target());
        return name;
    }

    bool text(const Text& text) override {
        if (!form_.collection) return false;
        texts_ += texts_.empty() ? ",\n\"texts\":[\n" : ",\n";
        texts_ += "{\"name\":";
        appendQuoted(texts_, text.name);
        texts_ += ",\"type\":";
        appendQuoted(texts_, text.mimeType);
        for (const auto& [key, value] :
             {std::pair{",\"standard\":", &text.standard}, {",\"layer\":", &text.layer}}) {
            if (value->empty()) continue;
            texts_ += key;
            appendQuoted(texts_, *value);
        }
        texts_ += ",\"text\":";
        appendQuoted(texts_, text.content);
        texts_ += '}';
        return true;
    }

    void finish() override {
        if (!texts_.empty()) texts_ += "\n]";
        file_.end(texts_);
        part_.putInPlace();
    }

  private:
    Part part_;
    File file_;
    UniqueNames names_;
    std::string texts_;  // texts come between features, but stand behind all of them
};

class OneFileEach : public Features {
  public:
    OneFileEach(const std::string& path, const Form& form, const Options& options)
        : Features(form, options), folder_(path, options.replace, form.ending) {}

    std::string begin(const Layer& layer) override {
        const std::string fileName = folder_.nameFor(layer.name, form_.ending);
        std::string name = fileName.substr(0, fileName.size() - form_.ending.size());
        file_.emplace(folder_.pathOf(fileName), folder_.target(), form_);
        file_->begin(name, codeToTell(layer));
        beginFeatures(layer, {}, *file_, folder_.target());
        return name;
    }
    void end() override {
        Features::end();
        file_->end({});
        file_.reset();
    }
    bool text(const Text& text) override {
        folder_.writeText(text);
        return true;
    }
    void finish() override { folder_.putInPlace(); }

  private:
    Folder folder_;
    std::optional<File> file_;
};

class Maker : public WriterMaker {
  public:
    explicit Maker(const Form& form) : form_(form) {}
    std::unique_ptr<Writer> make(const std::string& path, const Options& options) const override {
        if (options.folder) return std::make_unique<OneFileEach>(path, form_, options);
        return std::make_unique<SingleFile>(path, form_, options);
    }

  private:
    const Form& form_;
};

}  // namespace

const WriterMaker& collections() {
    static const Maker maker(kCollection);
    return maker;
}

const WriterMaker& lines() {
    static const Maker maker(kLines);
    return maker;
}

}  // namespace formats::geojson
