#include "app/intake/draw/classes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <stdexcept>

#include "app/intake/draw/palette.h"
#include "app/intake/utf8.h"

namespace program {

namespace {

constexpr std::size_t kMostClasses = 10;
constexpr int64_t kSteps = 7;
constexpr Colour kNoValue = {242, 242, 242};

std::string plain(double number) {
    std::array<char, 32> digits;
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                         std::chars_format::general, 6)
                               .ptr};
}

std::string trimmed(std::string_view text) {
    const std::size_t from = std::min(text.find_first_not_of(' '), text.size());
    const std::size_t to = text.find_last_not_of(' ');
    return to == text.npos ? std::string() : toUtf8(text.substr(from, to + 1 - from));
}

struct KeyOf {
    ClassKey operator()(std::monostate) const { return {}; }
    ClassKey operator()(int64_t number) const { return {true, static_cast<double>(number), {}}; }
    ClassKey operator()(double number) const {
        return std::isfinite(number) ? ClassKey{true, number == 0 ? 0 : number, {}} : ClassKey{};
    }
    ClassKey operator()(std::string_view text) const {
        std::string words = trimmed(text);
        return words.empty() ? ClassKey{} : ClassKey{true, 0, std::move(words)};
    }
    ClassKey operator()(const datasets::Date& date) const { return (*this)(date.text); }
};

// Between 0 and 1, pale enough for the lines above it.
Colour rampColour(double place) {
    constexpr double kStops[][3] = {{255, 250, 215}, {168, 214, 178}, {104, 166, 176}};
    const std::size_t stop = place < 0.5 ? 0 : 1;
    const double part = place * 2 - static_cast<double>(stop);
    const auto channel = [&](std::size_t index) {
        return static_cast<uint8_t>(kStops[stop][index] * (1 - part) +
                                    kStops[stop + 1][index] * part);
    };
    return {channel(0), channel(1), channel(2)};
}

std::string wordsOf(const ClassKey& key) { return key.text.empty() ? plain(key.number) : key.text; }

}  // namespace

Classes::Classes(const datasets::TablePlace& place, const std::string& item, int32_t firstRecord) {
    datasets::Table table(place);
    const int32_t column = table.find(item);
    if (column < 0) {
        std::string text = toUtf8(place.name) + ": has no item " + item + "; there are";
        for (const datasets::Column& each : table.columns()) {
            text += (&each == &table.columns()[0] ? " " : ", ") + toUtf8(each.name);
        }
        throw std::runtime_error(text);
    }
    std::map<ClassKey, int32_t> counts;
    int64_t total = 0;
    bool areNumbers = true;
    for (const datasets::Row& row : table) {
        keys_.push_back(std::visit(KeyOf(), row[static_cast<std::size_t>(column)]));
        const ClassKey& key = keys_.back();
        if (row.number() < firstRecord || !key.known) continue;
        ++counts[key];
        ++total;
        areNumbers = areNumbers && key.text.empty();
    }
    legend_.title = toUtf8(item);
    const bool hasAll = total == static_cast<int64_t>(keys_.size()) - firstRecord + 1;
    if (areNumbers && counts.size() > kMostClasses) {
        takeRamp(counts, total);
    } else {
        takePalette(counts);
    }
    if (!hasAll) add(kNoValue, "no value");
}

Colour Classes::colour(int32_t record) const {
    if (record < 1 || static_cast<std::size_t>(record) > keys_.size()) return kNoValue;
    const ClassKey& key = keys_[static_cast<std::size_t>(record) - 1];
    if (!key.known) return kNoValue;
    const auto found = classes_.find(key);
    const std::size_t entry = found == classes_.end() ? others_ : found->second;
    return entry < legend_.entries.size() ? legend_.entries[entry].colour : kNoValue;
}

void Classes::add(Colour colour, std::string text) {
    legend_.entries.push_back({colour, std::move(text)});
}

// Of too many values those with the most records have a colour of their own.
void Classes::takePalette(std::map<ClassKey, int32_t>& counts) {
    const bool hasOthers = counts.size() > kMostClasses;
    if (hasOthers) {
        std::vector<std::pair<int32_t, ClassKey>> byCount;
        for (const auto& [key, count] : counts) byCount.emplace_back(-count, key);
        std::sort(byCount.begin(), byCount.end());
        for (std::size_t each = kMostClasses - 1; each < byCount.size(); ++each) {
            counts.erase(byCount[each].second);
        }
    }
    for (const auto& [key, count] : counts) {
        classes_[key] = legend_.entries.size();
        add(shadeColour(static_cast<int32_t>(legend_.entries.size())), wordsOf(key));
    }
    others_ = legend_.entries.size();
    if (hasOthers) add(shadeColour(static_cast<int32_t>(kMostClasses) - 1), "all others");
}

// A value is in one class, however many records have it.
void Classes::takeRamp(const std::map<ClassKey, int32_t>& counts, int64_t total) {
    int64_t before = 0;
    int64_t step = -1;
    const ClassKey* first = nullptr;
    const ClassKey* last = nullptr;
    const auto finish = [&] {
        if (!first) return;
        add(rampColour(static_cast<double>(step) / (kSteps - 1)),
            first == last ? wordsOf(*first) : wordsOf(*first) + " \xE2\x80\x93 " + wordsOf(*last));
    };
    for (const auto& [key, count] : counts) {
        const int64_t own = (before + count / 2) * kSteps / total;
        before += count;
        if (own != step) {
            finish();
            step = own;
            first = &key;
        }
        last = &key;
        classes_[key] = legend_.entries.size();
    }
    finish();
}

}  // namespace program
