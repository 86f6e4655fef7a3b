#include "datasets/coverage.h"

#include "host/cpp/call.h"
#include "host/qxfeat/coverages.h"

namespace datasets {

using qx::call;

Precision precisionOf(std::string_view path) {
    int32_t type = 0;
    call(ctype_, path, type);
    return type == 2 ? Precision::twofold : type == 1 ? Precision::single : Precision::none;
}

std::optional<Box> extentOf(std::string_view coverage) {
    Box box{};
    int32_t status = 0;
    call(boxget_, coverage, box, status);
    return status == 0 ? std::optional(box) : std::nullopt;
}

SubclassCursor::SubclassCursor(std::string_view coverage, Subclassed what)
    : handle_(Handle<cclose_>::opened(copen_, coverage, static_cast<int32_t>(what),
                                      static_cast<int32_t>(what))) {}

bool SubclassCursor::next() {
    qx::FixedText<32> name;
    int32_t count = 0;
    if (handle_) call(centry_, handle_.number(), name, count);
    name_ = name.view();
    return count != 0;
}

}  // namespace datasets
