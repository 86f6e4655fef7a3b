#include "formats/geotiff/halving.h"

#include <array>
#include <cmath>
#include <type_traits>

namespace formats::geotiff {

namespace {

template <class Cell>
std::span<const Cell> cellsOf(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const Cell*>(bytes.data()), bytes.size() / sizeof(Cell)};
}

template <class Cell>
bool isNoNumber(Cell cell) {
    if constexpr (std::is_floating_point_v<Cell>) return std::isnan(cell);
    return false;
}

// Up to four cells that have something to say.
template <class Cell>
struct Four {
    std::array<Cell, 4> cells;
    std::size_t count = 0;

    Cell commonest() const {
        std::size_t best = 0;
        std::size_t most = 0;
        for (std::size_t each = 0; each < count; ++each) {
            std::size_t equal = 0;
            for (std::size_t other = each; other < count; ++other) {
                equal += cells[each] == cells[other];
            }
            if (equal > most) {
                most = equal;
                best = each;
            }
        }
        return cells[best];
    }
    Cell mean() const {
        double sum = 0;
        for (std::size_t each = 0; each < count; ++each) sum += static_cast<double>(cells[each]);
        const double mean = sum / static_cast<double>(count);
        return static_cast<Cell>(std::is_integral_v<Cell> ? std::round(mean) : mean);
    }
};

template <class Cell, bool kClasses>
void halveCells(std::optional<double> noData, std::span<const Cell> above,
                std::span<const Cell> below, Cell* out) {
    const bool hasNoData = noData.has_value();
    const Cell missing = hasNoData ? static_cast<Cell>(*noData) : Cell{};
    for (std::size_t left = 0; left < above.size(); left += 2) {
        const std::size_t right = std::min(left + 2, above.size());
        Four<Cell> four;
        Cell otherwise = missing;
        for (const std::span<const Cell> row : {above, below}) {
            if (row.empty()) break;
            for (std::size_t at = left; at < right; ++at) {
                const Cell cell = row[at];
                if (hasNoData && cell == missing) continue;
                if (isNoNumber(cell)) {
                    otherwise = cell;
                } else {
                    four.cells[four.count++] = cell;
                }
            }
        }
        *out++ = four.count == 0 ? otherwise : kClasses ? four.commonest() : four.mean();
    }
}

}  // namespace

void halve(CellType type, bool classes, std::optional<double> noData,
           std::span<const std::byte> above, std::span<const std::byte> below,
           std::span<std::byte> row) {
    withCell(type, [&](auto cell) {
        using Cell = decltype(cell);
        auto* const out = reinterpret_cast<Cell*>(row.data());
        if (classes) {
            halveCells<Cell, true>(noData, cellsOf<Cell>(above), cellsOf<Cell>(below), out);
        } else {
            halveCells<Cell, false>(noData, cellsOf<Cell>(above), cellsOf<Cell>(below), out);
        }
    });
}

}  // namespace formats::geotiff
