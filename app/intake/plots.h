// Plots and maps as the program finds them.
#ifndef APP_INTAKE_PLOTS_H
#define APP_INTAKE_PLOTS_H

#include <string>
#include <vector>

namespace program {

bool isPlot(const std::string& path);

// Whether the path is a directory that holds plot files and nothing else.
bool isMap(const std::string& path);

// The file names of a map's elements, in their order, and the path of one.
std::vector<std::string> mapElements(const std::string& map);
std::string elementFile(const std::string& map, const std::string& element);

}  // namespace program

#endif
