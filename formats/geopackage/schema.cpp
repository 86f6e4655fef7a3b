#include "formats/geopackage/schema.h"

#include <algorithm>

namespace formats::geopackage {

namespace {

// Nobody else reads the file before it has its name, and nothing is left of one that failed. Pages
// of twice the usual size halve the calls that write them.
constexpr const char* kSettings = R"(
PRAGMA page_size = 8192;
PRAGMA journal_mode = OFF;
PRAGMA synchronous = OFF;
PRAGMA locking_mode = EXCLUSIVE;
PRAGMA temp_store = MEMORY;
PRAGMA cache_size = -2000;
PRAGMA foreign_keys = OFF;
PRAGMA application_id = 0x47504B47;
PRAGMA user_version = 10300;
)";

constexpr const char* kCore = R"(
CREATE TABLE gpkg_spatial_ref_sys (
  srs_name TEXT NOT NULL,
  srs_id INTEGER NOT NULL PRIMARY KEY,
  organization TEXT NOT NULL,
  organization_coordsys_id INTEGER NOT NULL,
  definition TEXT NOT NULL,
  description TEXT,
  definition_12_063 TEXT NOT NULL DEFAULT 'undefined'
);
CREATE TABLE gpkg_contents (
  table_name TEXT NOT NULL PRIMARY KEY,
  data_type TEXT NOT NULL,
  identifier TEXT UNIQUE,
  description TEXT DEFAULT '',
  last_change DATETIME NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%fZ','now')),
  min_x DOUBLE,
  min_y DOUBLE,
  max_x DOUBLE,
  max_y DOUBLE,
  srs_id INTEGER,
  CONSTRAINT fk_gc_r_srs_id FOREIGN KEY (srs_id) REFERENCES gpkg_spatial_ref_sys(srs_id)
);
CREATE TABLE gpkg_geometry_columns (
  table_name TEXT NOT NULL,
  column_name TEXT NOT NULL,
  geometry_type_name TEXT NOT NULL,
  srs_id INTEGER NOT NULL,
  z TINYINT NOT NULL,
  m TINYINT NOT NULL,
  CONSTRAINT pk_geom_cols PRIMARY KEY (table_name, column_name),
  CONSTRAINT uk_gc_table_name UNIQUE (table_name),
  CONSTRAINT fk_gc_tn FOREIGN KEY (table_name) REFERENCES gpkg_contents(table_name),
  CONSTRAINT fk_gc_srs FOREIGN KEY (srs_id) REFERENCES gpkg_spatial_ref_sys (srs_id)
);
CREATE TABLE gpkg_extensions (
  table_name TEXT,
  column_name TEXT,
  extension_name TEXT NOT NULL,
  definition TEXT NOT NULL,
  scope TEXT NOT NULL,
  CONSTRAINT ge_tce UNIQUE (table_name, column_name, extension_name)
);
)";

constexpr const char* kMetadataTables = R"(
CREATE TABLE gpkg_metadata (
  id INTEGER CONSTRAINT m_pk PRIMARY KEY ASC NOT NULL,
  md_scope TEXT NOT NULL DEFAULT 'dataset',
  md_standard_uri TEXT NOT NULL,
  mime_type TEXT NOT NULL DEFAULT 'text/xml',
  metadata TEXT NOT NULL DEFAULT ''
);
CREATE TABLE gpkg_metadata_reference (
  reference_scope TEXT NOT NULL,
  table_name TEXT,
  column_name TEXT,
  row_id_value INTEGER,
  timestamp DATETIME NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%fZ','now')),
  md_file_id INTEGER NOT NULL,
  md_parent_id INTEGER,
  CONSTRAINT crmr_mfi_fk FOREIGN KEY (md_file_id) REFERENCES gpkg_metadata(id),
  CONSTRAINT crmr_mpi_fk FOREIGN KEY (md_parent_id) REFERENCES gpkg_metadata(id)
);
)";

// When a trigger fires, on what condition, and what it does to the index <i>.
struct Trigger {
    const char* name;
    const char* event;
    const char* condition;
    std::string_view actions;
};

#define REMOVE_OLD "DELETE FROM <i> WHERE id = OLD.fid; "
#define PUT_NEW                                                                          \
    "INSERT OR REPLACE INTO <i> VALUES (NEW.fid, ST_MinX(NEW.geom), ST_MaxX(NEW.geom), " \
    "ST_MinY(NEW.geom), ST_MaxY(NEW.geom)); "
#define SOMETHING "(NEW.geom NOTNULL AND NOT ST_IsEmpty(NEW.geom))"
#define NOTHING "(NEW.geom ISNULL OR ST_IsEmpty(NEW.geom))"

constexpr Trigger kTriggers[] = {
    {"insert", "INSERT", SOMETHING, PUT_NEW},
    {"update1", "UPDATE OF geom", "OLD.fid = NEW.fid AND " SOMETHING, PUT_NEW},
    {"update2", "UPDATE OF geom", "OLD.fid = NEW.fid AND " NOTHING, REMOVE_OLD},
    {"update3", "UPDATE", "OLD.fid != NEW.fid AND " SOMETHING, REMOVE_OLD PUT_NEW},
    {"update4", "UPDATE", "OLD.fid != NEW.fid AND " NOTHING,
     "DELETE FROM <i> WHERE id IN (OLD.fid, NEW.fid); "},
    {"delete", "DELETE", "OLD.geom NOTNULL", REMOVE_OLD},
};

#undef REMOVE_OLD
#undef PUT_NEW
#undef SOMETHING
#undef NOTHING

std::string filled(std::string_view text, const std::string& index) {
    std::string result;
    for (std::size_t start = 0, end; start < text.size(); start = end) {
        end = text.find("<i>", start);
        if (end == start) {
            result += quoted(index);
            end = start + 3;
        } else {
            end = std::min(end, text.size());
            result += text.substr(start, end - start);
        }
    }
    return result;
}

}  // namespace

void makeCore(Database& database) {
    database.run(kSettings);
    database.run("BEGIN");
    database.run(kCore);
}

void makeMetadataTables(Database& database) {
    database.run(kMetadataTables);
    announce(database, kMetadata, "gpkg_metadata", {});
    announce(database, kMetadata, "gpkg_metadata_reference", {});
}

void announce(Database& database, const Extension& extension, std::string_view table,
              std::string_view column) {
    Statement insert(database, "INSERT INTO gpkg_extensions VALUES (?, ?, ?, ?, ?)");
    insert.bind(1, table);
    if (!column.empty()) insert.bind(2, column);
    insert.bind(3, extension.name);
    insert.bind(4, extension.definition);
    insert.bind(5, extension.scope);
    insert.run();
}

void makeIndexTriggers(Database& database, const std::string& table, const std::string& index) {
    for (const Trigger& trigger : kTriggers) {
        database.run("CREATE TRIGGER " + quoted(index + "_" + trigger.name) + " AFTER " +
                     trigger.event + " ON " + quoted(table) + " WHEN " + trigger.condition +
                     " BEGIN " + filled(trigger.actions, index) + " END");
    }
}

}  // namespace formats::geopackage
