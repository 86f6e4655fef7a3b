// One object of JSON Lines, written as its fields come. Dumps of large datasets are made of
// millions of these, so nothing is gathered in memory but the text that leaves.
#ifndef APP_INTAKE_JSON_LINE_H
#define APP_INTAKE_JSON_LINE_H

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <span>
#include <string>
#include <string_view>

#include "host/cpp/growing_bytes.h"

namespace program {

// Where the lines go. Written in large pieces, and when it goes out of scope.
class JsonOutput {
  public:
    explicit JsonOutput(std::ostream& stream) : stream_(stream) {}
    ~JsonOutput() { flush(); }
    JsonOutput(const JsonOutput&) = delete;
    JsonOutput& operator=(const JsonOutput&) = delete;
    void flush();

  private:
    friend class JsonLine;
    // Room for so many characters behind the last one, of which those before an end are then used.
    char* room(std::size_t count) {
        if (text_.size() - used_ < count) text_.resize(2 * (used_ + count));
        return reinterpret_cast<char*>(text_.data()) + used_;
    }
    void use(const char* end) { used_ += static_cast<std::size_t>(end - room(0)); }
    void add(char character) {
        *room(1) = character;
        ++used_;
    }
    void add(std::string_view text) { use(std::copy(text.begin(), text.end(), room(text.size()))); }

    std::ostream& stream_;
    qx::GrowingBytes text_;
    std::size_t used_ = 0;
};

// A key as it is printed, for lines that have it again and again.
class JsonKey {
  public:
    explicit JsonKey(std::string_view name);

  private:
    friend class JsonLine;
    // In steps of so many bytes, which is quicker than a copy of just the length.
    static constexpr std::size_t kStep = 16;
    std::string text_;  // ,"name": and what fills up the last step
    std::size_t length_;
};

// Reals are printed in the shortest form that reads back to the same bits, with a point or an
// exponent; NaN and infinite values as the texts "NaN", "Infinity", "-Infinity". A float is
// widened. Texts lose their trailing blanks; one that is not UTF-8 is taken as Latin-1.
class JsonLine {
  public:
    // Begins {"class":name.
    JsonLine(JsonOutput& output, std::string_view className);
    // Ends the line.
    ~JsonLine();
    JsonLine(const JsonLine&) = delete;
    JsonLine& operator=(const JsonLine&) = delete;

    // "key": with the value to follow by value, list or object.
    JsonLine& key(std::string_view name);
    JsonLine& key(const JsonKey& name) {
        char* const place = output_.room(name.text_.size());
        const char* text = name.text_.data() + (first_ ? 1 : 0);
        for (std::size_t at = 0; at < name.length_; at += JsonKey::kStep) {
            std::memcpy(place + at, text + at, JsonKey::kStep);
        }
        output_.use(place + name.length_ - (first_ ? 1 : 0));
        first_ = true;
        return *this;
    }
    template <class T>
    JsonLine& field(std::string_view name, const T& value) {
        key(name);
        return this->value(value);
    }

    JsonLine& value(std::string_view text);
    JsonLine& value(const std::string& text) { return value(std::string_view(text)); }
    JsonLine& value(const char* text) { return value(std::string_view(text)); }
    JsonLine& value(bool truth);
    JsonLine& value(int32_t number) { return value(static_cast<int64_t>(number)); }
    JsonLine& value(int16_t number) { return value(static_cast<int64_t>(number)); }
    JsonLine& value(uint32_t number) { return value(static_cast<int64_t>(number)); }
    JsonLine& value(int64_t number);
    JsonLine& value(double number);
    JsonLine& value(float number) { return value(static_cast<double>(number)); }
    JsonLine& null();
    template <class T>
    JsonLine& value(std::span<const T> values) {
        beginList();
        for (const T& each : values) value(each);
        return endList();
    }
    // Pairs x, y: [[x,y],...].
    JsonLine& pairs(std::span<const double> values);

    JsonLine& beginList() { return open('['); }
    JsonLine& endList() { return close(']'); }
    JsonLine& beginObject() { return open('{'); }
    JsonLine& endObject() { return close('}'); }

  private:
    void separate() {
        if (!first_) output_.add(',');
        first_ = false;
    }
    void text(std::string_view text);
    JsonLine& open(char bracket);
    JsonLine& close(char bracket);

    JsonOutput& output_;
    bool first_ = false;
};

}  // namespace program

#endif
