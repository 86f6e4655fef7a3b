// CSV as RFC 4180 has it: a line with the names of the columns, lines that end in a carriage return
// and a line feed, quotes where they are needed; UTF-8.
//
// A folder holds a file NAME.csv for each table, and texts beside them; a file is one table. The
// first column is fid. Missing values are empty, and an empty text is a pair of quotes. Reals have
// as many digits as they need, and what is not finite is "nan", "inf" or "-inf". Geometries are
// well-known text in the last column, geom, or left out.
#ifndef FORMATS_CSV_CSV_H
#define FORMATS_CSV_CSV_H

#include "formats/writer.h"

namespace formats::csv {

const WriterMaker& tables();

}  // namespace formats::csv

#endif
