#include "datasets/side_texts.h"

#include "host/qxbase/names.h"

namespace datasets {

using qx::call;

bool LineCursor::next() {
    qx::FixedText<1024> piece;
    line_.clear();
    for (int32_t more = 1; more != 0;) {
        int32_t count = 0;
        int32_t status = 1;
        if (channel_) call(apiece_, channel_.number(), piece, count, more, status);
        if (status != 0) return false;
        line_ += piece.full().substr(0, static_cast<std::size_t>(count));
    }
    return true;
}

Lines sideText(std::string_view dataset, SideText which) {
    qx::Name path;
    call(aname_, dataset, path, static_cast<int32_t>(which));
    return Lines(path.view());
}

}  // namespace datasets
