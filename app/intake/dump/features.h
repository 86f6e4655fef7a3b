// The features of a coverage in a dump: for each the entry of the dataset line's counts, written
// only where the feature's file exists, and its records.
#ifndef APP_INTAKE_DUMP_FEATURES_H
#define APP_INTAKE_DUMP_FEATURES_H

#include "app/intake/dump/dump.h"

namespace program {

void countArcs(const Dataset& dataset, JsonLine& line);
void dumpArcs(Dump& dump, const Dataset& dataset);

void countLabels(const Dataset& dataset, JsonLine& line);
void dumpLabels(Dump& dump, const Dataset& dataset);

void countCentroids(const Dataset& dataset, JsonLine& line);
void dumpCentroids(Dump& dump, const Dataset& dataset);

void countPolygons(const Dataset& dataset, JsonLine& line);
void dumpPolygons(Dump& dump, const Dataset& dataset);

void countLinks(const Dataset& dataset, JsonLine& line);
void dumpLinks(Dump& dump, const Dataset& dataset);

void countAddressTexts(const Dataset& dataset, JsonLine& line);
void dumpAddressTexts(Dump& dump, const Dataset& dataset);

void countAddressIntegers(const Dataset& dataset, JsonLine& line);
void dumpAddressIntegers(Dump& dump, const Dataset& dataset);

void countRegionPairs(const Dataset& dataset, JsonLine& line);
void dumpRegionPairs(Dump& dump, const Dataset& dataset);

void countRegions(const Dataset& dataset, JsonLine& line);
void dumpRegions(Dump& dump, const Dataset& dataset);

void countTolerances(const Dataset& dataset, JsonLine& line);
void dumpTolerances(Dump& dump, const Dataset& dataset);

void countAnnotation(const Dataset& dataset, JsonLine& line);
void dumpAnnotation(Dump& dump, const Dataset& dataset);

// The spatial indexes, which the dataset line does not count.
void dumpIndexes(Dump& dump, const Dataset& dataset);

}  // namespace program

#endif
