#include "formats/geopackage/systems.h"

#include "formats/geopackage/schema.h"

namespace formats::geopackage {

namespace {

struct Row {
    std::string_view name;
    int32_t id;
    std::string_view organization;
    int32_t code;
    std::string_view definition;
    std::string_view description;
    std::string_view definition2;
};

constexpr std::string_view kUndefined = "undefined";
constexpr int32_t kWgs84 = 4326;

constexpr Row kRequired[] = {
    {"Undefined Cartesian SRS", -1, "NONE", -1, kUndefined,
     "undefined Cartesian coordinate reference system", kUndefined},
    {"Undefined geographic SRS", 0, "NONE", 0, kUndefined,
     "undefined geographic coordinate reference system", kUndefined},
    {"WGS 84 geodetic", kWgs84, "EPSG", kWgs84,
     R"(GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563,)"
     R"(AUTHORITY["EPSG","7030"]],AUTHORITY["EPSG","6326"]],)"
     R"(PRIMEM["Greenwich",0,AUTHORITY["EPSG","8901"]],)"
     R"(UNIT["degree",0.0174532925199433,AUTHORITY["EPSG","9122"]],AUTHORITY["EPSG","4326"]])",
     "longitude/latitude coordinates in decimal degrees on the WGS 84 spheroid",
     R"(GEODCRS["WGS 84",DATUM["World Geodetic System 1984",)"
     R"(ELLIPSOID["WGS 84",6378137,298.257223563,LENGTHUNIT["metre",1]]],)"
     R"(PRIMEM["Greenwich",0,ANGLEUNIT["degree",0.0174532925199433]],CS[ellipsoidal,2],)"
     R"w(AXIS["geodetic latitude (Lat)",north,ORDER[1],ANGLEUNIT["degree",0.0174532925199433]],)w"
     R"w(AXIS["geodetic longitude (Lon)",east,ORDER[2],ANGLEUNIT["degree",0.0174532925199433]],)w"
     R"(ID["EPSG",4326]])"},
};

void insert(Database& database, const Row& row) {
    Statement insert(database, "INSERT INTO gpkg_spatial_ref_sys VALUES (?, ?, ?, ?, ?, ?, ?)");
    insert.bind(1, row.name);
    insert.bind(2, int64_t{row.id});
    insert.bind(3, row.organization);
    insert.bind(4, int64_t{row.code});
    insert.bind(5, row.definition);
    insert.bind(6, row.description);
    insert.bind(7, row.definition2);
    insert.run();
}

std::string_view orUndefined(const std::string& definition) {
    return definition.empty() ? kUndefined : std::string_view(definition);
}

}  // namespace

Systems::Systems(Database& database) : database_(database) {
    for (const Row& row : kRequired) insert(database, row);
    announce(database, kWellKnownText, "gpkg_spatial_ref_sys", "definition_12_063");
}

int32_t Systems::idOf(const crs::ReferenceSystem& system) {
    if (!system.defined()) return system.geographic() ? 0 : -1;
    if (system.epsg == kWgs84) return kWgs84;
    const std::string key = system.epsg != 0 ? std::to_string(system.epsg) : system.wkt2;
    const auto [place, isNew] = ids_.try_emplace(key, system.epsg);
    if (!isNew) return place->second;
    if (system.epsg == 0) place->second = nextOwn_++;
    const int32_t id = place->second;
    insert(database_, {.name = system.name,
                       .id = id,
                       .organization = system.epsg != 0 ? "EPSG" : "NONE",
                       .code = id,
                       .definition = orUndefined(system.wkt1),
                       .description = system.description,
                       .definition2 = orUndefined(system.wkt2)});
    return id;
}

}  // namespace formats::geopackage
