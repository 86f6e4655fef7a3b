#include "datasets/annotation_lines.h"

#include <algorithm>
#include <cstdlib>

#include "host/cpp/fixed_text.h"

namespace datasets {

std::vector<TextLine> placedLines(const Annotation& annotation) {
    const std::string_view text = annotation.characters();
    const std::span<const Point> points = annotation.points;
    if (points.empty()) return {};
    const auto count = static_cast<std::size_t>(std::max(annotation.lineCount, 0));
    // Where a line begins, counted from 1 in the tables; the end behind the last.
    struct Begin {
        std::size_t character;
        std::size_t point;
    };
    std::vector<Begin> begins;
    for (std::size_t line = 0; line < std::min<std::size_t>(count, QX_ANNO_LINES); ++line) {
        // What is below 1 becomes far too large.
        const int point = std::abs(int{annotation.lineStart[line]});
        begins.push_back({static_cast<std::size_t>(annotation.lineTableB[line] - 1),
                          static_cast<std::size_t>(point - 1)});
    }
    begins.push_back(
        {std::max(text.size(), begins.empty() ? 0 : begins.back().character), points.size()});
    bool parted = begins.size() == count + 1 && count > 0 && begins[0].character == 0;
    std::vector<TextLine> lines;
    for (std::size_t line = 0; parted && line < count; ++line) {
        const auto [character, point] = begins[line];
        const auto [nextCharacter, nextPoint] = begins[line + 1];
        parted =
            character <= nextCharacter && point < nextPoint && nextCharacter <= QX_ANNO_CHARACTERS;
        if (!parted || annotation.lineStart[line] < 0) continue;
        const std::string_view words =
            text.substr(std::min(character, text.size()), nextCharacter - character);
        lines.push_back({qx::trimText(words), points.subspan(point, nextPoint - point)});
    }
    return parted ? lines : std::vector<TextLine>{{text, points}};
}

}  // namespace datasets
