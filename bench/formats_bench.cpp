// Writers of open formats. GeoPackage: lines of 20 vertices with a spatial index, beside a bare
// loop that inserts the same blobs into a table without any. GeoJSON: megabytes of output to a
// second of CPU. Memory: the same for ten thousand features and for a million.
#include <sqlite3.h>

#include <cmath>
#include <filesystem>

#include "bench/measure.h"
#include "bench/memory.h"
#include "bench/workspace.h"
#include "formats/geojson/geojson.h"
#include "formats/geopackage/geometry_blob.h"
#include "formats/geopackage/geopackage.h"

namespace bench {

namespace {

namespace fs = std::filesystem;
using formats::GeometryType;
using formats::Value;

// 500,000 of them, unless imports are wished to be smaller or larger than usual.
const int kLines = static_cast<int>(importBytes() >> 20) * 5000;
constexpr std::size_t kVertices = 20;
constexpr std::size_t kColumns = 5;
constexpr int64_t kBlobBytes = 8 + 32 + 5 + 4 + kVertices * 16;

// Line n, somewhere in a square of 360 degrees a side.
std::span<const double> line(int number) {
    static std::array<double, 2 * kVertices> coordinates;
    const uint32_t place = static_cast<uint32_t>(number) * 2654435761U;
    double x = (place & 0xffff) / 65536.0 * 350 - 175;
    double y = (place >> 16) / 65536.0 * 170 - 85;
    for (std::size_t i = 0; i < coordinates.size(); i += 2) {
        coordinates[i] = x;
        coordinates[i + 1] = y;
        x += 0.0123456789;
        y += i % 8 < 4 ? 0.00654321 : -0.00456789;
    }
    return coordinates;
}

formats::Layer lineLayer() {
    formats::Layer layer;
    layer.name = "lines";
    layer.geometry = GeometryType::kLineString;
    for (std::size_t i = 0; i < kColumns; ++i) {
        layer.columns.push_back({"c" + std::to_string(i), formats::ColumnType::kInteger, 4});
    }
    return layer;
}

// Lines from first to last by a writer.
void write(const formats::WriterMaker& maker, const std::string& path, int first, int last) {
    formats::Options options;
    options.replace = true;
    options.toWgs84 = [](const crs::ReferenceSystem&) { return [](std::span<double>) {}; };
    const auto writer = maker.make(path, options);
    writer->begin(lineLayer());
    std::array<Value, kColumns> values;
    for (int number = first; number <= last; ++number) {
        const std::span<const double> part = line(number);
        for (Value& value : values) value = int64_t{number};
        require(writer->add(number, {{&part, 1}, {}}, values), "a line is taken");
    }
    writer->end();
    writer->finish();
}

std::string output(const char* name) { return (folder() / name).string(); }

void remove(const char* name) { fs::remove(output(name)); }

void must(int code) { require(code == SQLITE_OK || code == SQLITE_DONE, "SQLite does it"); }

// What everyone writes: one statement, run once a row. The blobs are made, too.
void insertPlainly() {
    sqlite3* handle = nullptr;
    must(sqlite3_open(output("plain.gpkg").c_str(), &handle));
    must(sqlite3_exec(handle,
                      "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; BEGIN;"
                      "CREATE TABLE lines (fid INTEGER PRIMARY KEY, geom BLOB, c0 INTEGER, "
                      "c1 INTEGER, c2 INTEGER, c3 INTEGER, c4 INTEGER)",
                      nullptr, nullptr, nullptr));
    sqlite3_stmt* insert = nullptr;
    must(sqlite3_prepare_v2(handle, "INSERT INTO lines VALUES (?, ?, ?, ?, ?, ?, ?)", -1, &insert,
                            nullptr));
    std::vector<std::byte> blob;
    for (int number = 1; number <= kLines; ++number) {
        const std::span<const double> part = line(number);
        const formats::Geometry geometry{{&part, 1}, {}};
        const auto found = formats::geopackage::measured(GeometryType::kLineString, geometry);
        blob.clear();
        formats::geopackage::appendBlob(blob, GeometryType::kLineString, -1, geometry, found.box);
        must(sqlite3_bind_int(insert, 1, number));
        must(sqlite3_bind_blob(insert, 2, blob.data(), static_cast<int>(blob.size()),
                               SQLITE_STATIC));
        for (int i = 0; i < static_cast<int>(kColumns); ++i) {
            must(sqlite3_bind_int(insert, 3 + i, number));
        }
        must(sqlite3_step(insert));
        must(sqlite3_reset(insert));
    }
    sqlite3_finalize(insert);
    must(sqlite3_exec(handle, "COMMIT", nullptr, nullptr, nullptr));
    must(sqlite3_close(handle));
}

const formats::geopackage::Maker kGeoPackage;

// The number that a query of one number gives.
int64_t ask(const char* file, const char* sql) {
    sqlite3* handle = nullptr;
    must(sqlite3_open(output(file).c_str(), &handle));
    sqlite3_stmt* statement = nullptr;
    must(sqlite3_prepare_v2(handle, sql, -1, &statement, nullptr));
    require(sqlite3_step(statement) == SQLITE_ROW, sql);
    const int64_t answer = sqlite3_column_int64(statement, 0);
    sqlite3_finalize(statement);
    sqlite3_close(handle);
    return answer;
}

// Both hold the same blobs, and the index finds what it should.
void check() {
    static bool checked = false;
    if (checked) return;
    checked = true;
    insertPlainly();
    write(kGeoPackage, output("ours.gpkg"), 1, kLines);
    for (const char* file : {"plain.gpkg", "ours.gpkg"}) {
        require(ask(file, "SELECT sum(length(geom)) FROM lines") == kLines * kBlobBytes, file);
        require(ask(file, "SELECT sum(c4) FROM lines") == int64_t{kLines} * (kLines + 1) / 2, file);
    }
    require(ask("ours.gpkg", "SELECT rtreecheck('rtree_lines_geom') = 'ok'") == 1, "a sound tree");
    require(ask("ours.gpkg", "SELECT count(*) FROM rtree_lines_geom") == kLines, "all in the tree");
}

// Held to the limit that holds for any number of features.
void memoryOf(benchmark::State& state, const formats::WriterMaker& maker) {
    constexpr long kMostKilobytes = 48 * 1024;
    try {
        for (auto _ : state) {
            const auto growth = [&](int features) {
                return growthOf([&] { write(maker, output("memory"), 1, features); });
            };
            const double start = now().cpu;
            const long few = growth(10'000);
            const long many = growth(1'000'000);
            state.SetIterationTime(now().cpu - start);
            state.counters["kB_10000"] = static_cast<double>(few);
            state.counters["kB_1000000"] = static_cast<double>(many);
            require(std::max(few, many) < kMostKilobytes, "memory is bounded");
        }
    } catch (const std::exception& exception) {
        state.SkipWithError(exception.what());
    }
    remove("memory");
}

}  // namespace

void registerFormats() {
    Comparison geoPackage("formats/geopackage", static_cast<std::size_t>(kLines * kBlobBytes));
    geoPackage.around(
        [] {
            check();
            return static_cast<std::size_t>(kLines * kBlobBytes);
        },
        [] {
            remove("plain.gpkg");
            remove("ours.gpkg");
        });
    geoPackage.add("plain", insertPlainly, [] { remove("plain.gpkg"); });
    geoPackage
        .add(
            "indexed", [] { write(kGeoPackage, output("ours.gpkg"), 1, kLines); },
            [] { remove("ours.gpkg"); })
        .rounds(5)
        .run();

    for (const auto& [name, maker] : {std::pair{"geojson", &formats::geojson::collections()},
                                      {"geojsonl", &formats::geojson::lines()}}) {
        const auto body = [maker = maker] { write(*maker, output("out.geojson"), 1, kLines / 5); };
        Comparison comparison(std::string("formats/") + name);
        comparison.around(
            [body] {
                body();
                return static_cast<std::size_t>(fs::file_size(output("out.geojson")));
            },
            [] { remove("out.geojson"); });
        comparison.add("output", body, [] { remove("out.geojson"); }).rounds(5).run();
    }
    for (const auto& [name, maker] :
         {std::pair<const char*, const formats::WriterMaker*>{"geopackage", &kGeoPackage},
          {"geojson", &formats::geojson::collections()}}) {
        benchmark::RegisterBenchmark(
            (std::string("formats_memory/") + name).c_str(),
            [maker = maker](benchmark::State& state) { memoryOf(state, *maker); })
            ->UseManualTime()
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    }
}

}  // namespace bench
