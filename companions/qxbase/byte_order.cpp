#include "host/qxbase/byte_order.h"

#include "companions/store/words.h"

namespace {

template <class T>
void turn(T* words, const int32_t* count) {
    if (*count > 0) store::turnAll(words, static_cast<std::size_t>(*count));
}

}  // namespace

// The file's order is that of every file here, so neither stride nor handle has a part in it.
void swi4fn_(int32_t* words, const int32_t* count, const int32_t*, const int32_t*) {
    turn(words, count);
}
void swr4fn_(float* words, const int32_t* count, const int32_t*, const int32_t*) {
    turn(words, count);
}
void swd8fn_(double* words, const int32_t* count, const int32_t*, const int32_t*) {
    turn(words, count);
}

void swi4nb_(int32_t* words, const int32_t* count) { turn(words, count); }
void swi4bn_(int32_t* words, const int32_t* count) { turn(words, count); }
void swr4nb_(float* words, const int32_t* count) { turn(words, count); }
void swr4bn_(float* words, const int32_t* count) { turn(words, count); }
void swd8nb_(double* words, const int32_t* count) { turn(words, count); }
void swd8bn_(double* words, const int32_t* count) { turn(words, count); }
