#include "host/qxbase/names.h"

#include "companions/store/member_names.h"
#include "host/cpp/fixed_text.h"

using qx::textArgument;
using qx::textResult;
using qx::wholeResult;

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
    wholeResult(
        joined, joinedLength,
        store::joinPath(textArgument(directory, directoryLength), textArgument(name, nameLength)));
}

void ejoins_(const char* directory, const char* name, char* joined, int32_t directoryLength,
             int32_t nameLength, int32_t joinedLength) {
    ejoin_(directory, name, joined, directoryLength, nameLength, joinedLength);
}

void aname_(const char* dataset, char* path, const int32_t* code, int32_t datasetLength,
            int32_t pathLength) {
    wholeResult(path, pathLength, store::memberPath(textArgument(dataset, datasetLength), *code));
}

void fname_(const char* coverage, const char* subclass, char* path, const int32_t* code,
            int32_t coverageLength, int32_t subclassLength, int32_t pathLength) {
    wholeResult(path, pathLength,
                store::memberPath(textArgument(coverage, coverageLength), *code,
                                  textArgument(subclass, subclassLength)));
}
