#include "app/intake/dump/features.h"
#include "host/cpp/call.h"
#include "host/qxfeat.h"

namespace program {

using qx::call;

void countTolerances(const Dataset& dataset, JsonLine& line) {
    int32_t rows = 0;
    int32_t status = 0;
    call(tolrec_, std::string_view(dataset.path), rows, status);
    if (status == 0) line.field("tolerance", rows);
}

void dumpTolerances(Dump& dump, const Dataset& dataset) {
    int32_t rows = 0;
    int32_t status = 0;
    call(tolrec_, std::string_view(dataset.path), rows, status);
    if (status != 0) return;
    std::vector<int32_t> column1(static_cast<std::size_t>(rows));
    std::vector<int32_t> column2(column1.size());
    std::vector<double> values(column1.size());
    call(tolget_, std::string_view(dataset.path), rows, column1, column2, values, status);
    for (std::size_t row = 0; status == 0 && row < values.size(); ++row) {
        JsonLine line(dump.output(), "tolerance");
        line.field("row", static_cast<int64_t>(row + 1)).field("column1", column1[row]);
        line.field("column2", column2[row]).field("value", values[row]);
    }
}

}  // namespace program
