#include <array>
#include <cstring>
#include <vector>

#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "host/qxgridio.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

// Calls an operation with a handle, and zeros and blanks besides. Gives what it gives back, or its
// last integer, which is its status where it has one.
template <class Result, class... Arguments>
int32_t call(Result (*operation)(Arguments...), int32_t handle) {
    static std::array<std::array<std::byte, 8192>, 24> rooms;
    for (auto& room : rooms) room.fill(std::byte{0});
    std::memcpy(rooms[0].data(), &handle, sizeof handle);
    std::size_t place = 0;
    int32_t* last = nullptr;
    const auto argument = [&]<class T>(T*) {
        auto& room = rooms[place++];
        if constexpr (std::is_pointer_v<T>) {
            if constexpr (std::is_same_v<T, int32_t*>) last = reinterpret_cast<T>(room.data());
            return reinterpret_cast<T>(room.data());
        } else {
            return place == 1 ? static_cast<T>(handle) : T{0};
        }
    };
    // Braces give the arguments their order.
    const std::tuple<Arguments...> arguments{argument(static_cast<Arguments*>(nullptr))...};
    if constexpr (std::is_same_v<Result, int32_t>) {
        return std::apply(operation, arguments);
    } else {
        std::apply(operation, arguments);
        return last ? *last : 0;
    }
}

template <auto... operations>
std::vector<int32_t> callAll(int32_t handle) {
    return {call(operations, handle)...};
}

TEST(Handles, ThatAreNotOpenAreRefused) {
    baseinitC();
    for (const int32_t handle : {-1, 0, 1, 12345, INT32_MIN, INT32_MAX}) {
        const std::vector<int32_t> statuses =
            callAll<aread_, apiece_, awrite_, aput_, aflush_, arewnd_, aempty_, dread_, ptwrit_,
                    ptread_, iwrite_, iread_, vread_, vstat_, tinenv_, arcpos_, arcrd_, cntpos_,
                    cntrd_, labpos_, labrd_, lnkrd_, palpos_, palrd_, annpos_, annrd_, rxpwt_,
                    rxprd_, infitm_, infget_, infrd_, infval_, inxfnd_, inxget_, infadi_, infput_,
                    latwt_, rasdes_, rasrd_, stkadd_, MEM_Put, BreadC, PutWindowRow>(handle);
        for (std::size_t place = 0; place < statuses.size(); ++place) {
            EXPECT_NE(statuses[place], 0) << "operation " << place << ", handle " << handle;
        }
        QxWindow nothing{};
        QxWindow* window = &nothing;
        awindo_(&handle, &window);
        EXPECT_EQ(window, nullptr);
        // These have no status.
        callAll<aclose_, aatend_, abytes_, dclose_, memvwt_, mxfer_, mclose_, ptclos_, ptrec_,
                icount_, isize_, iclose_, vwrite_, vhead_, vgethd_, vclose_, VwriteC, VheadwC,
                VcloseC, scrgivC, BwriteC, BrewndC, tincnt_, tinget_, tincls_, arcwt_, arccls_,
                arcrec_, cntwt_, cntcls_, cntrec_, labwt_, labcls_, labrec_, lnkwt_, lnkcls_,
                lnkrec_, palwt_, palwtx_, palcls_, palrec_, palrdm_, annwt_, anncls_, annrec_,
                rxpcls_, rxprec_, centry_, cclose_, infitc_, inflen_, inffnd_, infcls_, infxnm_,
                inxitm_, infxml_nam_, latrng_, latcls_, rascls_, stkcls_, MEM_CloseChannel,
                PrivateWindowSet, PrivateWindowRows, PrivateWindowCols, MEM_Get,
                CellLyrChannelClose>(handle);
    }
    baseendC();
}

}  // namespace
}  // namespace intake::testing
