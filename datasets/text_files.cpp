#include "datasets/text_files.h"

#include <algorithm>

#include "host/cpp/call.h"

namespace datasets {

using qx::call;

LineCursor::LineCursor(std::string_view path) {
    int32_t channel = 0;
    int32_t status = 0;
    call(aopen_, channel, path, status);
    handle_.take(channel, status);
}

bool LineCursor::next() {
    line_.clear();
    for (int32_t more = 1; more != 0;) {
        qx::FixedText<1024> piece;
        int32_t count = 0;
        int32_t status = 0;
        call(apiece_, handle_.number(), piece, count, more, status);
        if (status != 0) return false;
        line_ += piece.full().substr(0, static_cast<std::size_t>(count));
    }
    return true;
}

bool looksLikeText(const std::string& path) {
    constexpr int32_t kLines = 100;
    int32_t channel = 0;
    int32_t status = 0;
    call(aopen_, channel, std::string_view(path), status);
    if (status != 0) return false;
    bool text = true;
    for (int32_t number = 0; text && number < kLines; ++number) {
        // The front of a line is enough.
        qx::FixedText<300> line;
        int32_t count = 0;
        call(aread_, channel, line, count, status);
        if (status != 0) break;
        const std::string_view characters = line.view();
        text = std::none_of(characters.begin(), characters.end(), [](char character) {
            const auto code = static_cast<unsigned char>(character);
            return code < 32 && character != '\t' && character != '\r' && character != '\f';
        });
    }
    call(aclose_, channel);
    return text;
}

}  // namespace datasets
