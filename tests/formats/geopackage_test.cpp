#include "formats/geopackage/geopackage.h"

#include <sqlite3.h>

#include <cmath>
#include <cstring>
#include <random>

#include "tests/formats/formats_test.h"

namespace formats::testing {

namespace {

// Numbers out of a blob, as one after the other.
class Bytes {
  public:
    explicit Bytes(std::string_view bytes) : bytes_(bytes) {}
    template <class T>
    T next() {
        T value{};
        EXPECT_LE(sizeof(T), bytes_.size());
        if (sizeof(T) <= bytes_.size()) std::memcpy(&value, bytes_.data(), sizeof(T));
        bytes_.remove_prefix(std::min(sizeof(T), bytes_.size()));
        return value;
    }
    bool atEnd() const { return bytes_.empty(); }

  private:
    std::string_view bytes_;
};

std::string number(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%g", value);
    return text.data();
}

// Well-known binary in words: "3[4:0 0,1 0,...]" is a polygon with a ring of four vertices.
std::string words(Bytes& bytes) {
    EXPECT_EQ(bytes.next<uint8_t>(), 1);
    const auto code = bytes.next<uint32_t>();
    const uint32_t kind = code % 1000;
    const int dimensions = code >= 1000 ? 3 : 2;
    std::string text = std::to_string(code) + "[";
    const auto vertices = [&](uint32_t count) {
        for (uint32_t i = 0; i < count; ++i) {
            for (int d = 0; d < dimensions; ++d) text += number(bytes.next<double>()) + " ";
        }
    };
    if (kind == 1) {
        vertices(1);
    } else if (kind == 2) {
        vertices(bytes.next<uint32_t>());
    } else {
        const auto count = bytes.next<uint32_t>();
        for (uint32_t i = 0; i < count; ++i) {
            if (kind == 3) {
                vertices(bytes.next<uint32_t>());
                text += "; ";
            } else {
                text += words(bytes);
            }
        }
    }
    return text + "]";
}

// A whole blob in words, with its head: "srs 4326 box 0 1 0 1: ...".
std::string blobWords(std::string_view blob) {
    Bytes bytes(blob);
    EXPECT_EQ(bytes.next<uint16_t>(), 0x5047);
    EXPECT_EQ(bytes.next<uint8_t>(), 0);
    const int flags = bytes.next<uint8_t>();
    EXPECT_EQ(flags & 1, 1);
    std::string text = "srs " + std::to_string(bytes.next<int32_t>());
    if (flags >> 1 == 1) {
        text += " box";
        for (int i = 0; i < 4; ++i) text += " " + number(bytes.next<double>());
    } else {
        EXPECT_EQ(flags >> 1, 0);
    }
    text += ": " + words(bytes);
    EXPECT_TRUE(bytes.atEnd());
    return text;
}

// What any client brings: functions over the boxes of blobs.
template <int Place>
void boundOf(sqlite3_context* context, int, sqlite3_value** values) {
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(values[0]));
    double bound = 0;
    std::memcpy(&bound, bytes + 8 + 8 * Place, sizeof bound);
    sqlite3_result_double(context, bound);
}
void isEmpty(sqlite3_context* context, int, sqlite3_value** values) {
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(values[0]));
    sqlite3_result_int(context, bytes[3] >> 4 & 1);
}

// A GeoPackage as another program sees it.
class Client {
  public:
    explicit Client(const std::string& path) {
        EXPECT_EQ(sqlite3_open_v2(path.c_str(), &handle_, SQLITE_OPEN_READWRITE, nullptr),
                  SQLITE_OK);
        const auto add = [&](const char* name, auto* function) {
            sqlite3_create_function(handle_, name, 1, SQLITE_UTF8, nullptr, function, nullptr,
                                    nullptr);
        };
        add("ST_MinX", boundOf<0>);
        add("ST_MaxX", boundOf<1>);
        add("ST_MinY", boundOf<2>);
        add("ST_MaxY", boundOf<3>);
        add("ST_IsEmpty", isEmpty);
    }
    ~Client() { sqlite3_close(handle_); }

    // Rows as lines, cells between bars; blobs in words.
    std::string ask(const std::string& sql) {
        sqlite3_stmt* statement = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(handle_, sql.c_str(), -1, &statement, nullptr), SQLITE_OK)
            << sqlite3_errmsg(handle_) << "\n"
            << sql;
        std::string text;
        int code = SQLITE_ROW;
        while (statement && (code = sqlite3_step(statement)) == SQLITE_ROW) {
            if (!text.empty()) text += "\n";
            for (int i = 0; i < sqlite3_column_count(statement); ++i) {
                if (i > 0) text += "|";
                const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement, i));
                if (sqlite3_column_type(statement, i) == SQLITE_BLOB) {
                    text += blobWords(
                        {static_cast<const char*>(sqlite3_column_blob(statement, i)), size});
                } else if (const unsigned char* cell = sqlite3_column_text(statement, i)) {
                    text += reinterpret_cast<const char*>(cell);
                } else {
                    text += "NULL";
                }
            }
        }
        EXPECT_TRUE(code == SQLITE_DONE || code == SQLITE_ROW) << sqlite3_errmsg(handle_);
        sqlite3_finalize(statement);
        return text;
    }

    void expectSound() {
        EXPECT_EQ(ask("PRAGMA integrity_check"), "ok");
        EXPECT_EQ(ask("PRAGMA foreign_key_check"), "");
        EXPECT_EQ(ask("SELECT group_concat(rtreecheck(name), '') FROM sqlite_master WHERE sql LIKE "
                      "'CREATE VIRTUAL%' AND rtreecheck(name) != 'ok'"),
                  "NULL");
    }

  private:
    sqlite3* handle_ = nullptr;
};

class GeoPackageTest : public FormatsTest {
  protected:
    std::unique_ptr<Writer> writer(const Options& options = {}) {
        return geopackage::Maker().make(path("out.gpkg"), options);
    }
    Client client() { return Client(path("out.gpkg")); }
};

Parts square(double x, double y, double side) {
    return Parts({{x, y, x + side, y, x + side, y + side, x, y + side, x, y}});
}

}  // namespace

TEST_F(GeoPackageTest, HoldsGeometriesOfAllTypes) {
    auto out = writer();
    const auto one = [&](const char* name, GeometryType type, const Parts& parts) {
        Layer each = layer(name, type);
        each.system = wgs84();
        EXPECT_EQ(out->begin(each), name);
        EXPECT_TRUE(out->add(1, parts, {}));
        EXPECT_TRUE(out->add(2, {}, {}));
        EXPECT_FALSE(out->add(3, Parts({{0, NAN, 5}}), {}));
        EXPECT_FALSE(out->add(4, Parts({{INFINITY, 0, 5}}), {}));
        out->end();
    };
    one("point", GeometryType::kPoint, Parts({{1, 2}}));
    one("pointz", GeometryType::kPointZ, Parts({{1, 2, 3}}));
    one("line", GeometryType::kLineString, Parts({{0, 5, 2, -3}}));
    one("linez", GeometryType::kLineStringZ, Parts({{0, 5, 9, 2, -3, 8}}));
    one("lines", GeometryType::kMultiLineString, Parts({{0, 0, 1, 1}, {5, 5, 6, 6}}));
    one("polygon", GeometryType::kPolygon,
        Parts({{0, 0, 9, 0, 0, 9, 0, 0}, {1, 1, 1, 2, 2, 1, 1, 1}}));
    one("polygonz", GeometryType::kPolygonZ, Parts({{0, 0, 7, 9, 0, 7, 0, 9, 7, 0, 0, 7}}));
    one("polygons", GeometryType::kMultiPolygon,
        Parts(
            {{0, 0, 9, 0, 0, 9, 0, 0}, {1, 1, 1, 2, 2, 1, 1, 1}, {20, 20, 21, 20, 20, 21, 20, 20}},
            {2, 1}));
    one("single", GeometryType::kMultiPolygon, Parts({{0, 0, 9, 0, 0, 9, 0, 0}}));
    out->finish();

    Client file = client();
    file.expectSound();
    const std::pair<const char*, const char*> expected[] = {
        {"point", "srs 4326: 1[1 2 ]"},
        {"pointz", "srs 4326: 1001[1 2 3 ]"},
        {"line", "srs 4326 box 0 2 -3 5: 2[0 5 2 -3 ]"},
        {"linez", "srs 4326 box 0 2 -3 5: 1002[0 5 9 2 -3 8 ]"},
        {"lines", "srs 4326 box 0 6 0 6: 5[2[0 0 1 1 ]2[5 5 6 6 ]]"},
        {"polygon", "srs 4326 box 0 9 0 9: 3[0 0 9 0 0 9 0 0 ; 1 1 1 2 2 1 1 1 ; ]"},
        {"polygonz", "srs 4326 box 0 9 0 9: 1003[0 0 7 9 0 7 0 9 7 0 0 7 ; ]"},
        {"polygons",
         "srs 4326 box 0 21 0 21: 6[3[0 0 9 0 0 9 0 0 ; 1 1 1 2 2 1 1 1 ; ]"
         "3[20 20 21 20 20 21 20 20 ; ]]"},
        {"single", "srs 4326 box 0 9 0 9: 6[3[0 0 9 0 0 9 0 0 ; ]]"},
    };
    for (const auto& [name, blob] : expected) {
        EXPECT_EQ(file.ask("SELECT * FROM " + std::string(name)),
                  "1|" + std::string(blob) + "\n2|NULL\n3|NULL\n4|NULL");
        EXPECT_EQ(file.ask("SELECT id FROM rtree_" + std::string(name) + "_geom"), "1");
    }
    EXPECT_EQ(file.ask("SELECT table_name, column_name, geometry_type_name, srs_id, z, m FROM "
                       "gpkg_geometry_columns WHERE table_name LIKE 'point%' OR z = 1"),
              "point|geom|POINT|4326|0|0\npointz|geom|POINT|4326|1|0\n"
              "linez|geom|LINESTRING|4326|1|0\npolygonz|geom|POLYGON|4326|1|0");
}

TEST_F(GeoPackageTest, TellsWhatIsInIt) {
    setenv("SOURCE_DATE_EPOCH", "86400", 1);
    const auto write = [&] {
        auto out = writer({.replace = true});
        Layer roads = layer("roads", GeometryType::kLineString,
                            {{"ROADS#", ColumnType::kInteger, 4},
                             {"LENGTH", ColumnType::kReal, 4},
                             {"NAME", ColumnType::kText, 12},
                             {"DAY", ColumnType::kDate, 8},
                             {"BIG", ColumnType::kInteger, 0}});
        roads.system.kind = crs::Kind::Projected;
        roads.system.name = "mine";
        roads.system.wkt2 = "PROJCRS[...]";
        roads.description = "All roads";
        out->begin(roads);
        const Value values[] = {int64_t{7}, 0.5, "Stra\u00dfe", Date{1999, 2, 3}, INT64_MIN};
        out->add(12, Parts({{-1, 2, 3, 4.5}}), values);
        const Value nothing[] = {{}, NAN, "", {}, {}};
        out->add(13, {}, nothing);
        out->end();
        roads.name = "other";
        roads.columns.clear();
        out->begin(roads);
        out->end();
        roads.system.wkt2 = "PROJCRS[another]";
        roads.name = "third";
        roads.system.wkt1 = "PROJCS[another]";
        out->begin(roads);
        out->end();
        Layer table = layer("WORLD.PAT", GeometryType::kNone, {{"X", ColumnType::kReal, 8}});
        out->begin(table);
        const Value half = 0.5;
        out->add(1, {}, {&half, 1});
        out->end();
        EXPECT_TRUE(out->text({"log", "text/plain", "", "", "one\ntwo"}));
        EXPECT_TRUE(out->text({"x", "text/xml", "http://example.org/md", "roads", "<a/>"}));
        out->finish();
        return intake::testing::fileBytes(path("out.gpkg"));
    };
    EXPECT_EQ(write(), write());
    unsetenv("SOURCE_DATE_EPOCH");

    Client file = client();
    file.expectSound();
    EXPECT_EQ(file.ask("PRAGMA application_id"), std::to_string(0x47504B47));
    EXPECT_EQ(file.ask("PRAGMA user_version"), "10300");
    EXPECT_EQ(file.ask("SELECT * FROM roads"),
              "12|srs 100000 box -1 3 2 4.5: 2[-1 2 3 4.5 ]|7|0.5|Stra\u00dfe|1999-02-03|"
              "-9223372036854775808\n13|NULL|NULL|NULL||NULL|NULL");
    EXPECT_EQ(file.ask("SELECT name, type, \"notnull\", pk FROM pragma_table_info('roads')"),
              "fid|INTEGER|1|1\ngeom|LINESTRING|0|0\nROADS#|MEDIUMINT|0|0\nLENGTH|FLOAT|0|0\n"
              "NAME|TEXT(12)|0|0\nDAY|DATE|0|0\nBIG|INTEGER|0|0");
    EXPECT_EQ(file.ask("SELECT * FROM gpkg_contents"),
              "roads|features|roads|All roads|1970-01-02T00:00:00.000Z|-1.0|2.0|3.0|4.5|100000\n"
              "other|features|other|All roads|1970-01-02T00:00:00.000Z|NULL|NULL|NULL|NULL|100000\n"
              "third|features|third|All roads|1970-01-02T00:00:00.000Z|NULL|NULL|NULL|NULL|100001\n"
              "WORLD.PAT|attributes|WORLD.PAT||1970-01-02T00:00:00.000Z|NULL|NULL|NULL|NULL|NULL");
    EXPECT_EQ(
        file.ask("SELECT srs_id, srs_name, organization, organization_coordsys_id, "
                 "definition_12_063, definition FROM gpkg_spatial_ref_sys WHERE srs_id != 4326"),
        "-1|Undefined Cartesian SRS|NONE|-1|undefined|undefined\n"
        "0|Undefined geographic SRS|NONE|0|undefined|undefined\n"
        "100000|mine|NONE|100000|PROJCRS[...]|undefined\n"
        "100001|mine|NONE|100001|PROJCRS[another]|PROJCS[another]");
    EXPECT_EQ(
        file.ask("SELECT table_name, column_name, extension_name, scope FROM gpkg_extensions"),
        "gpkg_spatial_ref_sys|definition_12_063|gpkg_crs_wkt|read-write\n"
        "roads|geom|gpkg_rtree_index|write-only\n"
        "other|geom|gpkg_rtree_index|write-only\n"
        "third|geom|gpkg_rtree_index|write-only\n"
        "gpkg_metadata|NULL|gpkg_metadata|read-write\n"
        "gpkg_metadata_reference|NULL|gpkg_metadata|read-write");
    EXPECT_EQ(file.ask("SELECT r.reference_scope, r.table_name, m.md_standard_uri, m.mime_type, "
                       "m.metadata FROM gpkg_metadata m JOIN gpkg_metadata_reference r ON "
                       "r.md_file_id = m.id"),
              "geopackage|NULL|log|text/plain|one\ntwo\n"
              "table|roads|http://example.org/md|text/xml|<a/>");
}

// With so many boxes that they are sorted in a file, and numbers of nodes around each step.
TEST_F(GeoPackageTest, TheIndexFindsWhatALoopFinds) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> place(-1e6, 1e6);
    std::uniform_real_distribution<double> size(0, 2e4);
    struct Box {
        int64_t fid;
        double x, y, side;
    };
    for (const int count : {0, 1, 51, 52, 51 * 51, 51 * 51 + 1, 300'000}) {
        std::vector<Box> boxes;
        for (int i = 0; i < count; ++i) {
            boxes.push_back({int64_t{i} * 3 - 100, place(random), place(random), size(random)});
        }
        std::ranges::shuffle(boxes, random);
        auto out = writer({.replace = true});
        out->begin(layer("boxes", GeometryType::kPolygon));
        for (const Box& box : boxes) out->add(box.fid, square(box.x, box.y, box.side), {});
        out->end();
        out->finish();
        Client file = client();
        file.expectSound();
        EXPECT_EQ(file.ask("SELECT count(*) FROM rtree_boxes_geom"), std::to_string(count));
        const int leaves = std::max((count + 50) / 51, 1);
        EXPECT_LE(std::stoi(file.ask("SELECT count(*) FROM rtree_boxes_geom_node")),
                  leaves + leaves / 50 + 4);
        for (int query = 0; query < 20; ++query) {
            const double west = place(random), south = place(random), side = 4 * size(random);
            int found = 0;
            int64_t sum = 0;
            for (const Box& box : boxes) {
                // Far enough from a bound that the rounding of the index does not show.
                if (box.x + box.side < west || box.x > west + side) continue;
                if (box.y + box.side < south || box.y > south + side) continue;
                ++found;
                sum += box.fid;
            }
            const std::string condition = "minx <= " + std::to_string(west + side) +
                                          " AND maxx >= " + std::to_string(west) +
                                          " AND miny <= " + std::to_string(south + side) +
                                          " AND maxy >= " + std::to_string(south);
            EXPECT_EQ(file.ask("SELECT count(*), total(id) = " + std::to_string(sum) +
                               " FROM rtree_boxes_geom WHERE " + condition),
                      std::to_string(found) + "|1")
                << count << ": " << condition;
        }
    }
}

TEST_F(GeoPackageTest, TheIndexStaysTrueWhenAnotherProgramWrites) {
    auto out = writer();
    out->begin(layer("b", GeometryType::kPolygon, {{"n", ColumnType::kInteger, 4}}));
    for (int i = 1; i <= 500; ++i) {
        const Value value = int64_t{i};
        out->add(i, square(i, i, 0.5), {&value, 1});
    }
    out->end();
    out->finish();

    Client file = client();
    const auto found = [&](double x) {
        return file.ask("SELECT group_concat(id) FROM (SELECT id FROM rtree_b_geom WHERE minx <= " +
                        std::to_string(x) + " AND maxx >= " + std::to_string(x) + " ORDER BY id)");
    };
    const std::pair<const char*, std::vector<std::pair<double, const char*>>> steps[] = {
        {"DELETE FROM b WHERE fid = 7", {{7.2, "NULL"}, {8.2, "8"}}},
        {"INSERT INTO b SELECT 1000, geom, 0 FROM b WHERE fid = 20", {{20.2, "20,1000"}}},
        {"INSERT INTO b VALUES (1001, NULL, 0)", {{20.2, "20,1000"}}},
        {"UPDATE b SET geom = (SELECT geom FROM b WHERE fid = 30) WHERE fid = 31",
         {{31.2, "NULL"}, {30.2, "30,31"}}},
        {"UPDATE b SET geom = NULL WHERE fid = 31", {{30.2, "30"}}},
        {"UPDATE b SET fid = 2000 WHERE fid = 40", {{40.2, "2000"}}},
        {"UPDATE b SET fid = 2001, geom = NULL WHERE fid = 41", {{41.2, "NULL"}}},
        {"UPDATE b SET n = 5 WHERE fid = 50", {{50.2, "50"}}},
        {"DELETE FROM b WHERE fid BETWEEN 100 AND 400", {{200.2, "NULL"}, {401.2, "401"}}},
    };
    for (const auto& [sql, expected] : steps) {
        file.ask(sql);
        for (const auto& [x, ids] : expected) EXPECT_EQ(found(x), ids) << sql;
        file.expectSound();
    }
}

TEST_F(GeoPackageTest, TakesAnyName) {
    auto out = writer();
    const std::string hostile = "a\"; DROP TABLE gpkg_contents; --'[]`<i>\n\u00e4";
    const std::vector<Column> columns{{"FID"},   {"geom"}, {"Geom"}, {""},       {"column"},
                                      {hostile}, {"x\"y"}, {"X\"Y"}, {"select"}, {"#"}};
    std::vector<Value> values;
    for (std::size_t i = 0; i < columns.size(); ++i) values.emplace_back("v");
    std::vector<std::string> names;
    for (const char* name : {hostile.c_str(), "gpkg_contents", "SQLITE_x", "rtree_roads_geom",
                             "roads", "ROADS", "roads_2", "", "layer"}) {
        names.push_back(out->begin(layer(name, GeometryType::kPoint, columns)));
        out->add(1, Parts({{1, 2}}), values);
        out->end();
    }
    out->finish();
    EXPECT_EQ(names, (std::vector<std::string>{hostile, "layer_gpkg_contents", "layer_SQLITE_x",
                                               "layer_rtree_roads_geom", "roads", "ROADS_2",
                                               "roads_2_2", "layer", "layer_2"}));
    Client file = client();
    file.expectSound();
    EXPECT_EQ(file.ask("SELECT count(*) FROM gpkg_contents"), "9");
    EXPECT_EQ(file.ask("SELECT group_concat(name, ' ') FROM pragma_table_info('roads')"),
              "fid geom FID_2 geom_2 Geom_3 column column_2 " + hostile + " x\"y X\"Y_2 select #");
    // Triggers hold the right names, too.
    for (const char* table : {"roads", "ROADS_2"}) {
        file.ask("DELETE FROM " + std::string(table));
        EXPECT_EQ(file.ask("SELECT count(*) FROM rtree_" + std::string(table) + "_geom"), "0");
    }
    std::string doubled = hostile;
    doubled.insert(1, "\"");
    file.ask("DELETE FROM \"" + doubled + "\"");
    EXPECT_EQ(file.ask("SELECT count(*) FROM \"rtree_" + doubled + "_geom\""), "0");
}

// A feature larger than what is gathered, and more columns than one statement can bind for many
// rows.
TEST_F(GeoPackageTest, TakesLargeFeaturesAndWideTables) {
    auto out = writer();
    out->begin(layer("large", GeometryType::kLineString, {{"text"}}));
    const std::string text(1 << 20, 'x');
    for (int i = 1; i <= 40; ++i) {
        const Value value = std::string_view(text).substr(0, i % 3 == 0 ? text.size() : 3);
        out->add(i, Parts({Part(i % 7 == 0 ? 200'000 : 4, i)}), {&value, 1});
    }
    out->end();
    out->begin(layer("wide", GeometryType::kNone, std::vector<Column>(1900)));
    std::vector<Value> values(1900, int64_t{5});
    for (int i = 1; i <= 40; ++i) out->add(i, {}, values);
    out->end();
    out->finish();
    Client file = client();
    file.expectSound();
    EXPECT_EQ(file.ask("SELECT count(*), sum(length(text)), sum(length(geom)) FROM large"),
              "40|" + std::to_string(13 * text.size() + 27 * 3) + "|" +
                  std::to_string(40 * 49 + 35 * 32 + 5 * 1'600'000));
    EXPECT_EQ(file.ask("SELECT count(*), sum(column_1900) FROM wide"), "40|200");
    EXPECT_NE(complaint([&] {
                  auto wider = geopackage::Maker().make(path("wider.gpkg"), {});
                  wider->begin(layer("wider", GeometryType::kNone, std::vector<Column>(2100)));
              }).find("too many columns"),
              std::string::npos);
}

TEST_F(GeoPackageTest, AKeyThatComesTwiceIsTold) {
    const std::string said = complaint([&] {
        auto out = writer();
        out->begin(layer("a", GeometryType::kNone));
        out->add(1, {}, {});
        out->add(1, {}, {});
        out->end();
        out->finish();
    });
    EXPECT_EQ(said, path("out.gpkg") + ": UNIQUE constraint failed: a.fid");
    EXPECT_EQ(files(), std::vector<std::string>{});
}

}  // namespace formats::testing
