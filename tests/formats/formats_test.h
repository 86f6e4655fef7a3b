// What tests of writers share.
#ifndef TESTS_FORMATS_FORMATS_TEST_H
#define TESTS_FORMATS_FORMATS_TEST_H

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "formats/writer.h"
#include "tests/support/import_test.h"

namespace formats::testing {

using Part = std::vector<double>;

// Parts that live as long as the call they are given to.
class Parts {
  public:
    Parts(std::vector<Part> parts, std::vector<uint32_t> ringCounts = {})
        : parts_(std::move(parts)),
          spans_(parts_.begin(), parts_.end()),
          ringCounts_(std::move(ringCounts)) {}
    operator Geometry() const { return {spans_, ringCounts_}; }

  private:
    std::vector<Part> parts_;
    std::vector<std::span<const double>> spans_;
    std::vector<uint32_t> ringCounts_;
};

inline crs::ReferenceSystem wgs84() {
    crs::ReferenceSystem system;
    system.kind = crs::Kind::Geographic;
    system.epsg = 4326;
    system.name = "WGS 84";
    system.wkt2 = "GEOGCRS[\"WGS 84\"]";
    system.wkt1 = "GEOGCS[\"WGS 84\"]";
    system.perUnit = 1;
    return system;
}

inline Layer layer(std::string name, GeometryType type, std::vector<Column> columns = {}) {
    return {std::move(name), type, std::move(columns), {}, {}};
}

class FormatsTest : public ::testing::Test {
  protected:
    std::string path(const std::string& name) const { return workspace_.path(name); }

    // All that is in the folder of the test, sorted.
    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path(""))) {
            names.push_back(entry.path().filename().string());
        }
        std::ranges::sort(names);
        return names;
    }

    // What a writer says that fails, or "nothing".
    static std::string complaint(const std::function<void()>& body) {
        try {
            body();
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "nothing";
    }

  private:
    intake::testing::Workspace workspace_;
};

}  // namespace formats::testing

#endif
