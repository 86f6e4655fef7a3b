// Polygons out of the arcs of a coverage, beside the import of these arcs.
#include <cstdio>
#include <fstream>
#include <numeric>

#include "bench/measure.h"
#include "bench/workspace.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "topology/arcs_by_polygon.h"
#include "topology/assembler.h"

namespace bench {

namespace {

using qx::call;

constexpr int kArcBytes = 81 + 10 * 81;  // 20 vertices in single form

// A map of square cells, each a polygon, with an arc of twenty vertices a side.
class Map {
  public:
    explicit Map(std::size_t bytes) {
        while (2 * (side_ + 1) * side_ * kArcBytes < static_cast<int>(bytes)) ++side_;
    }
    int polygons() const { return side_ * side_; }

    std::string text() const {
        std::string text = "EXP  0 MAP.E00\nARC  2\n";
        int number = 0;
        for (int y = 0; y <= side_; ++y) {
            for (int x = 0; x <= side_; ++x) {
                if (y < side_) add(text, ++number, x, y, 0, 1, cell(x - 1, y), cell(x, y));
                if (x < side_) add(text, ++number, x, y, 1, 0, cell(x, y), cell(x, y - 1));
            }
        }
        return text +
               "        -1         0         0         0         0         0         0\nEOS\n";
    }

  private:
    int cell(int x, int y) const {
        return x < 0 || y < 0 || x >= side_ || y >= side_ ? 1 : 2 + y * side_ + x;
    }
    int node(int x, int y) const { return 1 + y * (side_ + 1) + x; }

    void add(std::string& text, int number, int x, int y, int right, int up, int leftPolygon,
             int rightPolygon) const {
        char line[82];
        std::snprintf(line, sizeof line, "%10d%10d%10d%10d%10d%10d%10d\n", number, number,
                      node(x, y), node(x + right, y + up), leftPolygon, rightPolygon, 20);
        text += line;
        for (int vertex = 0; vertex < 20; ++vertex) {
            // The way between two corners is a little uneven.
            const double along = vertex / 19.0;
            const double aside = vertex == 0 || vertex == 19 ? 0 : 0.01 * (vertex * 7 % 5 - 2);
            std::snprintf(line, sizeof line, "%14.7E%14.7E%s", x + right * along + up * aside,
                          y + up * along + right * aside, vertex % 2 == 1 ? "\n" : "");
            text += line;
        }
    }

    int side_ = 1;
};

// The arcs of a coverage by their numbers, which are those of their records here.
class CoverageArcs : public topology::ArcSource {
  public:
    explicit CoverageArcs(const std::string& coverage) {
        int32_t status = 0;
        call(arcopn_, handle_, std::string_view(coverage), status);
        require(status == 0, "the coverage has arcs");
    }
    ~CoverageArcs() override { call(arccls_, handle_); }

    void addTo(topology::ArcsByPolygon& lists) {
        QxArc arc{};
        int32_t number = 0, status = 0;
        const int32_t frontAlone = -1;
        int32_t arcs = 0;
        call(arcrec_, handle_, arcs);
        lists.expect(static_cast<std::size_t>(arcs));
        for (;;) {
            call(arcrd_, handle_, number, arc, &room_.front().x, frontAlone, status);
            if (status != 0) break;
            lists.add(number, arc.leftPolygon, arc.rightPolygon);
        }
        lists.finish();
    }

    bool vertices(int32_t number, std::span<const double>& pairs) override {
        int32_t status = 0, read = 0;
        call(arcpos_, handle_, number, status);
        if (status != 0) return false;
        QxArc arc{};
        if (this->read(read, arc) != 0) return false;
        pairs = std::span(&room_.front().x, static_cast<std::size_t>(arc.vertexCount) * 2);
        return true;
    }

  private:
    int32_t read(int32_t& number, QxArc& arc) {
        int32_t status = 0;
        const auto room = static_cast<int32_t>(room_.size());
        call(arcrd_, handle_, number, arc, &room_.front().x, room, status);
        return status;
    }

    int32_t handle_ = 0;
    std::vector<topology::Point> room_ = std::vector<topology::Point>(500);
};

std::size_t assembleAll(int polygons) {
    const std::string coverage = (folder() / "workspace/DS").string();
    baseinitC();
    std::size_t rings = 0, problems = 0;
    {
        CoverageArcs arcs(coverage);
        topology::ArcsByPolygon lists;
        arcs.addTo(lists);
        require(lists.polygons().size() == static_cast<std::size_t>(polygons) + 1, "all polygons");
        topology::Assembler assembler(arcs);
        for (const int32_t polygon : lists.polygons()) {
            if (polygon == 1) continue;
            const topology::Shape& shape = assembler.assemble(lists.of(polygon));
            rings += shape.rings();
            problems += shape.problems.size();
        }
    }
    baseendC();
    require(problems == 0, "no polygon has a problem");
    return rings;
}

}  // namespace

void registerPolygons() {
    const auto map = std::make_shared<Map>(importBytes());
    const auto file = [] { return folder() / "map.e00"; };
    Comparison comparison("polygons");
    comparison.around(
        [=] {
            std::ofstream(file(), std::ios::binary) << map->text();
            clearWorkspace();
            import(file());
            require(assembleAll(map->polygons()) == static_cast<std::size_t>(map->polygons()),
                    "a ring a polygon");
            std::printf("%d polygons\n", map->polygons());
            return fs::file_size(file());
        },
        [=] {
            clearWorkspace();
            fs::remove(file());
        });
    comparison.add("import", [=] {
        clearWorkspace();
        import(file());
    });
    comparison.add("intake", [=] { assembleAll(map->polygons()); });
    comparison.rounds(importRounds()).run();
}

}  // namespace bench
