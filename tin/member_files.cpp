#include "tin/member_files.h"

#include "host/qxbase.h"
#include "stream/report.h"
#include "tin/environment.h"

namespace intake {

namespace {

constexpr int32_t kNoCode = 0;

int32_t olderCode(int32_t code) {
    if (code >= 50 && code <= 56) return code + 30;
    if (code == kMaskFile) return 87;
    if (code == kEnvironmentFile) return kOlderEnvironmentFile;
    return kNoCode;
}

void turnToFile(void* buffer, int32_t count, Words kind) {
    if (kind == Words::kEnvironment) {
        environmentToFile(*static_cast<TINENV*>(buffer));
    } else if (kind == Words::kDoubles) {
        call(swd8nb_, static_cast<double*>(buffer), count / 2);
    } else if (kind == Words::kSingles) {
        call(swr4nb_, static_cast<float*>(buffer), count);
    } else {
        call(swi4nb_, static_cast<int32_t*>(buffer), count);
    }
}

void turnBack(void* buffer, int32_t count, Words kind) {
    if (kind == Words::kEnvironment) {
        environmentFromFile(*static_cast<TINENV*>(buffer));
    } else if (kind == Words::kDoubles) {
        call(swd8bn_, static_cast<double*>(buffer), count / 2);
    } else if (kind == Words::kSingles) {
        call(swr4bn_, static_cast<float*>(buffer), count);
    } else {
        call(swi4bn_, static_cast<int32_t*>(buffer), count);
    }
}

}  // namespace

void tifnam(const Name& surface, Name& path, int32_t code) {
    const int32_t older = olderCode(code);
    if (older == kNoCode) fatal("Bad tin aname code (tifnam).");
    call(aname_, surface, path, older);
    int32_t exists = 0;
    call(mexist_, path, exists);
    if (exists == 0) call(aname_, surface, path, code);
}

void tifcre(Handle& channel, const Name& path, Status& status) {
    call(mcreat_, channel, path, status);
}

void tifput(const Handle& channel, int32_t count, void* buffer, Words kind) {
    turnToFile(buffer, count, kind);
    call(mxfer_, channel, count * 2, buffer);
    turnBack(buffer, count, kind);
}

void tifcls(const Handle& channel) { call(mclose_, channel); }

}  // namespace intake
