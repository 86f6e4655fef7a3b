// One file of CSV as it grows.
#ifndef FORMATS_CSV_TABLE_H
#define FORMATS_CSV_TABLE_H

#include <span>
#include <string>
#include <vector>

#include "formats/output.h"
#include "formats/writer.h"

namespace formats::csv {

class Table {
  public:
    // Failures name the target. With wellKnownText geometries go into a last column.
    Table(const std::string& path, const std::string& target, const Layer& layer,
          bool wellKnownText);
    // False if a geometry was left out that is not finite.
    bool add(int64_t fid, const Geometry& geometry, std::span<const Value> values);
    void end() { file_.close(); }

  private:
    TextFile file_;
    std::vector<Column> columns_;
    GeometryType geometry_;
};

}  // namespace formats::csv

#endif
