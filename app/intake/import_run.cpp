#include "app/intake/import_run.h"

#include "host/cpp/call.h"
#include "host/cpp/fixed_text.h"
#include "host/qxbase.h"
#include "include/intakedl.h"

namespace program {

namespace {

// The library calls these two while it lives.
class Ears {
  public:
    Ears(const Source& source, ImportListener& listener) : source_(source), listener_(listener) {
        mesink_(
            [](int32_t level, const char* text, void* user) {
                const auto& ears = *static_cast<Ears*>(user);
                ears.listener_.message(level, ears.source_.shown(text));
            },
            this);
        prgset_([](int32_t event, const char* code, int64_t lines, int64_t bytes,
                   void* user) { static_cast<Ears*>(user)->told(event, code, lines, bytes); },
                this);
    }
    ~Ears() {
        mesink_(nullptr, nullptr);
        prgset_(nullptr, nullptr);
    }
    Ears(const Ears&) = delete;
    Ears& operator=(const Ears&) = delete;

  private:
    void told(int32_t event, const char* code, int64_t lines, int64_t bytes) {
        switch (event) {
            case QX_KIND_DECIDED:
                listener_.kindDecided(code);
                return;
            case QX_IMPORT_ENDED:
                listener_.endedIn(source_.shown(code), lines);
                return;
            case QX_SECTION_HEADER:
                listener_.sectionBegins(code, lines);
                return;
            case QX_SECTION_ENDS:
                listener_.sectionEnds(code, lines);
                break;
            default:
                break;
        }
        listener_.progress(code, bytes);
    }

    const Source& source_;
    ImportListener& listener_;
};

}  // namespace

int32_t runImport(const Source& source, const std::string& dataset, bool quiet,
                  ImportListener& listener) {
    const Ears ears(source, listener);
    return ImportFile(source.path().c_str(), dataset.c_str(), quiet ? 1 : 0);
}

std::string refusedWrite() {
    qx::FixedText<QX_FAILURE_PATH> path;
    qx::FixedText<QX_FAILURE_PATH> reason;
    int32_t status = 0;
    qx::call(rfsget_, path, reason, status);
    if (status != 0) return {};
    return std::string(path.view()) + ": " + std::string(reason.view());
}

}  // namespace program
