#include "host/qxgridio.h"

#include "host/cpp/call.h"
#include "host/qxfeat.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using qx::call;

constexpr double kCellSize[] = {1, 1};
constexpr double kBounds[] = {0, 0, 3, 4};

class Rasters : public ::testing::Test {
  protected:
    ~Rasters() override { gridendC(); }

    // Three columns, four rows, of which the first two are written: 1 2 3, 4 5 6.
    int32_t makeGrid() {
        const int32_t descriptor[] = {0, 0, 0, -1, QX_INTEGER_CELLS, 0};
        const int32_t channel = CellLyrCreate(grid_.c_str(), 2, 1, descriptor, kCellSize, kBounds);
        const int32_t first[] = {1, 2, 3};
        const int32_t second[] = {4, 5, 6};
        EXPECT_EQ(PutWindowRow(channel, 0, first), 0);
        EXPECT_EQ(PutWindowRow(channel, 1, second), 0);
        return channel;
    }
    int32_t open() {
        int32_t handle = 0;
        int32_t status = 0;
        call(rasopn_, handle, std::string_view(grid_), static_cast<int32_t>(QX_GRID), status);
        return status == 0 ? handle : 0;
    }

    Workspace workspace_;
    const std::string grid_ = workspace_.path("G");
};

TEST_F(Rasters, AreReadByWindowsOfARow) {
    CellLyrChannelClose(makeGrid());
    const int32_t handle = open();
    ASSERT_NE(handle, 0);
    struct Case {
        int32_t row, column, count;
        int32_t status;
        std::vector<int32_t> cells;
    };
    const int32_t none = QX_MISSING_INTEGER;
    const Case cases[] = {
        {0, 0, 3, 0, {1, 2, 3}}, {1, 1, 2, 0, {5, 6}},
        {1, 2, 0, 0, {}},        {3, 0, 3, 0, {none, none, none}},
        {4, 0, 1, -1, {0}},      {-1, 0, 1, -1, {0}},
        {0, 2, 2, -1, {0, 0}},   {0, -1, 2, -1, {0, 0}},
    };
    for (const Case& each : cases) {
        std::vector<int32_t> cells(static_cast<std::size_t>(each.count));
        int32_t status = 0;
        rasrd_(&handle, &each.row, &each.column, &each.count, cells.data(), &status);
        EXPECT_EQ(status, each.status) << each.row << ' ' << each.column;
        EXPECT_EQ(cells, each.cells);
    }
}

TEST_F(Rasters, RowsAreWrittenInOrderAndMayBeWrittenAgain) {
    const int32_t channel = makeGrid();
    const int32_t row[] = {7, QX_MISSING_INTEGER, -9};
    EXPECT_LT(PutWindowRow(channel, 3, row), 0);
    EXPECT_LT(PutWindowRow(channel, -1, row), 0);
    EXPECT_EQ(PutWindowRow(channel, 0, row), 0);
    EXPECT_LT(PutWindowRow(channel + 1, 0, row), 0);
    EXPECT_EQ(PrivateWindowSet(channel, kBounds, kCellSize, kBounds), 0);
    const double other[] = {0, 0, 3, 5};
    EXPECT_LT(PrivateWindowSet(channel, other, kCellSize, other), 0);
    CellLyrChannelClose(channel);

    const int32_t handle = open();
    QxRaster raster{};
    int32_t status = 0;
    rasdes_(&handle, &raster, &status);
    EXPECT_EQ(raster.rowsWritten, 2);
    EXPECT_EQ(raster.range[0], -9);
    EXPECT_EQ(raster.range[1], 7);

    // The statistics are there until a table has taken them.
    int32_t flag = 0;
    call(staqtrue_, std::string_view(grid_), flag, status);
    EXPECT_EQ(flag, -1);
    call(staconv_, std::string_view(grid_), 0, status);
    EXPECT_EQ(status, 0);
    call(staqtrue_, std::string_view(grid_), flag, status);
    EXPECT_EQ(flag, 0);
    EXPECT_EQ(status, 0);
    call(staqtrue_, "/nowhere", flag, status);
    EXPECT_NE(status, 0);

    CellLyrDelete(grid_.c_str());
    EXPECT_FALSE(std::filesystem::exists(grid_));
}

TEST_F(Rasters, DamagedFilesAreReadAsFarAsTheyGo) {
    CellLyrChannelClose(makeGrid());
    const std::string file = grid_ + "/grid";
    const std::string good = fileBytes(file);
    for (std::size_t length = 0; length <= good.size(); ++length) {
        writeFile(file, good.substr(0, length));
        const int32_t handle = open();
        EXPECT_EQ(handle != 0, length >= 128) << length;
        if (handle == 0) continue;
        QxRaster raster{};
        int32_t status = 0;
        rasdes_(&handle, &raster, &status);
        EXPECT_EQ(raster.rowsWritten, static_cast<int32_t>((length - 128) / 12));
        rascls_(&handle);
    }
    // A change of any byte of the header is refused or harmless.
    for (std::size_t index = 0; index < 128; ++index) {
        std::string damaged = good;
        damaged[index] = static_cast<char>(~damaged[index]);
        writeFile(file, damaged);
        const int32_t handle = open();
        if (handle == 0) continue;
        const int32_t zero = 0;
        const int32_t one = 1;
        int32_t cell = 0;
        int32_t status = 0;
        rasrd_(&handle, &one, &zero, &one, &cell, &status);
        rascls_(&handle);
        EXPECT_TRUE(index >= 12) << index;
    }
}

TEST_F(Rasters, NumbersAreRoundedByTheirDecimalDigits) {
    struct Case {
        double value;
        int32_t digits;
        double rounded;
    };
    const Case cases[] = {{-12345.678901234, 7, -12345.68},
                          {0.1, 7, 0.1},
                          {-3.4028234663853e38, 7, -3.402823e38},
                          {9999999.6, 7, 1e7},
                          {1.25, 0, 1.0},
                          {-0.0, 7, -0.0}};
    for (const Case& each : cases) {
        EXPECT_EQ(d_sigdig(&each.value, &each.digits), each.rounded) << each.value;
    }
}

}  // namespace
}  // namespace intake::testing
