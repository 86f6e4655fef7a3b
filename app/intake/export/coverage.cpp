#include "app/intake/export/layers.h"

namespace program {

void exportCoverage(Target& target, const datasets::Dataset& dataset) {
    const std::string& path = dataset.path;
    const ArcSurvey survey = surveyArcs(path);
    if (survey.count != 0) exportArcs(target, path);
    exportLabels(target, path, !survey.polygons);
    exportCentroids(target, path);
    exportPolygons(target, path, survey);
    exportBoxes(target, path);
    exportRegions(target, path);
    exportAnnotation(target, path);
    exportTics(target, path);
    exportNodes(target, path, survey);
    exportLinks(target, path);
    exportSmallTables(target, path);
    exportTables(target, path);
    exportTexts(target, path);
}

}  // namespace program
