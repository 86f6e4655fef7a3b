#include "host/qxbase/names.h"

#include "companions/store/member_names.h"
#include "host/cpp/fixed_text.h"

using qx::textArgument;
using qx::textResult;

namespace {

// A path that does not fit its buffer is none, lest it be cut to the name of another file.
void pathResult(char* buffer, int32_t length, const std::string& path) {
    const bool fits = length > 0 && path.size() <= static_cast<std::size_t>(length);
    textResult(buffer, length, fits ? path : std::string());
}

}  // namespace

int32_t lenchr_(const char* text, int32_t textLength) {
    return static_cast<int32_t>(textArgument(text, textLength).size());
}

void edir_(const char* path, char* directory, int32_t pathLength, int32_t directoryLength) {
    textResult(directory, directoryLength, store::directoryPart(textArgument(path, pathLength)));
}

void edirs_(const char* path, char* directory, int32_t pathLength, int32_t directoryLength) {
    edir_(path, directory, pathLength, directoryLength);
}

void ename_(const char* path, char* name, int32_t pathLength, int32_t nameLength) {
    textResult(name, nameLength, store::namePart(textArgument(path, pathLength)));
}

void ejoin_(const char* directory, const char* name, char* joined, int32_t directoryLength,
            int32_t nameLength, int32_t joinedLength) {
    pathResult(
        joined, joinedLength,
        store::joinPath(textArgument(directory, directoryLength), textArgument(name, nameLength)));
}

void ejoins_(const char* directory, const char* name, char* joined, int32_t directoryLength,
             int32_t nameLength, int32_t joinedLength) {
    ejoin_(directory, name, joined, directoryLength, nameLength, joinedLength);
}

void aname_(const char* dataset, char* path, const int32_t* code, int32_t datasetLength,
            int32_t pathLength) {
    pathResult(path, pathLength, store::memberPath(textArgument(dataset, datasetLength), *code));
}

void fname_(const char* coverage, const char* subclass, char* path, const int32_t* code,
            int32_t coverageLength, int32_t subclassLength, int32_t pathLength) {
    pathResult(path, pathLength,
               store::memberPath(textArgument(coverage, coverageLength), *code,
                                 textArgument(subclass, subclassLength)));
}
