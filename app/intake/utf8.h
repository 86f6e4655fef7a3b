// Texts of datasets come in any encoding; what the program prints is UTF-8.
#ifndef APP_INTAKE_UTF8_H
#define APP_INTAKE_UTF8_H

#include <string>
#include <string_view>

namespace program {

// Whether the bytes are well-formed UTF-8 (no overlong forms, no surrogates).
bool isUtf8(std::string_view text);
std::string latin1ToUtf8(std::string_view text);
// The text as it is where it is UTF-8, otherwise taken as Latin-1.
std::string toUtf8(std::string_view text);

}  // namespace program

#endif
