#include "host/qxbase/strings.h"

#include <algorithm>
#include <cstring>

#include "host/cpp/fixed_text.h"

void f772cee(char* target, const char* source, int32_t sourceLength) {
    const std::string_view text = qx::textArgument(source, sourceLength);
    std::memmove(target, text.data(), text.size());
    target[text.size()] = '\0';
}

void cee2f77(char* target, const char* source, int32_t targetLength) {
    qx::textResult(target, targetLength, source);
}

void f772c(char* target, const char* source, int32_t sourceLength) {
    f772cee(target, source, sourceLength);
}

void chrstr_(const char* source, const int32_t* length, char* destination, const int32_t* capacity,
             int32_t sourceCapacity) {
    const int32_t kept = std::clamp(*length, 0, std::max(0, std::min(*capacity, sourceCapacity)));
    qx::textResult(destination, *capacity, {source, static_cast<std::size_t>(kept)});
}

int32_t intl_(const int16_t* value) { return *value; }
