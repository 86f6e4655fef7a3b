#include "formats/geopackage/gathering.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <vector>

#include "formats/geopackage/blob_functions.h"
#include "formats/geopackage/database.h"
#include "formats/geopackage/schema.h"
#include "formats/geopackage/systems.h"
#include "formats/names.h"

namespace formats::geopackage {

namespace {

using Row = std::vector<std::string>;

// All rows of a question, as texts; nothing is an empty one.
std::vector<Row> rowsOf(const Database& database, const std::string& sql) {
    std::vector<Row> rows;
    sqlite3_stmt* statement = nullptr;
    database.check(sqlite3_prepare_v2(database.handle(), sql.c_str(), -1, &statement, nullptr));
    int code = 0;
    while ((code = sqlite3_step(statement)) == SQLITE_ROW) {
        Row& row = rows.emplace_back();
        for (int each = 0; each < sqlite3_column_count(statement); ++each) {
            const auto* const text = sqlite3_column_text(statement, each);
            row.emplace_back(text ? reinterpret_cast<const char*>(text) : "");
        }
    }
    sqlite3_finalize(statement);
    if (code != SQLITE_DONE) database.fail(code);
    return rows;
}

std::string literal(const std::string& text) {
    std::string result = "'";
    for (const char each : text) {
        if (each == '\'') result += each;
        result += each;
    }
    return result + "'";
}

constexpr char kSourceFile[] = "source_file";
constexpr char kSourceFid[] = "source_fid";

// A type of a column as wide as any of its kind.
std::string widest(const std::string& declared) {
    const std::string type = declared.substr(0, declared.find('('));
    if (type == "SMALLINT" || type == "MEDIUMINT") return "INTEGER";
    return type == "FLOAT" ? "DOUBLE" : type;
}

// A column of a source, and the one that takes it.
struct Match {
    std::string from;
    std::string to;
};

class One : public Gatherer {
  public:
    explicit One(const std::string& path) : database_(path, path) {
        addBlobFunctions(database_);
        // Whatever kills it, a file added is in it wholly or not at all.
        database_.run(
            "PRAGMA locking_mode = EXCLUSIVE; PRAGMA journal_mode = WAL; "
            "PRAGMA synchronous = NORMAL; PRAGMA temp_store = MEMORY");
    }
    void add(const std::string& path, const std::string& source) override {
        from(path, [&] {
            const bool known =
                !rowsOf(database_, "SELECT 1 FROM sources WHERE source_file = " + literal(source))
                     .empty();
            if (known) forget("= " + literal(source));
            addLayers(literal(source), "fid", false);
            database_.run("INSERT INTO sources (source_file) VALUES (" + literal(source) + ")");
        });
    }
    void addGathered(const std::string& path) override {
        from(path, [&] {
            const std::string theirs = "IN (SELECT source_file FROM other.sources)";
            if (!rowsOf(database_, "SELECT 1 FROM sources WHERE source_file " + theirs + " LIMIT 1")
                     .empty()) {
                forget(theirs);
            }
            addLayers(kSourceFile, kSourceFid, true);
            database_.run(
                "INSERT INTO sources (source_file) SELECT source_file FROM other.sources");
        });
    }
    void finish() override;

  private:
    template <class Work>
    void from(const std::string& path, Work work) {
        database_.run("ATTACH " + literal(path) + " AS other");
        try {
            database_.run("BEGIN");
            work();
            database_.run("COMMIT");
        } catch (...) {
            sqlite3_exec(database_.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
            sqlite3_exec(database_.handle(), "DETACH other", nullptr, nullptr, nullptr);
            throw;
        }
        database_.run("DETACH other");
    }
    void forget(const std::string& which);
    void addLayers(const std::string& source, const std::string& fid, bool gathered);
    std::string systemFor(const std::string& id);
    std::string tableFor(const Row& layer, const std::string& system);
    std::vector<Match> columnsFor(const std::string& layer, const std::string& table,
                                  bool gathered);

    Database database_;
};

void One::forget(const std::string& which) {
    for (const Row& row : rowsOf(database_, "SELECT table_name FROM gpkg_contents")) {
        database_.run("DELETE FROM " + geopackage::quoted(row[0]) + " WHERE source_file " + which);
    }
}

// The id of a system of the source here, where it is added if need be.
std::string One::systemFor(const std::string& id) {
    const auto same = rowsOf(
        database_,
        "SELECT mine.srs_id, mine.srs_id = theirs.srs_id AS exact FROM gpkg_spatial_ref_sys mine, "
        "other.gpkg_spatial_ref_sys theirs WHERE theirs.srs_id = " +
            id +
            " AND mine.definition = theirs.definition AND mine.organization = theirs.organization "
            "AND (exact OR theirs.srs_id >= 100000) ORDER BY exact DESC LIMIT 1");
    if (!same.empty()) return same[0][0];
    const auto taken =
        rowsOf(database_, "SELECT 1 FROM main.gpkg_spatial_ref_sys WHERE srs_id = " + id);
    const std::string mine =
        taken.empty()
            ? id
            : rowsOf(database_,
                     "SELECT max(99999, max(srs_id)) + 1 FROM main.gpkg_spatial_ref_sys")[0][0];
    database_.run("INSERT INTO main.gpkg_spatial_ref_sys SELECT srs_name, " + mine +
                  ", organization, CASE organization_coordsys_id WHEN srs_id THEN " + mine +
                  " ELSE organization_coordsys_id END, definition, description, definition_12_063 "
                  "FROM other.gpkg_spatial_ref_sys WHERE srs_id = " +
                  id);
    return mine;
}

// The table of a layer (its name, data type, geometry type, z) with a system.
std::string One::tableFor(const Row& layer, const std::string& system) {
    for (int number = 1;; ++number) {
        const std::string name = number == 1 ? layer[0] : layer[0] + "_" + std::to_string(number);
        const auto there = rowsOf(
            database_,
            "SELECT c.table_name, c.data_type, g.geometry_type_name, g.z, g.srs_id FROM "
            "main.gpkg_contents c LEFT JOIN main.gpkg_geometry_columns g USING (table_name) WHERE "
            "lower(c.table_name) = lower(" +
                literal(name) + ")");
        const bool isTable = layer[2].empty();
        if (!there.empty()) {
            const Row& other = there[0];
            const bool fits = other[1] == layer[1] && other[2] == layer[2] &&
                              (isTable || (other[3] == layer[3] && other[4] == system)) &&
                              folded(other[0]) != "sources";
            if (fits) return other[0];
            continue;
        }
        database_.run("CREATE TABLE main." + geopackage::quoted(name) +
                      " (fid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, source_file TEXT, "
                      "source_fid INTEGER" +
                      (isTable ? "" : ", geom " + layer[2]) + ")");
        database_.run(
            "INSERT INTO main.gpkg_contents (table_name, data_type, identifier, srs_id) "
            "VALUES (" +
            literal(name) + ", " + literal(layer[1]) + ", " + literal(name) + ", " +
            (isTable ? "NULL" : system) + ")");
        if (!isTable) {
            database_.run("INSERT INTO main.gpkg_geometry_columns VALUES (" + literal(name) +
                          ", 'geom', " + literal(layer[2]) + ", " + system + ", " + layer[3] +
                          ", 0)");
        }
        return name;
    }
}

std::vector<Match> One::columnsFor(const std::string& layer, const std::string& table,
                                   bool gathered) {
    std::map<std::string, std::string> mine;  // types by name
    for (const Row& row :
         rowsOf(database_, "PRAGMA main.table_info(" + geopackage::quoted(table) + ")")) {
        mine[folded(row[1])] = row[2];
    }
    std::vector<Match> matches;
    for (const Row& row :
         rowsOf(database_, "PRAGMA other.table_info(" + geopackage::quoted(layer) + ")")) {
        const std::string& name = row[1];
        const std::string key = folded(name);
        if (key == "fid" || key == "geom") continue;
        const bool ours = key == kSourceFile || key == kSourceFid;
        if (ours && gathered) continue;
        const std::string type = widest(row[2]);
        // A name that is taken for something else is told apart by its type.
        std::string to = ours ? name + "_" + folded(type) : name;
        for (int number = 1;; ++number) {
            const auto known = mine.find(folded(to));
            if (known == mine.end()) {
                database_.run("ALTER TABLE main." + geopackage::quoted(table) + " ADD COLUMN " +
                              geopackage::quoted(to) + " " + type);
                mine[folded(to)] = type;
                break;
            }
            const bool used = std::any_of(matches.begin(), matches.end(), [&](const Match& each) {
                return folded(each.to) == folded(to);
            });
            if (known->second == type && !used) break;
            to = name + "_" + folded(type) + (number == 1 ? "" : std::to_string(number));
        }
        matches.push_back({name, to});
    }
    return matches;
}

void One::addLayers(const std::string& source, const std::string& fid, bool gathered) {
    const auto layers = rowsOf(
        database_,
        "SELECT c.table_name, c.data_type, g.geometry_type_name, g.z, g.srs_id FROM "
        "other.gpkg_contents c LEFT JOIN other.gpkg_geometry_columns g USING (table_name) ORDER BY "
        "c.rowid");
    for (const Row& layer : layers) {
        if (gathered && layer[0] == "sources") continue;
        const bool isTable = layer[2].empty();
        const std::string system = isTable ? "" : systemFor(layer[4]);
        const std::string table = tableFor(layer, system);
        std::string to = "source_file, source_fid";
        std::string from = source + ", " + fid;
        if (!isTable) {
            to += ", geom";
            from += system == layer[4] ? ", geom" : ", blob_with_system(geom, " + system + ")";
        }
        for (const Match& match : columnsFor(layer[0], table, gathered)) {
            (to += ", ") += geopackage::quoted(match.to);
            (from += ", ") += geopackage::quoted(match.from);
        }
        database_.run("INSERT INTO main." + geopackage::quoted(table) + " (" + to + ") SELECT " +
                      from + " FROM other." + geopackage::quoted(layer[0]) + " ORDER BY fid");
    }
}

void One::finish() {
    database_.run("BEGIN");
    for (const Row& row : rowsOf(database_, "SELECT table_name FROM gpkg_geometry_columns")) {
        const std::string index = "rtree_" + row[0] + "_geom";
        database_.run("CREATE VIRTUAL TABLE " + geopackage::quoted(index) +
                      " USING rtree(id, minx, maxx, miny, maxy)");
        database_.run("INSERT INTO " + geopackage::quoted(index) +
                      " SELECT fid, blob_side(geom, 0), blob_side(geom, 1), blob_side(geom, 2), "
                      "blob_side(geom, 3) FROM " +
                      geopackage::quoted(row[0]) + " WHERE blob_side(geom, 0) IS NOT NULL");
        database_.run(
            "UPDATE gpkg_contents SET (min_x, max_x, min_y, max_y) = (SELECT "
            "min(blob_side(geom, 0)), max(blob_side(geom, 1)), min(blob_side(geom, 2)), "
            "max(blob_side(geom, 3)) FROM " +
            geopackage::quoted(row[0]) + ") WHERE table_name = " + literal(row[0]));
        makeIndexTriggers(database_, row[0], index);
        announce(database_, kSpatialIndex, row[0], "geom");
    }
    database_.run("COMMIT");
    // Readers get one file.
    database_.run("PRAGMA journal_mode = DELETE");
    database_.close();
}

}  // namespace

std::unique_ptr<Gatherer> Gathering::open(const std::string& path) const {
    namespace fs = std::filesystem;
    if (!fs::exists(path)) {
        // An empty one, under its name when it is whole.
        const std::string unfinished = path + ".new";
        std::ofstream(unfinished, std::ios::trunc);
        Database database(unfinished, path);
        makeCore(database);
        const Systems known(database);
        database.run(
            "CREATE TABLE sources (fid INTEGER PRIMARY KEY NOT NULL, source_file TEXT "
            "UNIQUE)");
        database.run(
            "INSERT INTO gpkg_contents (table_name, data_type, identifier) VALUES "
            "('sources', 'attributes', 'sources')");
        database.run("COMMIT");
        database.close();
        fs::rename(unfinished, path);
    }
    return std::make_unique<One>(path);
}

}  // namespace formats::geopackage
