// The map that comes with the project, held against what is known to be in it.
#include <sstream>

#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using Sample = ImportTest;

// A class of samples/wcr.expect.json, the class of the dump, and the keys whose numbers make one of
// its canonical lines, in order; "#key" is the length of a list.
struct SampleClass {
    const char* key;
    const char* dumpClass;
    std::vector<std::string> numbers;
};

void appendNumbers(const json& value, std::vector<float>& numbers) {
    if (value.is_number()) {
        numbers.push_back(value.get<float>());
    } else {
        for (const json& each : value) appendNumbers(each, numbers);
    }
}

std::vector<float> numbersOf(const json& record, const std::vector<std::string>& keys) {
    std::vector<float> numbers;
    for (const std::string& key : keys) {
        if (key.front() == '#') {
            numbers.push_back(static_cast<float>(record.at(key.substr(1)).size()));
        } else {
            appendNumbers(record.at(key), numbers);
        }
    }
    return numbers;
}

std::vector<float> numbersOf(const std::string& canonicalLine) {
    std::vector<float> numbers;
    std::istringstream words(canonicalLine);
    // The coverage keeps 32 bits of each number.
    for (double number = 0; words >> number;) numbers.push_back(static_cast<float>(number));
    return numbers;
}

TEST_F(Sample, HoldsWhatIsKnownToBeInIt) {
    const std::string samples = INTAKE_SOURCE_DIR "/samples/";
    const json expected = json::parse(fileBytes(samples + "wcr.expect.json"));
    given(fileBytes(samples + "wcr.e00"));
    ASSERT_EQ(import("WCR"), expected["result"]);

    const SampleClass classes[] = {
        {"ARC",
         "arc",
         {"number", "userId", "fromNode", "toNode", "leftPolygon", "rightPolygon", "#vertices",
          "vertices"}},
        {"LAB", "label", {"userId", "polygon", "x", "y", "box"}},
        {"CNT", "centroid", {"x", "y", "#labels", "labels"}},
        {"PAL", "polygon", {"box", "#arcs", "arcs"}},
    };
    for (const SampleClass& each : classes) {
        SCOPED_TRACE(each.key);
        const json& content = expected["content"][each.key];
        std::vector<json> found = records(each.dumpClass, "WCR");
        std::erase_if(found, [&](const json& record) { return record["class"] != each.dumpClass; });
        ASSERT_EQ(found.size(), content["count"]);
        EXPECT_EQ(numbersOf(found.front(), each.numbers), numbersOf(content["first"]));
        EXPECT_EQ(numbersOf(found.back(), each.numbers), numbersOf(content["last"]));
    }
}

}  // namespace
}  // namespace intake::testing
