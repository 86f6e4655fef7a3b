// Texts in JSON.
#ifndef FORMATS_GEOJSON_JSON_TEXT_H
#define FORMATS_GEOJSON_JSON_TEXT_H

#include <string>
#include <string_view>

namespace formats::geojson {

// In quotes, with what has to be escaped escaped. Characters beyond ASCII stay as they are.
void appendQuoted(std::string& text, std::string_view value);

}  // namespace formats::geojson

#endif
