#include <cerrno>
#include <charconv>
#include <system_error>

#include "app/intake/draw/canvas.h"
#include "app/intake/module.h"

namespace program {

namespace {

std::string base64(std::string_view bytes) {
    constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t index = 0; index < bytes.size(); index += 3) {
        uint32_t group = 0;
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - index);
        for (std::size_t each = 0; each < 3; ++each) {
            group <<= 8;
            if (each < count) group |= static_cast<unsigned char>(bytes[index + each]);
        }
        for (std::size_t each = 0; each < 4; ++each) {
            text += each <= count ? kDigits[group >> (18 - 6 * each) & 63] : '=';
        }
    }
    return text;
}

class SvgCanvas : public Canvas {
  public:
    SvgCanvas(std::ostream& stream, double width, double height) : stream_(stream) {
        text_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
        text_ += "<svg xmlns=\"http://www.w3.org/2000/svg\"";
        attribute("width", width);
        attribute("height", height);
        text_ += " viewBox=\"0 0 ";
        number(width);
        text_ += ' ';
        number(height);
        text_ += "\">\n<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
    }

    void line(std::span<const Place> places, Colour colour, double width) override {
        path(places, false);
        text_ += "\" fill=\"none\" stroke=\"";
        hex(colour);
        text_ += '"';
        attribute("stroke-width", width);
        end("/>\n");
    }

    void area(std::span<const Place> places, Colour colour) override {
        path(places, true);
        text_ += "\" fill=\"";
        hex(colour);
        end("\"/>\n");
    }

    void rings(std::span<const std::vector<Place>> rings, Colour colour) override {
        text_ += "<path d=\"";
        for (const std::vector<Place>& ring : rings) subpath(ring, true);
        text_ += "\" fill-rule=\"evenodd\" fill=\"";
        hex(colour);
        end("\"/>\n");
    }

    void dot(Place place, double radius, Colour colour) override {
        text_ += "<circle";
        attribute("cx", place.x);
        attribute("cy", place.y);
        attribute("r", radius);
        text_ += " fill=\"";
        hex(colour);
        end("\"/>\n");
    }

    void text(Place place, double height, double degrees, std::string_view words,
              Colour colour) override {
        text_ += "<text";
        attribute("x", place.x);
        attribute("y", place.y);
        attribute("font-size", height);
        if (degrees != 0) {
            text_ += " transform=\"rotate(";
            number(-degrees);
            text_ += ' ';
            number(place.x);
            text_ += ' ';
            number(place.y);
            text_ += ")\"";
        }
        text_ += " font-family=\"sans-serif\" fill=\"";
        hex(colour);
        text_ += "\">";
        escaped(words);
        end("</text>\n");
    }

    void image(Place topLeft, double width, double height, const Image& image) override {
        text_ += "<image";
        attribute("x", topLeft.x);
        attribute("y", topLeft.y);
        attribute("width", width);
        attribute("height", height);
        text_ += " preserveAspectRatio=\"none\" href=\"data:image/png;base64,";
        text_ += base64(loadModule<Pictures>("png").bytes(image));
        end("\"/>\n");
    }

    void finish() override {
        text_ += "</svg>\n";
        flush();
        stream_.flush();
        check();
    }

  private:
    void number(double value) {
        char digits[352];
        const char* last =
            std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, 2).ptr;
        text_.append(digits, static_cast<std::size_t>(last - digits));
    }
    void attribute(const char* name, double value) {
        text_ += ' ';
        text_ += name;
        text_ += "=\"";
        number(value);
        text_ += '"';
    }
    void hex(Colour colour) {
        constexpr char kDigits[] = "0123456789abcdef";
        text_ += '#';
        for (const uint8_t part : {colour.red, colour.green, colour.blue}) {
            text_ += kDigits[part >> 4];
            text_ += kDigits[part & 15];
        }
    }
    void path(std::span<const Place> places, bool closed) {
        text_ += "<path d=\"";
        subpath(places, closed);
    }
    void subpath(std::span<const Place> places, bool closed) {
        text_ += 'M';
        for (const Place& place : places) {
            if (&place != places.data()) text_ += 'L';
            number(place.x);
            text_ += ' ';
            number(place.y);
        }
        if (closed) text_ += 'Z';
    }
    // Two characters that UTF-8 can write have no place in XML: U+FFFE and U+FFFF.
    static bool isNoCharacter(std::string_view words) {
        return words.starts_with("\xEF\xBF\xBE") || words.starts_with("\xEF\xBF\xBF");
    }
    void escaped(std::string_view words) {
        for (std::size_t index = 0; index < words.size(); ++index) {
            const char character = words[index];
            const auto code = static_cast<unsigned char>(character);
            if (isNoCharacter(words.substr(index))) {
                text_ += ' ';
                index += 2;
            } else if (character == '&') {
                text_ += "&amp;";
            } else if (character == '<') {
                text_ += "&lt;";
            } else if (character == '>') {
                text_ += "&gt;";
            } else {
                // XML has no place for control characters.
                text_ += code < 32 ? ' ' : character;
            }
        }
    }
    void end(const char* mark) {
        constexpr std::size_t kPieceBytes = 256 * 1024;
        text_ += mark;
        if (text_.size() >= kPieceBytes) flush();
    }
    void flush() {
        stream_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
        check();
        text_.clear();
    }
    void check() const {
        if (!stream_) throw std::system_error(errno, std::generic_category());
    }

    std::ostream& stream_;
    std::string text_;
};

}  // namespace

std::unique_ptr<Canvas> svgCanvas(std::ostream& stream, double width, double height) {
    return std::make_unique<SvgCanvas>(stream, width, height);
}

}  // namespace program
