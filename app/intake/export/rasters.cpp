// Grids, lattices and stacks as rasters.
#include <cmath>
#include <set>

#include "app/intake/export/layers.h"
#include "app/intake/export/raster_cells.h"
#include "app/intake/export/systems.h"
#include "app/intake/utf8.h"
#include "datasets/stacks.h"
#include "formats/numbers.h"

namespace program {

namespace {

using datasets::Box;
using datasets::Dataset;

// Columns and rows that are written.
struct Window {
    int32_t column = 0;
    int32_t row = 0;
    int32_t columns = 0;
    int32_t rows = 0;
    bool whole = true;
};

// The first of so many cells that meets a stretch, and the one behind the last.
std::array<int32_t, 2> meeting(double from, double to, double start, double size, bool points,
                               int32_t count) {
    const double low = (from - start) / size;
    const double high = (to - start) / size;
    const auto inside = [count](double place) {
        return static_cast<int32_t>(std::isnan(place) ? 0 : std::clamp<double>(place, 0, count));
    };
    // Areas meet where they touch.
    return {inside(points ? std::ceil(low) : std::ceil(low) - 1), inside(std::floor(high) + 1)};
}

Window windowOf(const datasets::Raster& raster, int32_t rows, bool points,
                const std::optional<Box>& within) {
    const QxRaster& shape = raster.shape();
    Window window{0, 0, shape.columns, rows, true};
    if (!within) return window;
    const auto [left, right] = meeting((*within)[0], (*within)[2], shape.lowerLeft[0],
                                       shape.cellSize[0], points, shape.columns);
    const auto [top, bottom] = meeting(-(*within)[3], -(*within)[1], -shape.upperRight[1],
                                       shape.cellSize[1], points, rows);
    return {left, top, right - left, bottom - top, false};
}

// How many rows are written: all that the header claims where what is stored bears it out, so that
// memory and time follow what is there.
int32_t rowsOf(const datasets::Raster& raster, const Dataset& dataset, Target& target) {
    constexpr int64_t kTimes = 16;
    constexpr int64_t kAlways = 4'000'000;
    const QxRaster& shape = raster.shape();
    const int64_t claimed = int64_t{shape.columns} * shape.rows;
    const int64_t stored = int64_t{shape.columns} * shape.rowsWritten;
    const bool borneOut = claimed <= kTimes * stored + kAlways;
    if (shape.columns <= 0 || shape.rows <= 0 || (!borneOut && shape.rowsWritten == 0)) {
        throw std::runtime_error(dataset.path + ": has no cells");
    }
    if (shape.rowsWritten < shape.rows) {
        target.report().loss(
            nameOf(dataset.path),
            borneOut ? "a row is not stored, and has no data" : "a row is not stored, and left out",
            {}, shape.rows - shape.rowsWritten);
    }
    return borneOut ? shape.rows : shape.rowsWritten;
}

formats::Raster frameOf(const datasets::Raster& raster, const Dataset& dataset, bool points,
                        const Window& window, const CellForm& form, Target& target) {
    const QxRaster& shape = raster.shape();
    formats::Raster frame;
    frame.name = nameOf(dataset.path);
    frame.description = dataset.kind + " " + frame.name;
    frame.columns = window.columns;
    frame.rows = window.rows;
    frame.type = form.type;
    frame.noData = form.noData;
    frame.points = points;
    frame.place = {shape.lowerLeft[0] + window.column * shape.cellSize[0],
                   shape.upperRight[1] - window.row * shape.cellSize[1]};
    frame.cellSize = {shape.cellSize[0], shape.cellSize[1]};
    const bool placed = std::isfinite(frame.place[0]) && std::isfinite(frame.place[1]) &&
                        std::isfinite(frame.cellSize[0]) && std::isfinite(frame.cellSize[1]) &&
                        frame.cellSize[0] > 0 && frame.cellSize[1] > 0;
    if (!placed) {
        target.report().loss(frame.name, "its cells have no size or no place, and get none");
    }
    if (form.noData && raster.isInteger() && *form.noData != QX_MISSING_INTEGER) {
        std::string text = frame.name + ": cells without data hold ";
        formats::appendShortest(text, *form.noData);
        target.report().note(text + ".");
    }
    return frame;
}

// The range in a lattice's header came with the file, whatever its heights are.
std::optional<std::array<double, 2>> rangeOf(const datasets::Raster& raster, bool points,
                                             const CellSurvey& cells, const std::string& name,
                                             Target& target) {
    if (!cells.range || !std::isfinite((*cells.range)[0]) || !std::isfinite((*cells.range)[1])) {
        return {};
    }
    if (!points) return cells.range;
    constexpr double kRounded = 1e-6;
    const auto& told = raster.shape().range;
    const auto& [lowest, highest] = *cells.range;
    if (told[0] <= lowest + kRounded * std::fabs(lowest) &&
        highest - kRounded * std::fabs(highest) <= told[1] && std::isfinite(told[0]) &&
        std::isfinite(told[1])) {
        return std::array{told[0], told[1]};
    }
    target.report().note(name +
                         ": the range of its header is not that of its heights, which is "
                         "given instead.");
    return cells.range;
}

// Otherwise nothing of it is read.
bool takes(Target& target, const std::string& name) {
    if (!target.takesRasters() && !target.options().rastersElsewhere) {
        target.report().loss(name, "the format has no place for a raster");
    }
    return target.takesRasters();
}

void exportRaster(Target& target, const Dataset& dataset, QxRasterKind kind,
                  crs::ReferenceSystem system) {
    const std::string name = nameOf(dataset.path);
    if (!target.wants(name) || !takes(target, name)) return;
    const datasets::Raster raster(dataset.path, kind);
    if (!raster) throw std::runtime_error(dataset.path + ": cannot be read");
    const int32_t rows = rowsOf(raster, dataset, target);
    const bool points = kind == QX_LATTICE;
    const Window window = windowOf(raster, rows, points, target.options().within);
    if (window.columns <= 0 || window.rows <= 0) {
        target.report().loss(name, "no cell meets the rectangle");
        return;
    }
    const CellSurvey cells = survey(raster, points);
    const CellForm form = formFor({&cells, 1}, target.options().cellType, dataset.path);
    formats::Raster out = frameOf(raster, dataset, points, window, form, target);
    out.classes = raster.isInteger();
    out.system = std::move(system);
    out.bands.push_back({name, {}});
    if (window.whole) out.bands[0].range = rangeOf(raster, points, cells, name, target);
    out.read = [&](std::size_t, int32_t row, std::span<std::byte> bytes) {
        readCells(raster, form, window.row + row, window.column, bytes);
    };
    target.raster(std::move(out), form.typeName);
}

// Of a member by its own projection text, else that of the stack.
crs::ReferenceSystem systemOfMember(Target& target, const Dataset& member) {
    const std::string& byHand = target.options().system;
    crs::ReferenceSystem own =
        byHand.empty() ? systemOf(member.path, byHand, target.report()) : crs::ReferenceSystem();
    return own.text.empty() ? target.system() : own;
}

bool sameFrame(const QxRaster& one, const QxRaster& other) {
    return one.columns == other.columns && one.rows == other.rows &&
           std::ranges::equal(one.lowerLeft, other.lowerLeft) &&
           std::ranges::equal(one.upperRight, other.upperRight) &&
           std::ranges::equal(one.cellSize, other.cellSize);
}

// The members that are there, each once.
std::vector<Dataset> membersOf(Target& target, const Dataset& stack) {
    std::vector<Dataset> members;
    std::set<std::string> seen;
    for (Dataset& each : datasets::memberGrids(stack.path)) {
        if (seen.insert(each.name).second) members.push_back(std::move(each));
    }
    for (const std::string& name : datasets::stackMembers(stack.path)) {
        if (!seen.contains(name)) {
            target.report().loss(nameOf(stack.path), "a member is not there", toUtf8(name));
        }
    }
    return members;
}

void exportAsBands(Target& target, const Dataset& stack, const std::vector<Dataset>& members) {
    if (!target.wants(nameOf(stack.path)) || !takes(target, nameOf(stack.path))) return;
    if (members.empty()) throw std::runtime_error(stack.path + ": has no grid");
    // One is open at a time: there may be more of them than files that can be.
    std::size_t open = 0;
    datasets::Raster raster(members[0].path, QX_GRID);
    const datasets::Raster first(members[0].path, QX_GRID);
    const auto go = [&](std::size_t member) {
        if (std::exchange(open, member) != member) raster = {members[member].path, QX_GRID};
        if (!raster) throw std::runtime_error(members[member].path + ": cannot be read");
    };
    std::vector<CellSurvey> surveys;
    int32_t rows = 0;
    for (std::size_t member = 0; member < members.size(); ++member) {
        go(member);
        rows = std::max(rows, rowsOf(raster, members[member], target));
        if (!sameFrame(raster.shape(), first.shape())) {
            throw std::runtime_error(members[member].path +
                                     ": lies elsewhere or has other cells than " + members[0].name +
                                     ", so they cannot be bands of one raster");
        }
        surveys.push_back(survey(raster, false));
    }
    const Window window = windowOf(first, rows, false, target.options().within);
    if (window.columns <= 0 || window.rows <= 0) {
        target.report().loss(nameOf(stack.path), "no cell meets the rectangle");
        return;
    }
    const CellForm form = formFor(surveys, target.options().cellType, stack.path);
    formats::Raster out = frameOf(first, stack, false, window, form, target);
    out.system = systemOfMember(target, members[0]);
    out.classes = true;
    for (std::size_t member = 0; member < members.size(); ++member) {
        out.classes = out.classes && surveys[member].integers;
        out.bands.push_back({toUtf8(members[member].name), {}});
        if (window.whole) {
            out.bands[member].range =
                rangeOf(first, false, surveys[member], members[member].name, target);
        }
    }
    out.read = [&](std::size_t band, int32_t row, std::span<std::byte> bytes) {
        go(band);
        readCells(raster, form, window.row + row, window.column, bytes);
    };
    target.raster(std::move(out), form.typeName);
}

}  // namespace

void exportGrid(Target& target, const Dataset& dataset) {
    exportRaster(target, dataset, QX_GRID, target.system());
    exportTables(target, dataset.path);
    exportTexts(target, dataset.path);
}

void exportLattice(Target& target, const Dataset& dataset) {
    exportRaster(target, dataset, QX_LATTICE, target.system());
    exportTables(target, dataset.path);
    exportTexts(target, dataset.path);
}

void exportStack(Target& target, const Dataset& dataset) {
    const std::vector<Dataset> members = membersOf(target, dataset);
    if (target.options().bands) {
        exportAsBands(target, dataset, members);
    } else {
        for (const Dataset& each : members) {
            exportRaster(target, each, QX_GRID, systemOfMember(target, each));
        }
    }
    exportTables(target, dataset.path);
    exportTexts(target, dataset.path);
    for (const Dataset& each : members) {
        exportTables(target, each.path);
        exportTexts(target, each.path, nameOf(each.path));
    }
}

}  // namespace program
