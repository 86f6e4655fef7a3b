#include "app/intake/export/target.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "app/intake/interrupts.h"
#include "app/intake/utf8.h"

namespace program {

Target::Target(const ExportOptions& options, formats::Writer& writer, bool takesRasters,
               crs::ReferenceSystem system, ExportReport& report, Console& console)
    : options_(options),
      writer_(writer),
      takesRasters_(takesRasters),
      system_(std::move(system)),
      report_(report),
      console_(console),
      decoder_(options.encoding) {}

bool Target::wants(const std::string& layer) {
    offered_.push_back(layer);
    return mayWant(layer);
}

bool Target::mayWant(const std::string& layer) const {
    return options_.layers.empty() ||
           std::ranges::find(options_.layers, layer) != options_.layers.end();
}

void Target::checkNames() const {
    for (const std::string& name : options_.layers) {
        if (std::ranges::find(offered_, name) != offered_.end()) continue;
        std::string text = options_.dataset + ": has no layer " + name + "; there are";
        for (const std::string& each : offered_)
            text += (&each == &offered_[0] ? " " : ", ") + each;
        throw std::runtime_error(text);
    }
}

void Target::begin(formats::Layer layer, bool evenEmpty) {
    layer_ = std::move(layer);
    if (layer_.geometry != formats::GeometryType::kNone) layer_.system = system_;
    tally_ = {};
    started_ = false;
    if (evenEmpty) start();
}

void Target::start() {
    tally_.name = writer_.begin(layer_);
    started_ = true;
}

bool Target::add(int64_t fid, const formats::Geometry& geometry,
                 std::span<const formats::Value> values) {
    constexpr int64_t kBetweenLooks = 4096;
    if (!started_) start();
    const bool whole = writer_.add(fid, geometry, values);
    if (!whole) {
        incomplete();
        report_.loss(tally_.name, "a geometry that cannot be written is left out",
                     std::to_string(fid));
    }
    if (++tally_.features % kBetweenLooks == 0) {
        throwIfInterrupted();
        showProgress();
    }
    return whole;
}

bool Target::addPoint(int64_t fid, const datasets::Point& place,
                      std::span<const formats::Value> values) {
    return addLine(fid, {&place, 1}, values);
}

bool Target::addLine(int64_t fid, std::span<const datasets::Point> line,
                     std::span<const formats::Value> values) {
    const std::span<const double> part = datasets::coordinates(line);
    if (line.empty()) return add(fid, {}, values);
    return add(fid, {{&part, 1}, {}}, values);
}

void Target::unread(int64_t records) {
    if (records <= 0) return;
    report_.loss(started_ ? tally_.name : layer_.name, "records could not be read", {}, records);
}

void Target::end() {
    if (!started_) return;
    writer_.end();
    started_ = false;
    endProgress();
    if (const int64_t undecoded = decoder_.takeUndecoded(); undecoded != 0) {
        report_.loss(tally_.name, "a byte is no character of " + options_.encoding, {}, undecoded);
    }
    report_.layers.push_back(tally_);
}

void Target::raster(formats::Raster raster, std::string_view type) {
    constexpr int64_t kCellsBetweenLooks = 1 << 20;
    LayerReport tally;
    tally.columns = raster.columns;
    tally.rows = raster.rows;
    tally.bands = static_cast<int32_t>(raster.bands.size());
    tally.type = type;
    int64_t cells = 0;
    const auto read = std::move(raster.read);
    raster.read = [&](std::size_t band, int32_t row, std::span<std::byte> bytes) {
        read(band, row, bytes);
        if ((cells += raster.columns) < kCellsBetweenLooks) return;
        cells = 0;
        throwIfInterrupted();
        if (!console_.terminal || options_.quiet) return;
        console_.errors << "\r\033[K" << shown(raster.name) << " row " << row << std::flush;
        progress_ = true;
    };
    raster.tell = [&](const std::string& what) { report_.note(raster.name + ": " + what); };
    tally.name = writer_.raster(raster).value_or(raster.name);
    endProgress();
    report_.layers.push_back(tally);
}

void Target::endProgress() {
    if (std::exchange(progress_, false)) console_.errors << "\r\033[K" << std::flush;
}

void Target::text(std::string_view name, std::string_view layer, std::string_view bytes) {
    std::string room;
    formats::Text text;
    text.name = name;
    text.layer = layer;
    if (bytes.starts_with("<?xml") || bytes.starts_with("<metadata")) text.mimeType = "text/xml";
    text.content = decoder_.decode(bytes, isUtf8(bytes), room);
    if (const int64_t undecoded = decoder_.takeUndecoded(); undecoded != 0) {
        report_.loss(name, "a byte is no character of " + options_.encoding, {}, undecoded);
    }
    if (!writer_.text(text)) report_.loss(layer, "the format has no place for this text", name);
}

void Target::showProgress() {
    constexpr int64_t kBetweenLines = 65536;
    if (!console_.terminal || options_.quiet || tally_.features % kBetweenLines != 0) return;
    console_.errors << "\r\033[K" << shown(tally_.name) << ' ' << tally_.features << std::flush;
    progress_ = true;
}

}  // namespace program
