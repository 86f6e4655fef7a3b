#include "crs/projection_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace crs {

namespace {

// Real texts have a dozen lines.
constexpr std::size_t kMostLines = 500;
constexpr std::size_t kMostQuoted = 40;
constexpr std::size_t kColumns = 80;
constexpr std::string_view kBlanks = " \t\r\n\f\v";

char upperLetter(char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

std::string_view nextWord(std::string_view& text) {
    text = trimmed(text);
    const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
    text.remove_prefix(word.size());
    return word;
}

// For messages: short, and without what a terminal would take for a command.
std::string quoted(std::string_view text) {
    std::string out = "\"" + std::string(text.substr(0, kMostQuoted));
    for (char& letter : out) {
        if (static_cast<unsigned char>(letter) < ' ' || letter == 0x7f) letter = '?';
    }
    return out + (text.size() > kMostQuoted ? "...\"" : "\"");
}

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty() && lines.size() <= kMostLines) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.starts_with('~') && !lines.empty()) {
            if (trimmed(line.substr(1)).empty()) continue;
            lines.back().resize(kColumns, ' ');
            lines.back() += line.substr(1);
        } else {
            lines.emplace_back(line);
        }
    }
    return lines;
}

// Degrees, minutes and seconds; the sign is that of the first part that has one.
std::optional<double> angle(std::string_view degrees, std::string_view minutes,
                            std::string_view seconds) {
    double total = 0;
    bool negative = false;
    const std::string_view parts[] = {degrees, minutes, seconds};
    constexpr double kWorth[] = {1, 60, 3600};
    for (int part = 0; part < 3; ++part) {
        std::string_view digits = parts[part];
        if (digits.starts_with('-')) {
            // "0 -30 0" is half a degree below nothing; "1 -30 0" says nothing clear.
            if (total != 0 || negative) return {};
            negative = true;
            digits.remove_prefix(1);
        }
        const std::optional<double> value = number(digits);
        if (!value || *value < 0 || (part > 0 && *value >= 60)) return {};
        if (part < 2 && *value != std::floor(*value)) return {};
        total += *value / kWorth[part];
    }
    return negative ? -total : total;
}

bool readParameter(std::string_view line, ProjectionText::Parameter& parameter) {
    const std::size_t mark = line.find("/*");
    if (mark != std::string_view::npos) {
        parameter.comment = trimmed(line.substr(mark + 2));
        for (char& letter : parameter.comment) {
            if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
        }
    }
    std::string_view rest = trimmed(line.substr(0, mark));
    parameter.text = rest;
    const std::string_view first = nextWord(rest), second = nextWord(rest), third = nextWord(rest);
    if (first.empty() || !trimmed(rest).empty()) return false;
    std::optional<double> value;
    if (second.empty()) {
        value = number(first);
    } else if (!third.empty()) {
        value = angle(first, second, third);
        parameter.sexagesimal = true;
    }
    parameter.value = value.value_or(0);
    return value.has_value();
}

}  // namespace

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

std::string upper(std::string_view text) {
    std::string out(trimmed(text));
    std::ranges::transform(out, out.begin(), upperLetter);
    return out;
}

std::optional<double> number(std::string_view text) {
    std::string digits = upper(text);
    if (digits.starts_with('+')) digits.erase(0, 1);
    if (digits.starts_with('+') || digits.find_first_not_of("+-.0123456789DE") != digits.npos) {
        return {};
    }
    std::ranges::replace(digits, 'D', 'E');
    double value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    if (error != std::errc() || stop != end || !std::isfinite(value)) return {};
    return value;
}

const std::string* ProjectionText::find(std::string_view keyword) const {
    const auto found = std::ranges::find(entries, keyword, &Entry::keyword);
    return found == entries.end() ? nullptr : &found->value;
}

ProjectionText parseProjectionText(std::string_view text) {
    ProjectionText result;
    const std::vector<std::string> lines = linesOf(text);
    if (lines.size() > kMostLines) {
        result.fault = "The text has too many lines.";
        return result;
    }
    for (const std::string& each : lines) {
        std::string_view line = trimmed(each);
        if (line.empty() || line.starts_with("/*")) continue;
        if (result.hasParameters) {
            if (upper(line) == "END") break;
            ProjectionText::Parameter parameter;
            if (!readParameter(line, parameter)) {
                result.fault = "The parameter " + quoted(line) + " is no number and no angle.";
                return result;
            }
            result.parameters.push_back(std::move(parameter));
            continue;
        }
        std::string_view rest = line.substr(0, line.find("/*"));
        std::string keyword = upper(nextWord(rest));
        std::string value = upper(rest);
        if (keyword == "PARAMETERS") {
            if (!value.empty()) {
                result.fault = "Parameters has a value on its own line: " + quoted(value) + ".";
                return result;
            }
            result.hasParameters = true;
        } else if (result.find(keyword) != nullptr) {
            result.fault = quoted(keyword) + " is there twice.";
            return result;
        } else {
            result.entries.push_back({std::move(keyword), std::move(value)});
        }
    }
    return result;
}

}  // namespace crs
