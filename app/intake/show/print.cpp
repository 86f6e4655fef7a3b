#include <algorithm>
#include <vector>

#include "app/intake/console.h"
#include "app/intake/show/show.h"

namespace program {

namespace {

using Widths = std::vector<std::size_t>;

bool isPlain(const Description& value) {
    const auto scalar = [](const Description& each) { return each.is_primitive(); };
    return scalar(value) || (value.is_array() && std::all_of(value.begin(), value.end(), scalar));
}

std::string textOf(const Description& value) {
    if (value.is_string()) return shown(value.get<std::string>());
    if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
    if (!value.is_array()) return value.dump();
    std::string text;
    for (const Description& each : value) text += (text.empty() ? "" : " ") + textOf(each);
    return text;
}

// Characters, as far as a screen shows one for each.
std::size_t lengthOf(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char character) {
        return (static_cast<unsigned char>(character) & 0xC0) != 0x80;
    }));
}

std::string blanks(std::size_t count) { return std::string(count, ' '); }

class Printer {
  public:
    explicit Printer(std::ostream& stream) : stream_(stream) {}

    void object(const Description& fields, std::size_t indent) {
        std::size_t width = 0;
        for (const auto& [key, value] : fields.items()) {
            if (isPlain(value)) width = std::max(width, key.size());
        }
        for (const auto& [key, value] : fields.items()) {
            if (value.is_array() && value.empty()) continue;
            stream_ << blanks(indent) << key;
            if (isPlain(value)) {
                stream_ << blanks(width - key.size() + 2) << textOf(value) << '\n';
            } else {
                stream_ << '\n';
                nested(value, indent + 2);
            }
        }
    }

  private:
    void nested(const Description& value, std::size_t indent) {
        if (value.is_object()) {
            object(value, indent);
            return;
        }
        const bool rows = std::all_of(value.begin(), value.end(), [](const Description& each) {
            return std::all_of(each.begin(), each.end(), isPlain);
        });
        if (rows) {
            columns(value, indent);
            return;
        }
        for (const Description& each : value) {
            if (&each != &value.front()) stream_ << '\n';
            object(each, indent);
        }
    }

    // A line for each object below a line of their keys; numbers stand to the right.
    void columns(const Description& rows, std::size_t indent) {
        std::vector<std::string> keys;
        Widths widths;
        for (const Description& row : rows) {
            for (const auto& [key, value] : row.items()) {
                auto place = std::find(keys.begin(), keys.end(), key) - keys.begin();
                if (static_cast<std::size_t>(place) == keys.size()) {
                    keys.push_back(key);
                    widths.push_back(key.size());
                }
                std::size_t& width = widths[static_cast<std::size_t>(place)];
                width = std::max(width, lengthOf(textOf(value)));
            }
        }
        std::string line = blanks(indent);
        for (std::size_t each = 0; each < keys.size(); ++each) {
            cell(line, keys[each], widths[each], rows.front().value(keys[each], Description()));
        }
        endLine(line);
        for (const Description& row : rows) {
            line = blanks(indent);
            for (std::size_t each = 0; each < keys.size(); ++each) {
                const bool there = row.contains(keys[each]);
                const Description value = there ? row[keys[each]] : Description("");
                cell(line, textOf(value), widths[each], value);
            }
            endLine(line);
        }
    }

    static void cell(std::string& line, const std::string& text, std::size_t width,
                     const Description& value) {
        const std::string filling = blanks(width - lengthOf(text));
        line += value.is_number() ? filling + text : text + filling;
        line += "  ";
    }

    void endLine(std::string& line) {
        line.erase(line.find_last_not_of(' ') + 1);
        stream_ << line << '\n';
    }

    std::ostream& stream_;
};

}  // namespace

void print(const Description& description, std::ostream& stream) {
    Printer(stream).object(description, 0);
}

}  // namespace program
