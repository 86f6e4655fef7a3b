#include "host/qxfeat/workspace_check.h"

#include <memory>

#include "companions/qxfeat/workspace_faults.h"
#include "companions/store/handle_table.h"
#include "host/cpp/fixed_text.h"

namespace {

using qxfeat::Fault;
using qxfeat::WorkspaceFaults;

struct Check {
    WorkspaceFaults faults;
    std::size_t next = 0;
};

store::HandleTable<Check>& checks() {
    static store::HandleTable<Check> open;
    return open;
}

}  // namespace

void wsfopn_(int32_t* check, const char* workspace, int32_t* status, int32_t workspaceLength) {
    const std::string path(qx::textArgument(workspace, workspaceLength));
    *status = -1;
    if (!store::leadsToDirectory(path)) return;
    *check = checks().add(std::make_unique<Check>(Check{WorkspaceFaults(path)}));
    qxfeat::settleCatalogue();
    *status = 0;
}

void wsfget_(const int32_t* check, int32_t* fault, char* about, int32_t* mending, int32_t* status,
             int32_t aboutLength) {
    Check* found = checks().find(*check);
    *status = -1;
    if (!found || found->next == found->faults.all().size()) return;
    const Fault& next = found->faults.all()[found->next++];
    *fault = next.fault;
    *mending = next.mending;
    qx::wholeResult(about, aboutLength, next.about);
    *status = 0;
}

void wsfmnd_(const int32_t* check, int32_t* status) {
    Check* found = checks().find(*check);
    const bool mended =
        found && found->next > 0 && found->faults.mend(found->faults.all()[found->next - 1]);
    *status = mended ? 0 : -1;
    qxfeat::settleCatalogue();
}

void wsfcls_(const int32_t* check) { checks().close(*check); }
