// Changes to an interchange file as a file: lines that go, come twice or change places, and fields
// whose text is another number of the same width. Half of the time bytes change, as everywhere.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

using Random = std::minstd_rand;

std::size_t pick(Random& random, std::size_t count) { return random() % count; }

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1);
        lines.emplace_back(text.substr(0, end + 1));
        text.remove_prefix(end + 1);
    }
    return lines;
}

// Puts a value to the right end of a field of a width that lines have.
void changeField(std::string& line, Random& random) {
    constexpr std::array<std::size_t, 9> kWidths = {10, 14, 21, 11, 6, 16, 4, 2, 1};
    constexpr std::array<std::string_view, 28> kValues = {
        "",
        "-1",
        "0",
        "1",
        "2",
        "3",
        "7",
        "12",
        "100",
        "1000",
        "32768",
        "65536",
        "1000000",
        "99999999",
        "2147483647",
        "-2147483648",
        "-999999999",
        "**********",
        "NaN",
        "Infinity",
        "1.0000000E+38",
        "-9.9990000E+13",
        "-3.4028235E+38",
        "1.0000000E-45",
        "1.79769313486232E+99",
        "0.00000000000000E+00",
        "../X",
        "END OF LINK DATA",
    };
    const std::size_t width = kWidths[pick(random, kWidths.size())];
    const std::size_t start = width * pick(random, 80 / width);
    const std::string_view value = kValues[pick(random, kValues.size())].substr(0, width);
    const std::size_t length = line.empty() || line.back() != '\n' ? line.size() : line.size() - 1;
    if (length < start + width) line.insert(length, start + width - length, ' ');
    line.replace(start, width, std::string(width - value.size(), ' ') + std::string(value));
}

void changeLines(std::vector<std::string>& lines, Random& random) {
    const std::size_t first = pick(random, lines.size());
    const std::size_t second = pick(random, lines.size());
    const auto at = [&](std::size_t place) {
        return lines.begin() + static_cast<std::ptrdiff_t>(place);
    };
    switch (pick(random, 8)) {
        case 0:
            lines.erase(at(first));
            break;
        case 1:
            std::swap(lines[first], lines[second]);
            break;
        case 2:
            lines.insert(at(second), std::string(lines[first]));
            break;
        case 3: {  // a few lines again, such as a section
            const std::size_t count = std::min(lines.size() - first, 1 + pick(random, 12));
            const std::vector<std::string> copy(at(first), at(first + count));
            lines.insert(at(second), copy.begin(), copy.end());
            break;
        }
        default:
            changeField(lines[first], random);
    }
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
    Random random(seed);
    if (size == 0 || pick(random, 2) == 0) return LLVMFuzzerMutate(data, size, maxSize);
    std::vector<std::string> lines = linesOf({reinterpret_cast<const char*>(data), size});
    for (std::size_t changes = 1 + pick(random, 3); changes > 0 && !lines.empty(); --changes) {
        changeLines(lines, random);
    }
    std::string text;
    for (const std::string& line : lines) text += line;
    text.resize(std::min(text.size(), maxSize));
    std::memcpy(data, text.data(), text.size());
    return text.size();
}
