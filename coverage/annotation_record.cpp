#include "coverage/annotation_record.h"

#include <algorithm>
#include <cstdlib>

#include "host/qxbase/strings.h"
#include "stream/reader.h"
#include "stream/report.h"

namespace intake {

void readText(AnnoRecord& anno) {
    constexpr int32_t kCapacity = QX_ANNO_CHARACTERS;
    // A text of 81 characters takes one line, so its last character is not in the file. Stays.
    const int64_t lines = (int64_t{anno.textLength} - 2) / int64_t{Line::kLength} + 1;
    FixedText<QX_ANNO_CHARACTERS> text;
    Line dropped;
    for (int64_t number = 0; number < lines; ++number) {
        const auto first = static_cast<std::size_t>(number) * Line::kLength;
        if (first < text.size()) {
            IMPLIN(std::span<char>(text.data() + first, Line::kLength));
        } else {
            IMPLIN(dropped);
        }
    }
    chrstr_(text.data(), &anno.textLength, anno.text, &kCapacity, kCapacity);
}

void writeAnnotation(AnnotationSet& set, AnnotationRecord& record) {
    AnnoRecord& anno = record.front();
    const int32_t leaders = std::clamp(anno.leaderCount, -QX_ANNO_LEADERS, +QX_ANNO_LEADERS);
    const int32_t length = std::min<int32_t>(anno.textLength, QX_ANNO_CHARACTERS);
    const bool cut = leaders != anno.leaderCount || length != anno.textLength;
    if (cut && !set.cutReported) {
        warn("Annotation subclass: %1%, only 5 leader points and 320 characters are kept",
             set.subclass);
        set.cutReported = true;
    }
    anno.leaderCount = leaders;
    anno.textLength = length;
    int32_t number = 0;
    annwt_(&set.handle, &number, record.data());
}

}  // namespace intake
