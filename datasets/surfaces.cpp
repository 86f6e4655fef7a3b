#include "datasets/surfaces.h"

#include "host/cpp/call.h"

namespace datasets {

using qx::call;

std::optional<QxTinEnvironment> Surface::environment() const {
    QxTinEnvironment environment{};
    int32_t status = 0;
    call(tinenv_, handle_.number(), environment, status);
    return status == 0 ? std::optional(environment) : std::nullopt;
}

int32_t Surface::read(QxTinMember member, int64_t first, int32_t capacity, void* records) const {
    int32_t count = 0;
    call(tinget_, handle_.number(), int32_t{member}, first, capacity, records, count);
    return count;
}

bool NodeCursor::next() {
    node_ = {node_.number + 1, places_.next(surface_), heights_.next(surface_),
             identifiers_.next(surface_)};
    return node_.place || node_.height || node_.identifier;
}

bool TriangleCursor::next() {
    triangle_ = {triangle_.number + 1, nodes_.next(surface_), edges_.next(surface_)};
    return triangle_.nodes || triangle_.edges;
}

}  // namespace datasets
