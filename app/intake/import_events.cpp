#include "app/intake/import_events.h"

#include <nlohmann/json.hpp>

#include "app/intake/messages.h"
#include "app/intake/utf8.h"

namespace program {

using nlohmann::ordered_json;

template <class Object>
void ImportEvents::print(const Object& object) {
    if (enabled_) stream_ << ordered_json(object).dump() << std::endl;
}

void ImportEvents::start(const std::string& file, const std::string& dataset, int64_t bytes) {
    print(ordered_json{{"event", "start"},
                       {"file", toUtf8(file)},
                       {"dataset", toUtf8(dataset)},
                       {"bytes", bytes}});
}

void ImportEvents::progress(std::string_view section, const BytesRead& bytes) {
    print(ordered_json{{"event", "progress"},
                       {"section", toUtf8(section)},
                       {"read", bytes.read()},
                       {"bytes", bytes.total()}});
}

void ImportEvents::message(int32_t level, std::string_view text) {
    print(ordered_json{{"event", "message"}, {"level", levelName(level)}, {"text", toUtf8(text)}});
}

void ImportEvents::end(int status, const std::string& kind, const std::string& content,
                       double seconds) {
    print(ordered_json{{"event", "end"},
                       {"status", status},
                       {"kind", kind},
                       {"content", toUtf8(content)},
                       {"seconds", seconds}});
}

}  // namespace program
