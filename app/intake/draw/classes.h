// Colours by the values of an item: each of few values has one of a palette, and many numbers go
// up a ramp in classes of about as many records each.
#ifndef APP_INTAKE_DRAW_CLASSES_H
#define APP_INTAKE_DRAW_CLASSES_H

#include <map>
#include <string>
#include <vector>

#include "app/intake/draw/legend.h"
#include "datasets/tables.h"

namespace program {

// What a value is coloured by: its number, or its text. Neither: there is no value.
struct ClassKey {
    bool known = false;
    double number = 0;
    std::string text;  // UTF-8
    auto operator<=>(const ClassKey&) const = default;
};

class Classes {
  public:
    // Of an item of a table, the table's first records aside. Throws a std::runtime_error that
    // names the items if it is none.
    Classes(const datasets::TablePlace& place, const std::string& item, int32_t firstRecord);

    // Of a record; one that is not there has no value.
    Colour colour(int32_t record) const;
    const Legend& legend() const { return legend_; }

  private:
    void takePalette(std::map<ClassKey, int32_t>& counts);
    void takeRamp(const std::map<ClassKey, int32_t>& counts, int64_t total);
    void add(Colour colour, std::string text);

    std::vector<ClassKey> keys_;  // by record, from 1
    std::map<ClassKey, std::size_t> classes_;
    std::size_t others_ = 0;  // the class of all other values
    Legend legend_;
};

}  // namespace program

#endif
