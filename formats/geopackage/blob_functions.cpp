#include "formats/geopackage/blob_functions.h"

#include <cstring>
#include <vector>

namespace formats::geopackage {

namespace {

// "GP", a version, flags, the id of the system, the envelope, then well-known binary.
constexpr std::size_t kFlagsAt = 3;
constexpr std::size_t kSystemAt = 4;
constexpr std::size_t kEnvelopeAt = 8;
constexpr std::size_t kPointAt = kEnvelopeAt + 5;  // behind an order of bytes and a type

struct Blob {
    explicit Blob(sqlite3_value* value)
        : bytes(static_cast<const unsigned char*>(sqlite3_value_blob(value))),
          size(static_cast<std::size_t>(sqlite3_value_bytes(value))) {}
    const unsigned char* bytes;
    std::size_t size;
};

void side(sqlite3_context* context, int, sqlite3_value** arguments) {
    const Blob blob(arguments[0]);
    const auto wanted = static_cast<std::size_t>(sqlite3_value_int(arguments[1]));
    if (!blob.bytes || blob.size < kEnvelopeAt) return;
    const bool empty = (blob.bytes[kFlagsAt] & 0x10) != 0;
    const bool hasEnvelope = (blob.bytes[kFlagsAt] & 0x0E) != 0;
    // Only a point goes without one.
    const std::size_t at = hasEnvelope ? kEnvelopeAt + 8 * wanted : kPointAt + 8 * (wanted / 2);
    double value = 0;
    if (empty || wanted > 3 || at + sizeof value > blob.size) return;
    std::memcpy(&value, blob.bytes + at, sizeof value);
    sqlite3_result_double(context, value);
}

void withSystem(sqlite3_context* context, int, sqlite3_value** arguments) {
    const Blob blob(arguments[0]);
    const int32_t system = sqlite3_value_int(arguments[1]);
    if (!blob.bytes || blob.size < kEnvelopeAt) return;
    std::vector<unsigned char> bytes(blob.bytes, blob.bytes + blob.size);
    std::memcpy(bytes.data() + kSystemAt, &system, sizeof system);
    sqlite3_result_blob64(context, bytes.data(), bytes.size(), SQLITE_TRANSIENT);
}

}  // namespace

void addBlobFunctions(Database& database) {
    constexpr int kHow = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    sqlite3* const handle = database.handle();
    database.check(
        sqlite3_create_function(handle, "blob_side", 2, kHow, nullptr, side, nullptr, nullptr));
    database.check(sqlite3_create_function(handle, "blob_with_system", 2, kHow, nullptr, withSystem,
                                           nullptr, nullptr));
}

}  // namespace formats::geopackage
