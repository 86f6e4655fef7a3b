// The tables and triggers that the standard prescribes.
#ifndef FORMATS_GEOPACKAGE_SCHEMA_H
#define FORMATS_GEOPACKAGE_SCHEMA_H

#include <string>
#include <string_view>

#include "formats/geopackage/database.h"

namespace formats::geopackage {

// Of an empty file: settings, and the tables that each GeoPackage has.
void makeCore(Database& database);

// The two tables for texts, and the rows that announce them.
void makeMetadataTables(Database& database);

struct Extension {
    std::string_view name;
    std::string_view definition;
    std::string_view scope;
};
inline constexpr Extension kSpatialIndex{
    "gpkg_rtree_index", "http://www.geopackage.org/spec120/#extension_rtree", "write-only"};
inline constexpr Extension kMetadata{
    "gpkg_metadata", "http://www.geopackage.org/spec120/#extension_metadata", "read-write"};
inline constexpr Extension kWellKnownText{
    "gpkg_crs_wkt", "http://www.geopackage.org/spec120/#extension_crs_wkt", "read-write"};

// Announces that a table uses an extension, all of it (an empty column) or in one column.
void announce(Database& database, const Extension& extension, std::string_view table,
              std::string_view column);

// The triggers that keep the spatial index of a table true, whoever changes the table.
void makeIndexTriggers(Database& database, const std::string& table, const std::string& index);

}  // namespace formats::geopackage

#endif
