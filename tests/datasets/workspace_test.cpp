#include "datasets/workspace.h"

#include "datasets/rasters.h"
#include "datasets/stacks.h"
#include "datasets/surfaces.h"
#include "datasets/tables.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

class Reading : public ImportTest {
  protected:
    void sample(const std::string& name, const std::string& dataset) {
        given(fileBytes(INTAKE_SOURCE_DIR "/samples/" + name + ".e00"));
        ASSERT_EQ(import(dataset), 1) << name;
        std::filesystem::remove(path("in.e00"));
    }
};

TEST_F(Reading, AWorkspaceTellsItsDatasetsAndTheirTables) {
    EXPECT_TRUE(datasets::datasetsIn(path("nowhere")).empty());
    EXPECT_EQ(datasets::tablesIn(path("nowhere")).count(), 0);
    sample("wcr", "WORLD.A");
    sample("ctry", "ALONE");
    sample("pcln", "lines");
    sample("wmap", "MAP");
    std::vector<std::string> found;
    for (const datasets::Stored& each : datasets::datasetsIn(path("."))) {
        std::string line = each.name + ":";
        for (const std::string& kind : each.kinds) line += " " + kind;
        found.push_back(line);
        EXPECT_EQ(each.kinds, datasets::kindsOf(path(each.name)));
    }
    EXPECT_EQ(found, (std::vector<std::string>{"MAP: Map", "WORLD.A: Coverage",
                                               "lines: Lineset File Shadeset File Textset File"}));
    std::vector<std::string> owned;
    for (const datasets::TablePlace& each : datasets::tablesIn(path("."))) {
        EXPECT_TRUE(datasets::table(each));
        if (each.owner() == "WORLD.A") {
            EXPECT_TRUE(each.name.starts_with("WORLD.A."));
        } else {
            owned.push_back(each.name + " of '" + std::string(each.owner()) + "'");
        }
    }
    EXPECT_EQ(owned, std::vector<std::string>{"ALONE of ''"});
}

TEST_F(Reading, CellsHaveTheirPlacesAndRowsComeInPieces) {
    sample("jkstk", "STACK");
    const auto grids = datasets::memberGrids(path("STACK"));
    ASSERT_FALSE(grids.empty());
    const datasets::Raster grid(grids.front().path, QX_GRID);
    ASSERT_TRUE(grid);
    EXPECT_FALSE(datasets::Raster(grids.front().path, QX_LATTICE));
    const auto [xmin, ymin, xmax, ymax] = grid.box();
    const QxRaster& shape = grid.shape();
    const auto first = grid.place(0, 0);
    const auto last = grid.place(shape.columns - 1, shape.rows - 1);
    EXPECT_DOUBLE_EQ(first.x, xmin + shape.cellSize[0] / 2);
    EXPECT_DOUBLE_EQ(first.y, ymax - shape.cellSize[1] / 2);
    EXPECT_NEAR(last.x, xmax - shape.cellSize[0] / 2, 1e-6);
    EXPECT_NEAR(last.y, ymin + shape.cellSize[1] / 2, 1e-6);

    // The points of a lattice of 5,000 columns: beyond one piece.
    std::string text =
        "EXP  0 X\nLAT  2\n      5000         2\n 1.0000000E+00 2.0000000E+00"
        " 2.5000000E-01 5.0000000E-01\n 0.0000000E+00 9.0000000E+00\n";
    for (int line = 0; line < 2500; ++line) {
        text += " 1.0000000E+00 2.0000000E+00 3.0000000E+00-9.9990000E+13\n";
    }
    given(text + "\nEOS\n");
    ASSERT_EQ(import("LATTICE"), 1);
    const datasets::Raster lattice(path("LATTICE"), QX_LATTICE);
    EXPECT_DOUBLE_EQ(lattice.place(2, 1).x, 1.5);
    EXPECT_DOUBLE_EQ(lattice.place(2, 1).y, 2.0);
    double sum = 0;
    std::size_t cells = 0;
    std::size_t missing = 0;
    for (const auto& words : datasets::rowOf(lattice, 0)) {
        cells += words.size();
        for (const int32_t word : words) {
            const auto value = lattice.value(word);
            value ? sum += *value : static_cast<double>(++missing);
        }
    }
    EXPECT_EQ(cells, 5000U);
    EXPECT_EQ(missing, 1250U);
    EXPECT_EQ(sum, 7500.0);
    for ([[maybe_unused]] const auto& words : datasets::rowOf(lattice, 2)) FAIL();
}

// Members of a surface end where their files do, each for itself.
TEST_F(Reading, ACutMemberOfASurfaceEndsAlone) {
    given(fileBytes(INTAKE_SOURCE_DIR "/fuzz/seeds/import/tin.e00"));
    ASSERT_EQ(import("TIN"), 1);
    std::size_t nodes = 0;
    for (const datasets::Node& node : datasets::nodes(path("TIN"))) nodes += node.height ? 1 : 0;
    ASSERT_GT(nodes, 1U);
    std::filesystem::resize_file(path("TIN/tnz"), 4);
    std::size_t places = 0;
    std::size_t heights = 0;
    for (const datasets::Node& node : datasets::nodes(path("TIN"))) {
        EXPECT_EQ(node.number, static_cast<int64_t>(++places));
        heights += node.height ? 1 : 0;
    }
    EXPECT_EQ(places, nodes);
    EXPECT_EQ(heights, 1U);
    EXPECT_FALSE(datasets::nodes(path("nowhere")).next());
}

}  // namespace
}  // namespace intake::testing
