// The projection text of a dataset, taken apart: lines of a keyword and its value, then the line
// Parameters, and behind it a line for each parameter of the projection.
//
//     Projection    ALBERS
//     Datum         NAD83
//     Units         METERS
//     Parameters
//     29 30  0.000 /* 1st standard parallel
//     ...
#ifndef CRS_PROJECTION_TEXT_H
#define CRS_PROJECTION_TEXT_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace crs {

struct ProjectionText {
    struct Entry {
        std::string keyword;  // in upper case
        std::string value;    // in upper case, without blanks at its ends
    };
    struct Parameter {
        double value = 0;
        bool sexagesimal = false;  // it was three numbers: degrees, minutes, seconds
        std::string comment;       // in lower case; empty if there is none
        std::string text;          // as it was found
    };

    std::vector<Entry> entries;
    bool hasParameters = false;
    std::vector<Parameter> parameters;

    // The first thing that could not be read, as one sentence; empty if all was.
    std::string fault;

    // Null if there is no such keyword. Each keyword is there once.
    const std::string* find(std::string_view keyword) const;
};

// Takes any bytes and gives a bounded result. A line that begins with "~" goes on with the one
// before it, whose first 80 columns come first.
ProjectionText parseProjectionText(std::string_view text);

// A number with nothing around it but blanks; finite, with a sign or without, and with E or D
// before an exponent.
std::optional<double> number(std::string_view text);

// In upper case, and without blanks at its ends.
std::string upper(std::string_view text);
std::string_view trimmed(std::string_view text);

}  // namespace crs

#endif
