// What a file is that is no interchange file.
#ifndef APP_INTAKE_LOOKS_LIKE_H
#define APP_INTAKE_LOOKS_LIKE_H

#include <string>
#include <string_view>

namespace program {

struct Likeness {
    std::string what;    // "a PNG picture"
    std::string advice;  // what to do, a sentence without its point
    bool certain = false;
    // "roads.png looks like a PNG picture: there is nothing in it to import"
    std::string sentence(const std::string& file) const {
        return file + (certain ? " is " : " looks like ") + what + ": " + advice;
    }
};

// By its first bytes, as many as there are of 512.
Likeness likenessOf(std::string_view start);

// By what stands at a path, also where that is no file, and by its name.
Likeness likenessAt(const std::string& path);

// Whether a file that starts so says in its first line that it is an interchange file.
bool hasHeaderLine(std::string_view start);
// ... or begins with the header of a section, as those of the oldest kind do.
bool beginsInterchange(std::string_view start);

}  // namespace program

#endif
