// Where the layers of a dataset go: a writer of some format, what was asked of it, and the tally.
#ifndef APP_INTAKE_EXPORT_TARGET_H
#define APP_INTAKE_EXPORT_TARGET_H

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/intake/export/decoder.h"
#include "app/intake/export/export.h"
#include "app/intake/export/report.h"
#include "datasets/point.h"
#include "formats/writer.h"

namespace program {

class Target {
  public:
    Target(const ExportOptions& options, formats::Writer& writer, bool takesRasters,
           crs::ReferenceSystem system, ExportReport& report, Console& console);
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    const ExportOptions& options() const { return options_; }
    bool takesRasters() const { return takesRasters_; }
    ExportReport& report() { return report_; }
    const crs::ReferenceSystem& system() const { return system_; }
    Decoder& decoder() { return decoder_; }

    // Whether a layer of this name was asked for. Each that is asked about counts as one that the
    // dataset could have.
    bool wants(const std::string& layer);
    // The same, where it is not known yet whether the dataset has it.
    bool mayWant(const std::string& layer) const;
    // Throws a std::runtime_error if a layer was asked for that the dataset does not have.
    void checkNames() const;

    // Begins a layer. It is written with its first feature, or right away where an empty one is to
    // be seen.
    void begin(formats::Layer layer, bool evenEmpty = false);
    // A feature with its values; false if the writer could not take its geometry. Ends the export
    // (Interrupted) if the user asked for that.
    bool add(int64_t fid, const formats::Geometry& geometry,
             std::span<const formats::Value> values);
    bool addPoint(int64_t fid, const datasets::Point& place,
                  std::span<const formats::Value> values);
    bool addLine(int64_t fid, std::span<const datasets::Point> line,
                 std::span<const formats::Value> values);
    // A feature of the layer is there, but not all of its geometry.
    void incomplete() { ++tally_.leftOut; }
    // So many records of the layer could not be read.
    void unread(int64_t records);
    void end();

    // A raster whose type is told by a word.
    void raster(formats::Raster raster, std::string_view type);

    // A text that belongs to the dataset, or to one of its layers, as bytes line by line.
    void text(std::string_view name, std::string_view layer, std::string_view bytes);

  private:
    void start();
    void showProgress();
    void endProgress();

    const ExportOptions& options_;
    formats::Writer& writer_;
    bool takesRasters_;
    crs::ReferenceSystem system_;
    ExportReport& report_;
    Console& console_;
    Decoder decoder_;
    std::vector<std::string> offered_;
    formats::Layer layer_;
    LayerReport tally_;
    bool started_ = false;
    bool progress_ = false;  // a line of it is on the screen
};

}  // namespace program

#endif
