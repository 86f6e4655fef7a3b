#include "app/intake/draw/legend.h"

#include <algorithm>
#include <array>

#include "app/intake/draw/palette.h"

namespace program {

namespace {

constexpr double kSwatch = 14;
constexpr double kLine = 20;
constexpr double kText = 12;
constexpr std::size_t kCharacters = 32;

// Where the characters of a text begin; bytes of the form 10xxxxxx go on with one.
bool begins(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

}  // namespace

std::string shortened(const std::string& text, std::size_t characters) {
    std::size_t count = 0;
    std::size_t cut = text.size();
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (!begins(text[at])) continue;
        if (++count == characters) cut = at;
    }
    return count <= characters ? text : text.substr(0, cut) + "\xE2\x80\xA6";
}

double widthOf(const std::string& text, double height) {
    return 0.6 * height * static_cast<double>(std::count_if(text.begin(), text.end(), begins));
}

double Legend::width() const {
    if (entries.empty()) return 0;
    double widest = widthOf(shortened(title, kCharacters), kText);
    for (const Entry& each : entries) {
        widest = std::max(widest, kSwatch + 6 + widthOf(shortened(each.text, kCharacters), kText));
    }
    return widest;
}

double Legend::height() const {
    return entries.empty() ? 0 : kLine * static_cast<double>(entries.size() + 1);
}

void Legend::draw(Canvas& canvas, Place topLeft) const {
    if (entries.empty()) return;
    canvas.text({topLeft.x, topLeft.y + kText}, kText, 0, shortened(title, kCharacters), kInk);
    for (const Entry& each : entries) {
        topLeft.y += kLine;
        const Place bottomRight = {topLeft.x + kSwatch, topLeft.y + kSwatch};
        const std::array<Place, 5> box = {
            topLeft, {bottomRight.x, topLeft.y}, bottomRight, {topLeft.x, bottomRight.y}, topLeft};
        canvas.area({box.data(), 4}, each.colour);
        canvas.line(box, kInk, 0.5);
        canvas.text({bottomRight.x + 6, topLeft.y + kText}, kText, 0,
                    shortened(each.text, kCharacters), kInk);
    }
}

}  // namespace program
