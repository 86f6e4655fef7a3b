// What the files of a dataset are called.
#ifndef COMPANIONS_STORE_MEMBER_NAMES_H
#define COMPANIONS_STORE_MEMBER_NAMES_H

#include <cstdint>
#include <string>
#include <string_view>

namespace store {

// The file name behind a file code, empty for a code that belongs to no file.
std::string_view memberName(int32_t code);

// A name that is data, as part of a file name: capital letters, digits, "_" and "-" stand for
// themselves, every other byte is "%" and two hexadecimal digits. So no name is a path, and two
// names that differ only in case stay apart where the file system would not tell them.
std::string encodeName(std::string_view name);

// Directory and file name as one path; an empty directory gives the name alone.
std::string joinPath(std::string_view directory, std::string_view name);
// A path without trailing separators.
std::string_view plainPath(std::string_view path);
std::string_view directoryPart(std::string_view path);
std::string_view namePart(std::string_view path);

// The path of a dataset's file by its code and subclass ("" for none), empty for an unknown code.
std::string memberPath(std::string_view dataset, int32_t code, std::string_view subclass = {});

// The INFO directory of the workspace in which a dataset lies.
std::string infoDirectory(std::string_view dataset);

}  // namespace store

#endif
