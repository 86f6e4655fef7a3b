#include "app/intake/export/raster_cells.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "app/intake/export/export.h"
#include "app/intake/interrupts.h"
#include "formats/numbers.h"

namespace program {

namespace {

using formats::CellType;

constexpr double kMissingInteger = QX_MISSING_INTEGER;
constexpr double kExactInFloat = 1 << 24;  // whole numbers up to here

std::string shortest(double value) {
    std::string text;
    formats::appendShortest(text, value);
    return text;
}

// The values of a type of whole numbers.
std::array<double, 2> limitsOf(CellType type) {
    return formats::withCell(type, [](auto cell) -> std::array<double, 2> {
        using Limits = std::numeric_limits<decltype(cell)>;
        return {static_cast<double>(Limits::lowest()), static_cast<double>(Limits::max())};
    });
}

bool holds(CellType type, const std::array<double, 2>& range) {
    if (type == CellType::kFloat64) return true;
    if (type == CellType::kFloat32) {
        return range[0] >= -kExactInFloat && range[1] <= kExactInFloat;
    }
    const auto limits = limitsOf(type);
    return limits[0] <= range[0] && range[1] <= limits[1];
}

// A value that no cell has, where the stored one does not fit.
std::optional<double> spareValue(CellType type, const std::array<double, 2>& range) {
    const auto limits = limitsOf(type);
    if (range[1] < limits[1]) return limits[1];
    if (range[0] > limits[0]) return limits[0];
    return {};
}

CellType smallest(const std::array<double, 2>& range) {
    for (const CellType type : {CellType::kUInt8, CellType::kInt16, CellType::kUInt16}) {
        if (holds(type, range)) return type;
    }
    return CellType::kInt32;
}

struct Sum {
    bool integers = false;  // some are, and so on
    bool reals = false;
    bool missing = false;
    std::array<double, 2> range{};  // of the integers
};

Sum sumOf(std::span<const CellSurvey> surveys) {
    Sum sum;
    bool any = false;
    for (const CellSurvey& each : surveys) {
        (each.integers ? sum.integers : sum.reals) = true;
        sum.missing = sum.missing || each.missing;
        if (!each.integers || !each.range) continue;
        const std::array<double, 2> before = any ? sum.range : *each.range;
        sum.range = {std::min(before[0], (*each.range)[0]), std::max(before[1], (*each.range)[1])};
        any = true;
    }
    return sum;
}

CellType typeFor(const Sum& sum, const std::string& typeName, const std::string& what) {
    if (typeName.empty()) {
        if (sum.reals) {
            return holds(CellType::kFloat32, sum.range) ? CellType::kFloat32 : CellType::kFloat64;
        }
        return sum.missing ? CellType::kInt32 : smallest(sum.range);
    }
    const auto type = static_cast<CellType>(std::ranges::find(kCellTypes, typeName) - kCellTypes);
    if (sum.reals && !formats::isReal(type)) {
        throw std::runtime_error(what + ": its cells are no whole numbers, which " + typeName +
                                 " could hold");
    }
    if (!holds(type, sum.range)) {
        throw std::runtime_error(what + ": its cells are " + shortest(sum.range[0]) + " to " +
                                 shortest(sum.range[1]) + ", which " + typeName +
                                 " does not hold exactly");
    }
    return type;
}

}  // namespace

CellSurvey survey(const datasets::Raster& raster, bool heights) {
    CellSurvey found;
    found.integers = raster.isInteger();
    bool any = false;
    std::array<double, 2> range = {std::numeric_limits<double>::infinity(),
                                   -std::numeric_limits<double>::infinity()};
    const QxRaster& shape = raster.shape();
    found.missing = shape.rowsWritten < shape.rows;
    for (int32_t row = 0; row < shape.rowsWritten; ++row) {
        throwIfInterrupted();
        for (const std::span<const int32_t>& words : datasets::rowOf(raster, row)) {
            for (const int32_t word : words) {
                const std::optional<double> value = raster.value(word);
                if (!value) {
                    found.missing = true;
                } else if (!std::isnan(*value)) {
                    any = true;
                    range = {std::min(range[0], *value), std::max(range[1], *value)};
                }
            }
            if (any && !heights && (found.missing || !found.integers)) row = shape.rowsWritten - 1;
        }
    }
    if (any && heights) found.range = range;
    if (any && !heights) found.range = {shape.range[0], shape.range[1]};
    return found;
}

CellForm formFor(std::span<const CellSurvey> surveys, const std::string& typeName,
                 const std::string& what) {
    const Sum sum = sumOf(surveys);
    CellForm form{typeFor(sum, typeName, what), {}, {}};
    form.typeName = kCellTypes[static_cast<std::size_t>(form.type)];
    if (sum.reals || form.type == CellType::kFloat32) {
        form.noData = MISSINGFLOAT;
    } else if (form.type == CellType::kInt32 || form.type == CellType::kFloat64) {
        form.noData = kMissingInteger;
    } else if (sum.missing) {
        form.noData = spareValue(form.type, sum.range);
        if (!form.noData) {
            throw std::runtime_error(what + ": its cells are all values of " + typeName +
                                     ", and none is left for cells without data");
        }
    }
    return form;
}

void readCells(const datasets::Raster& raster, const CellForm& form, int32_t row, int32_t column,
               std::span<std::byte> cells) {
    formats::withCell(form.type, [&](auto kind) {
        using Cell = decltype(kind);
        auto* out = reinterpret_cast<Cell*>(cells.data());
        std::size_t left = cells.size() / sizeof(Cell);
        const auto missing = static_cast<Cell>(form.noData.value_or(0));
        // Through a piece of a row, as the row itself may have no room for words.
        std::array<int32_t, 4096> piece;
        while (left != 0) {
            const std::span<int32_t> words(piece.data(), std::min(left, piece.size()));
            if (!raster.read(row, column, words)) {
                std::fill_n(out, left, missing);
                return;
            }
            if (raster.isInteger()) {
                for (const int32_t word : words) {
                    *out++ = word == QX_MISSING_INTEGER ? missing : static_cast<Cell>(word);
                }
            } else {
                for (const int32_t word : words)
                    *out++ = static_cast<Cell>(std::bit_cast<float>(word));
            }
            column += static_cast<int32_t>(words.size());
            left -= words.size();
        }
    });
}

}  // namespace program
