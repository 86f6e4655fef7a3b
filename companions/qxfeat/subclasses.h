// The list of a coverage's subclasses: which were made, in their order. It lies in the coverage as
// a record file of one record a feature file that belongs to a subclass.
#ifndef COMPANIONS_QXFEAT_SUBCLASSES_H
#define COMPANIONS_QXFEAT_SUBCLASSES_H

#include <string>
#include <string_view>
#include <vector>

namespace qxfeat {

// Whether files of a code belong to a subclass, which may be the one without a name.
bool hasSubclasses(int32_t code);

// Puts a subclass behind those of the list. False if the list cannot be written, or has 65,536
// entries already.
bool noteSubclass(std::string_view coverage, int32_t code, std::string_view subclass);

// The subclasses that have a file of one of two codes, each once, in the order of the list.
std::vector<std::string> subclassesOf(std::string_view coverage, int32_t firstCode,
                                      int32_t secondCode);

}  // namespace qxfeat

#endif
