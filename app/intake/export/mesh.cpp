#include "app/intake/export/mesh.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "app/intake/export/decoder.h"
#include "app/intake/export/layers.h"
#include "app/intake/export/mesh_metres.h"
#include "app/intake/export/surface_parts.h"
#include "app/intake/interrupts.h"
#include "app/intake/utf8.h"
#include "datasets/side_texts.h"

namespace program {

namespace {

using formats::Mesh;

constexpr const char* kLayers[] = {"nodes", "triangles", "hull", "break_lines"};

// Turns node numbers into those of vertices: nodes that nothing asks for are no vertices.
class MeshMaker {
  public:
    MeshMaker(const std::string& path, const ExportOptions& options, ExportReport& report)
        : path_(path), options_(options), report_(report), spots_(readNodes(path)) {
        chosen_.resize(spots_.size());
        for (std::size_t node = 0; node < spots_.size(); ++node) {
            if (!isWhole(spots_[node])) ++heightless_;
            chosen_[node] = wants("nodes") && isWhole(spots_[node]) && isWithin({&spots_[node], 1});
        }
    }

    Mesh mesh() {
        if (wants("triangles")) takeTriangles();
        if (wants("hull")) takeHull();
        if (wants("break_lines")) takeBreakLines();
        takeNodes();
        tell();
        return std::move(mesh_);
    }

  private:
    bool wants(const char* layer) const {
        return options_.layers.empty() ||
               std::ranges::find(options_.layers, layer) != options_.layers.end();
    }
    static bool isWhole(const Spot& spot) {
        return std::ranges::all_of(spot, [](double each) { return std::isfinite(each); });
    }
    bool isWithin(std::span<const Spot> spots) const {
        return !options_.within || datasets::meets(boxOf(spots), *options_.within);
    }
    bool isWholeNode(int32_t number) const {
        return isNode(number, spots_) && isWhole(spotOf(number, spots_));
    }
    // Node numbers from 0, until takeNodes.
    template <class Numbers, std::size_t count>
    void take(std::vector<Numbers>& list, const std::array<int32_t, count>& nodes) {
        Numbers numbers;
        for (std::size_t each = 0; each < count; ++each) {
            numbers[each] = static_cast<uint32_t>(nodes[each] - 1);
            chosen_[numbers[each]] = true;
        }
        list.push_back(numbers);
    }

    void takeTriangles() {
        constexpr int64_t kBetweenLooks = 65536;
        Mask mask(path_);
        for (const datasets::Triangle& triangle : datasets::triangles(path_)) {
            if (!triangle.nodes) break;
            if (triangle.number % kBetweenLooks == 0) throwIfInterrupted();
            datasets::Triple nodes = *triangle.nodes;
            if (!mask.shows()) {
                ++masked_;
            } else if (!std::ranges::all_of(nodes,
                                            [&](int32_t each) { return isWholeNode(each); })) {
                ++incomplete_;
                report_.loss("triangles", "a corner is no node, or has no height",
                             std::to_string(triangle.number));
            } else {
                const Spot corners[] = {spotOf(nodes[0], spots_), spotOf(nodes[1], spots_),
                                        spotOf(nodes[2], spots_)};
                if (isClockwise(corners[0], corners[1], corners[2])) std::swap(nodes[1], nodes[2]);
                if (isWithin(corners)) take(mesh_.triangles, nodes);
            }
        }
    }

    bool takeEdge(std::vector<Mesh::Edge>& edges, int32_t from, int32_t to) {
        if (!isWholeNode(from) || !isWholeNode(to)) return false;
        const Spot ends[] = {spotOf(from, spots_), spotOf(to, spots_)};
        if (isWithin(ends)) take(edges, std::array{from, to});
        return true;
    }

    void takeHull() {
        eachHullRing(path_, spots_, [&](const std::vector<int32_t>& ring) {
            if (ring.size() == 1) return report_.loss("hull", "a single node makes no line");
            for (std::size_t each = 0; each < ring.size(); ++each) {
                if (!takeEdge(mesh_.hull, ring[each], ring[(each + 1) % ring.size()])) ++hullGaps_;
            }
        });
    }

    void takeBreakLines() {
        for (const auto& [from, to] : breakLinesOf(path_)) takeEdge(mesh_.breakLines, from, to);
    }

    void takeNodes() {
        std::vector<uint32_t> vertices(spots_.size());
        auto stored = datasets::nodes(path_);
        bool coded = true;
        for (std::size_t node = 0; node < spots_.size(); ++node) {
            const int32_t* code = stored.next() ? stored.current().identifier : nullptr;
            coded = coded && code;
            if (!chosen_[node]) continue;
            vertices[node] = static_cast<uint32_t>(mesh_.vertices.size());
            mesh_.vertices.push_back(spots_[node]);
            if (coded) mesh_.codes.push_back(*code);
        }
        // A member that is too short gives codes to none.
        if (!coded && !mesh_.codes.empty()) {
            report_.loss("nodes", "the codes end before the nodes do");
            mesh_.codes.clear();
        }
        const auto renumber = [&](auto& list) {
            for (auto& numbers : list) {
                for (uint32_t& each : numbers) each = vertices[each];
            }
        };
        renumber(mesh_.triangles);
        renumber(mesh_.hull);
        renumber(mesh_.breakLines);
    }

    void tell() {
        const auto count = [](const auto& list) { return static_cast<int64_t>(list.size()); };
        if (heightless_ != 0) {
            report_.loss("nodes", "has no height and is left out", {}, heightless_);
        }
        if (hullGaps_ != 0) {
            report_.loss("hull", "an end has no height; the line is left out", {}, hullGaps_);
        }
        if (masked_ != 0) {
            report_.note("triangles that the mask hides are left out: " + std::to_string(masked_));
        }
        const LayerReport layers[] = {
            {kLayers[0], count(mesh_.vertices), heightless_},
            {kLayers[1], count(mesh_.triangles), masked_ + incomplete_},
            {kLayers[2], count(mesh_.hull), hullGaps_},
            {kLayers[3], count(mesh_.breakLines), 0},
        };
        for (const LayerReport& layer : layers) {
            if (layer.features != 0 || layer.leftOut != 0) report_.layers.push_back(layer);
        }
    }

    const std::string& path_;
    const ExportOptions& options_;
    ExportReport& report_;
    std::vector<Spot> spots_;
    std::vector<bool> chosen_;
    Mesh mesh_;
    int64_t heightless_ = 0;
    int64_t masked_ = 0;
    int64_t incomplete_ = 0;
    int64_t hullGaps_ = 0;
};

void checkNames(const ExportOptions& options) {
    for (const std::string& name : options.layers) {
        if (std::ranges::find(kLayers, name) != std::end(kLayers)) continue;
        std::string text = options.dataset + ": has no layer " + name + "; there are";
        for (const char* each : kLayers) (text += each == kLayers[0] ? " " : ", ") += each;
        throw std::runtime_error(text);
    }
}

void takeTexts(Mesh& mesh, const std::string& path, const ExportOptions& options,
               ExportReport& report) {
    Decoder decoder(options.encoding);
    struct {
        datasets::SideText which;
        const char* name;
    } constexpr kTexts[] = {{datasets::SideText::projection, "projection"},
                            {datasets::SideText::log, "log"},
                            {datasets::SideText::metadata, "metadata"}};
    for (const auto& [which, name] : kTexts) {
        Mesh::Note note{name, {}};
        std::string room;
        for (const std::string& line : datasets::sideText(path, which)) {
            note.content.append(decoder.decode(line, isUtf8(line), room)).append("\n");
        }
        if (!note.content.empty()) mesh.notes.push_back(std::move(note));
        if (const int64_t undecoded = decoder.takeUndecoded(); undecoded != 0) {
            report.loss(name, "a byte is no character of " + options.encoding, {}, undecoded);
        }
    }
}

}  // namespace

Mesh meshOf(const datasets::Dataset& dataset, const crs::ReferenceSystem& system,
            const ExportOptions& options, ExportReport& report) {
    if (dataset.kind != "TIN") {
        throw NotForThisKind(dataset.path + ": a " + dataset.kind +
                             " is no surface, and the format holds nothing else");
    }
    checkNames(options);
    Mesh mesh = MeshMaker(dataset.path, options, report).mesh();
    mesh.name = nameOf(dataset.path);
    mesh.system = system;
    mesh.metres = metresOf(mesh);
    takeTexts(mesh, dataset.path, options, report);
    for (const datasets::TablePlace& place : datasets::tablesOf(dataset.path)) {
        report.loss(toUtf8(place.name), "the format has no place for this table");
    }
    return mesh;
}

}  // namespace program
