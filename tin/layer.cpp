#include "tin/layer.h"

#include <array>

#include "host/qxbase.h"
#include "host/qxgridio.h"
#include "tin/member_files.h"
#include "tin/open_surfaces.h"
#include "tin/sections.h"

namespace intake {

namespace {

// The command layer's bookkeeping, which an import only clears.
struct Names {
    std::array<FixedText<128>, 20> names;
    std::array<int32_t, 20> words{};
    std::array<int32_t, 3> state{};
};

struct Layer {
    Names names;
    float noData = 0;
    float latticeNoData = 0;
    bool started = false;
};

Layer layer;

bool hasMember(const Name& surface, int32_t code) {
    Name path;
    call(aname_, surface, path, code);
    int32_t exists = 0;
    call(mexist_, path, exists);
    return exists != 0;
}

}  // namespace

float noDataZ() { return layer.noData; }

void TININI() {
    call(fltndt_, layer.noData);
    if (layer.started) return;
    call(latndf_, layer.latticeNoData);
    layer.names = {};
    layer.started = true;
}

void TINCRE(const Name& surface, Status& status) {
    status = kReported;
    for (const int32_t code : {kEnvironmentFile, kOlderEnvironmentFile}) {
        if (hasMember(surface, code)) return;
    }
    const TinOption options[] = {{0, 2}, {1, 3}};
    Tin* tin = TIN_OpenTin(std::string(surface.view()), options);
    if (!tin) return;
    enterTin(tin);
    call(creift_, surface, status);
}

void TINSCR(Handle& handle, int32_t option, Status& status) {
    char scratch[QX_NAME_LENGTH + 1];
    scrnamC(scratch);
    const TinOption options[] = {{0, 0}, {1, 0}, {6, option}};
    Tin* tin = TIN_OpenTin(scratch, std::span(options).first(option > 0 ? 3 : 2));
    if (!tin) {
        status = kReported;
        return;
    }
    handle = enterTin(tin);
    status = kSuccess;
}

void TINEND() {
    EndTin(0);
    layer.names = {};
}

void rearmTin() {
    TINEND();
    layer = {};
}

}  // namespace intake
