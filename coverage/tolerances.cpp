#include "host/qxfeat/tolerances.h"

#include <vector>

#include "coverage/sections.h"
#include "stream/format.h"
#include "stream/reader.h"
#include "stream/report.h"

namespace intake {

void IMPTOL(const Name& dataset, const int32_t& precision, Status& status) {
    constexpr int32_t kEndOfTolerances = -1;
    // A coverage has ten.
    constexpr std::size_t kMostTolerances = 65536;
    std::vector<int32_t> column1;
    std::vector<int32_t> column2;
    std::vector<double> values;
    Line line;
    for (;;) {
        int32_t first = 0;
        int32_t second = 0;
        double value = 0;
        IMPLIN(line);
        if (precision == kSingle) {
            read<"2I10,1P,E14.7">(line, first, second, value);
        } else {
            read<"2I10,1P,E21.14">(line, first, second, value);
        }
        if (first == kEndOfTolerances) break;
        if (values.size() == kMostTolerances) fatal("Too many tolerances (IMPTOL)");
        column1.push_back(first);
        column2.push_back(second);
        values.push_back(value);
    }
    call(tolset_, dataset, static_cast<int32_t>(values.size()), column1, column2, values, status);
    if (status != kSuccess) status = kReported;
}

}  // namespace intake
