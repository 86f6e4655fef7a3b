// The layers of each kind of dataset. A layer is one function, and every format has it.
#ifndef APP_INTAKE_EXPORT_LAYERS_H
#define APP_INTAKE_EXPORT_LAYERS_H

#include <span>
#include <string>
#include <string_view>

#include "app/intake/export/table_columns.h"
#include "app/intake/export/target.h"
#include "datasets/indexes.h"
#include "datasets/workspace.h"

namespace program {

// What one look at the arcs of a coverage tells.
struct ArcSurvey {
    bool polygons = false;  // there are polygons, by their own lists or beside the arcs
    bool ownLists = false;  // ... with lists of arcs of their own
    int32_t highestNode = 0;
    int32_t count = 0;
};
ArcSurvey surveyArcs(const std::string& coverage);

// Of a coverage, in this order.
void exportArcs(Target& target, const std::string& coverage);
void exportLabels(Target& target, const std::string& coverage, bool asPoints);
void exportCentroids(Target& target, const std::string& coverage);
void exportPolygons(Target& target, const std::string& coverage, const ArcSurvey& survey);
void exportRegions(Target& target, const std::string& coverage);
void exportBoxes(Target& target, const std::string& coverage);
void exportAnnotation(Target& target, const std::string& coverage);
void exportTics(Target& target, const std::string& coverage);
void exportNodes(Target& target, const std::string& coverage, const ArcSurvey& survey);
void exportLinks(Target& target, const std::string& coverage);
void exportSmallTables(Target& target, const std::string& coverage);

// Whole datasets.
void exportCoverage(Target& target, const datasets::Dataset& dataset);
void exportSurface(Target& target, const datasets::Dataset& dataset);
void exportGrid(Target& target, const datasets::Dataset& dataset);
void exportLattice(Target& target, const datasets::Dataset& dataset);
void exportStack(Target& target, const datasets::Dataset& dataset);
void exportTable(Target& target, const datasets::Dataset& dataset);

// What any dataset may have: its tables as tables of their own, its texts, which belong to a layer
// where one is named.
void exportTables(Target& target, const std::string& dataset);
void exportTexts(Target& target, const std::string& dataset, const std::string& layer = {});

// The columns of the table of a dataset whose name ends in the suffix: "AAT", "PATZONES".
TableColumns columnsOf(Target& target, const std::string& dataset, std::string_view suffix);

// The last part of a dataset's path.
std::string nameOf(const std::string& dataset);

// "annotation_NAMES", or "annotation" for a subclass without a name.
std::string nameWith(std::string_view name, std::string_view subclass);

// A layer with columns of its own, all integers, before those of a table.
formats::Layer layerOf(std::string name, formats::GeometryType geometry, std::string description,
                       std::initializer_list<const char*> integers, const TableColumns& table = {});

// Calls take(element, record) for each element of a range, or for those whose record numbers the
// rectangle that was asked for gives. Those that a damaged file does not give are told.
template <class Elements, class Take>
void eachWithin(Target& target, Elements elements, const std::string& coverage,
                datasets::Indexed what, std::string_view subclass, Take take) {
    if (!target.options().within) {
        const int32_t count = elements.count();
        int32_t record = 0;
        for (const auto& element : elements) take(element, ++record);
        target.unread(count - record);
        return;
    }
    const auto found = datasets::featuresWithin(coverage, what, subclass, *target.options().within);
    if (!found) return;
    for (const int32_t record : found->records) {
        if (const auto* element = elements.at(record)) take(*element, record);
    }
}

// Whether a place, or the box of one, is wanted.
bool isWithin(const Target& target, const datasets::Box& box);
bool isWithin(const Target& target, const datasets::Point& place);

}  // namespace program

#endif
