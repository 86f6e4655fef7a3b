// What an imported dataset holds, in a line.
#ifndef APP_INTAKE_SUMMARY_H
#define APP_INTAKE_SUMMARY_H

#include <string>

#include "app/intake/show/show.h"

namespace program {

// "230 arcs, 112 labels; 3 tables with 340 records"; "" where the description tells no such thing.
std::string contentOf(const Description& description);

// "Coverage data/ROADS: 230 arcs, ..."; "" where there is no such dataset. Says nothing else.
std::string summaryOf(const std::string& dataset, const std::string& kind);

// A path as a shell takes it.
std::string quoted(const std::string& path);

}  // namespace program

#endif
