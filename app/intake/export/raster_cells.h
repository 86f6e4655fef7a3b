// What type the cells of a raster get in a file, and how they come to it.
#ifndef APP_INTAKE_EXPORT_RASTER_CELLS_H
#define APP_INTAKE_EXPORT_RASTER_CELLS_H

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "datasets/rasters.h"
#include "formats/raster.h"

namespace program {

// What one look through a raster tells. Values that are no number are in no order.
struct CellSurvey {
    bool integers = false;
    bool missing = false;                        // a cell without data
    std::optional<std::array<double, 2>> range;  // nothing if no cell has a value
};
// With heights the range is that of the cells; otherwise the one that the raster keeps is believed,
// and the look ends as soon as nothing new can come.
CellSurvey survey(const datasets::Raster& raster, bool heights);

struct CellForm {
    formats::CellType type;
    std::optional<double> noData;
    std::string_view typeName;
};

// The type of a name, or if that is empty the smallest one that holds all values and, where cells
// lack data, what is stored for that. Throws a std::runtime_error, whose text begins with what,
// where a type cannot hold the values.
CellForm formFor(std::span<const CellSurvey> surveys, const std::string& typeName,
                 const std::string& what);

// Reads cells of a row from a column on, in the form.
void readCells(const datasets::Raster& raster, const CellForm& form, int32_t row, int32_t column,
               std::span<std::byte> cells);

}  // namespace program

#endif
