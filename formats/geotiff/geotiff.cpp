#include "formats/geotiff/geotiff.h"

#include "formats/csv/table.h"
#include "formats/files.h"
#include "formats/geotiff/write.h"

namespace formats::geotiff {

namespace {

constexpr std::string_view kEnding = ".tif";
constexpr std::string_view kTableEnding = ".csv";

class Rasters : public Writer {
  public:
    Rasters(const std::string& path, const Options& options)
        : options_(options.rasters),
          files_(options.folder ? filesInFolder(path, options.replace, ".tif .csv")
                                : filesBeside(path, options.replace)) {}

    std::string begin(const Layer& layer) override {
        const NewFile file = files_->add(layer.name, kTableEnding, false);
        table_.emplace(file.path, files_->target(), layer, false);
        return layer.name;
    }
    bool add(int64_t fid, const Geometry& geometry, std::span<const Value> values) override {
        return table_->add(fid, geometry, values);
    }
    void end() override {
        table_->end();
        table_.reset();
    }
    bool text(const Text& text) override {
        const std::string name = text.layer.empty() ? text.name : text.layer + "." + text.name;
        TextFile file(files_->add(name, textEnding(text.mimeType), false).path, files_->target());
        file.text() = text.content;
        file.close();
        return true;
    }
    std::optional<std::string> raster(const Raster& raster) override {
        const NewFile file = files_->add(raster.name, kEnding, true);
        write(raster, options_, file.path, files_->target());
        return raster.name;
    }
    void finish() override { files_->putInPlace(); }

  private:
    RasterOptions options_;
    std::unique_ptr<Files> files_;
    std::optional<csv::Table> table_;
};

}  // namespace

std::unique_ptr<Writer> Maker::make(const std::string& path, const Options& options) const {
    return std::make_unique<Rasters>(path, options);
}

}  // namespace formats::geotiff
