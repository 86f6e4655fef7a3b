// A large grid to a GeoTIFF with overviews, beside a bare loop of libtiff that writes the same
// tiles, which it is given in memory, with the same settings; and the memory that it takes.
#include <tiffio.h>

#include <cmath>
#include <memory>
#include <sstream>

#include "app/intake/export/export.h"
#include "bench/measure.h"
#include "bench/memory.h"
#include "bench/workspace.h"
#include "host/qxgridio.h"

namespace bench {

namespace {

constexpr int32_t kTileSide = 512;

// Columns and rows, from the environment: INTAKE_BENCH_GRID.
int32_t gridSide() {
    const char* wish = std::getenv("INTAKE_BENCH_GRID");
    const long side = wish ? std::strtol(wish, nullptr, 10) : 0;
    return side > 0 ? static_cast<int32_t>(side) : 3000;
}

// Hills with the roughness of measured heights, and no data where the sea would be.
void makeGrid(const std::string& path, int32_t side) {
    const int32_t descriptor[6] = {0, 0, 0, -1, 1, 0};
    const double cellSize[2] = {1, 1};
    const double bounds[4] = {0, 0, static_cast<double>(side), static_cast<double>(side)};
    GridIOInit();
    const int32_t channel = CellLyrCreate(path.c_str(), 2, 1, descriptor, cellSize, bounds);
    require(channel > 0, "a grid can be made");
    std::vector<int32_t> row(static_cast<std::size_t>(side));
    uint32_t noise = 1;
    for (int32_t each = 0; each < side; ++each) {
        for (std::size_t at = 0; at < row.size(); ++at) {
            noise = noise * 1664525 + 1013904223;
            const double hills = std::sin(static_cast<double>(at) * 0.003) + std::cos(each * 0.002);
            const auto height =
                static_cast<int32_t>(400 * hills) + static_cast<int32_t>(noise >> 29);
            row[at] = height < -500 ? QX_MISSING_INTEGER : height;
        }
        require(PutWindowRow(channel, each, row.data()) >= 0, "a row is stored");
    }
    CellLyrChannelClose(channel);
}

struct Closing {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using Handle = std::unique_ptr<TIFF, Closing>;

// Copies what a directory says of its cells.
void copyFields(TIFF* from, TIFF* to) {
    for (const int tag :
         {TIFFTAG_IMAGEWIDTH, TIFFTAG_IMAGELENGTH, TIFFTAG_TILEWIDTH, TIFFTAG_TILELENGTH}) {
        uint32_t value = 0;
        TIFFGetField(from, static_cast<uint32_t>(tag), &value);
        TIFFSetField(to, static_cast<uint32_t>(tag), value);
    }
    for (const int tag :
         {TIFFTAG_BITSPERSAMPLE, TIFFTAG_SAMPLEFORMAT, TIFFTAG_PHOTOMETRIC, TIFFTAG_COMPRESSION,
          TIFFTAG_PREDICTOR, TIFFTAG_SAMPLESPERPIXEL, TIFFTAG_PLANARCONFIG}) {
        uint16_t value = 0;
        TIFFGetField(from, static_cast<uint32_t>(tag), &value);
        TIFFSetField(to, static_cast<uint32_t>(tag), value);
    }
}

// Seconds on the clock of a loop that encodes and writes the tiles of a file once more; reading
// them is not part of it.
double plainLoop(const std::string& path, const std::string& copy) {
    TIFFSetWarningHandler(nullptr);
    const Handle from(TIFFOpen(path.c_str(), "r"));
    Handle to(TIFFOpen(copy.c_str(), "w"));
    require(from && to, "both files open");
    double seconds = 0;
    uint64_t bytes = 0;
    uint64_t ours = 0;
    std::vector<std::byte> tile(static_cast<std::size_t>(TIFFTileSize(from.get())));
    do {
        copyFields(from.get(), to.get());
        for (uint32_t each = 0; each < TIFFNumberOfTiles(from.get()); ++each) {
            const tmsize_t size = TIFFReadEncodedTile(from.get(), each, tile.data(), -1);
            require(size == static_cast<tmsize_t>(tile.size()), "a tile is read");
            ours += TIFFGetStrileByteCount(from.get(), each);
            const double start = now().wall;
            TIFFWriteEncodedTile(to.get(), each, tile.data(), size);
            seconds += now().wall - start;
            bytes += TIFFGetStrileByteCount(to.get(), each);
        }
        const double start = now().wall;
        TIFFWriteDirectory(to.get());
        seconds += now().wall - start;
    } while (TIFFReadDirectory(from.get()));
    const double start = now().wall;
    to.reset();
    seconds += now().wall - start;
    require(bytes == ours, "the tiles are the same");
    return seconds;
}

void exportGrid(benchmark::State& state) {
    constexpr long kMostKilobytes = 64 * 1024;
    const int32_t side = gridSide();
    const std::string grid = (folder() / "raster").string();
    const std::string output = (folder() / "raster.tif").string();
    const std::string copy = (folder() / "copy.tif").string();
    try {
        makeGrid(grid, side);
        std::ostringstream nowhere;
        for (auto _ : state) {
            program::Console console{nowhere, nowhere, false};
            program::ExportOptions options;
            options.dataset = grid;
            options.output = output;
            options.replace = true;
            options.quiet = true;
            options.cloud = true;
            double seconds = 0;
            const long grown = growthOf([&] {
                const double start = now().wall;
                require(program::exportDataset(options, console) == 0, "the export succeeds");
                seconds = now().wall - start;
            });
            const double plain = plainLoop(output, copy);
            const long tileRow = long{side} * kTileSide * 4 / 1024;
            state.SetIterationTime(seconds);
            state.counters["times_plain"] = seconds / plain;
            state.counters["plain_s"] = plain;
            state.counters["peak_growth_KB"] = static_cast<double>(grown);
            state.counters["tile_row_KB"] = static_cast<double>(tileRow);
            state.counters["output_KB"] = static_cast<double>(fs::file_size(output) / 1024);
            require(grown <= tileRow + kMostKilobytes, "memory is bounded");
        }
    } catch (const std::exception& exception) {
        state.SkipWithError(exception.what());
    }
    for (const std::string& made : {grid, output, copy, (folder() / "info").string()}) {
        fs::remove_all(made);
    }
}

}  // namespace

void registerRasters() {
    benchmark::RegisterBenchmark("raster", exportGrid)
        ->UseManualTime()
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
}

}  // namespace bench
