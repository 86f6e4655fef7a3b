#include <array>
#include <cstring>
#include <type_traits>
#include <vector>

#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "host/qxgridio.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

// An operation that is called with a handle and nothing but zeros and blanks besides.
class AnyOperation {
  public:
    template <class Result, class... Arguments>
    AnyOperation(const char* name, Result (*operation)(Arguments...)) : name_(name) {
        call_ = [](AnyOperation& self) {
            self.place_ = 0;
            const auto run = [&](auto... arguments) {
                return reinterpret_cast<Result (*)(Arguments...)>(self.operation_)(arguments...);
            };
            // Braces give the arguments their order.
            std::tuple<Arguments...> arguments{self.argument<Arguments>()...};
            if constexpr (std::is_same_v<Result, int32_t>) {
                self.status_ = std::apply(run, arguments);
            } else {
                std::apply(run, arguments);
            }
        };
        operation_ = reinterpret_cast<void (*)()>(operation);
    }
    // What it gives back, or its last integer, which is its status where it has one.
    int32_t status(int32_t handle) {
        handle_ = handle;
        status_ = 0;
        last_ = nullptr;
        for (auto& each : room_) each.fill(std::byte{0});
        call_(*this);
        if (last_) std::memcpy(&status_, last_, sizeof status_);
        return status_;
    }
    const char* name() const { return name_; }

  private:
    template <class T>
    T argument() {
        const std::size_t place = place_++;
        if constexpr (std::is_pointer_v<T>) {
            if (place == 0) std::memcpy(room_[0].data(), &handle_, sizeof handle_);
            void* room = room_[place].data();
            if constexpr (std::is_same_v<T, int32_t*>) last_ = room;
            return static_cast<T>(room);
        } else {
            return place == 0 ? static_cast<T>(handle_) : T{0};
        }
    }

    const char* name_;
    void (*operation_)() = nullptr;
    void (*call_)(AnyOperation&) = nullptr;
    std::size_t place_ = 0;
    int32_t handle_ = 0;
    int32_t status_ = 0;
    void* last_ = nullptr;
    static inline std::array<std::array<std::byte, 8192>, 24> room_{};
};

#define NAMED(operation) \
    { #operation, operation }

TEST(Handles, ThatAreNotOpenAreRefused) {
    baseinitC();
    std::vector<AnyOperation> withStatus = {
        NAMED(aread_),  NAMED(apiece_), NAMED(awrite_),      NAMED(aput_),   NAMED(aflush_),
        NAMED(arewnd_), NAMED(aempty_), NAMED(dread_),       NAMED(ptwrit_), NAMED(ptread_),
        NAMED(iwrite_), NAMED(iread_),  NAMED(vread_),       NAMED(vstat_),  NAMED(tinenv_),
        NAMED(arcpos_), NAMED(arcrd_),  NAMED(cntpos_),      NAMED(cntrd_),  NAMED(labpos_),
        NAMED(labrd_),  NAMED(lnkrd_),  NAMED(palpos_),      NAMED(palrd_),  NAMED(annpos_),
        NAMED(annrd_),  NAMED(rxpwt_),  NAMED(rxprd_),       NAMED(infitm_), NAMED(infget_),
        NAMED(infrd_),  NAMED(infval_), NAMED(inxfnd_),      NAMED(inxget_), NAMED(infadi_),
        NAMED(infput_), NAMED(latwt_),  NAMED(rasdes_),      NAMED(rasrd_),  NAMED(stkadd_),
        NAMED(MEM_Put), NAMED(BreadC),  NAMED(PutWindowRow),
    };
    std::vector<AnyOperation> others = {
        NAMED(aclose_),
        NAMED(aatend_),
        NAMED(abytes_),
        NAMED(dclose_),
        NAMED(memvwt_),
        NAMED(mxfer_),
        NAMED(mclose_),
        NAMED(ptclos_),
        NAMED(ptrec_),
        NAMED(icount_),
        NAMED(isize_),
        NAMED(iclose_),
        NAMED(vwrite_),
        NAMED(vhead_),
        NAMED(vgethd_),
        NAMED(vclose_),
        NAMED(VwriteC),
        NAMED(VheadwC),
        NAMED(VcloseC),
        NAMED(scrgivC),
        NAMED(BwriteC),
        NAMED(BrewndC),
        NAMED(tincnt_),
        NAMED(tinget_),
        NAMED(tincls_),
        NAMED(arcwt_),
        NAMED(arccls_),
        NAMED(arcrec_),
        NAMED(cntwt_),
        NAMED(cntcls_),
        NAMED(cntrec_),
        NAMED(labwt_),
        NAMED(labcls_),
        NAMED(labrec_),
        NAMED(lnkwt_),
        NAMED(lnkcls_),
        NAMED(lnkrec_),
        NAMED(palwt_),
        NAMED(palwtx_),
        NAMED(palcls_),
        NAMED(palrec_),
        NAMED(palrdm_),
        NAMED(annwt_),
        NAMED(anncls_),
        NAMED(annrec_),
        NAMED(rxpcls_),
        NAMED(rxprec_),
        NAMED(centry_),
        NAMED(cclose_),
        NAMED(infitc_),
        NAMED(inffnd_),
        NAMED(infcls_),
        NAMED(infxnm_),
        NAMED(inxitm_),
        NAMED(infxml_nam_),
        NAMED(latrng_),
        NAMED(latcls_),
        NAMED(rascls_),
        NAMED(stkcls_),
        NAMED(MEM_CloseChannel),
        NAMED(PrivateWindowSet),
        NAMED(PrivateWindowRows),
        NAMED(PrivateWindowCols),
        NAMED(MEM_Get),
        NAMED(CellLyrChannelClose),
    };
    for (const int32_t handle : {-1, 0, 1, 12345, INT32_MIN, INT32_MAX}) {
        for (AnyOperation& each : withStatus) EXPECT_NE(each.status(handle), 0) << each.name();
        for (AnyOperation& each : others) each.status(handle);
    }
    baseendC();
}

}  // namespace
}  // namespace intake::testing
