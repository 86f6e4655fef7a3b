// The words on the commands that are longer than a line: for the help, and for the man pages, which
// have the rest from the commands themselves.
#ifndef APP_INTAKE_COMMANDS_GUIDE_H
#define APP_INTAKE_COMMANDS_GUIDE_H

#include <string>
#include <string_view>

namespace program {

constexpr char kInShort[] = "rebuild geographic datasets from interchange files";

struct Example {
    bool inHelp;  // of the program
    const char* line;
    const char* words;
    // Its second word.
    constexpr std::string_view command() const {
        const std::string_view rest = std::string_view(line).substr(7);
        return rest.substr(0, rest.find(' '));
    }
};

constexpr Example kExamples[] = {
    {true, "intake import roads.e00 roads", "rebuild the dataset of an interchange file"},
    {true, "intake import --json roads.e00 roads", "... and tell the outcome as one JSON object"},
    {true, "intake import roads.zip roads", "... out of an archive or a compressed file"},
    {false, "intake import old.tar.gz::maps/roads.e00 roads", "one of several files of an archive"},
    {true, "intake check roads.e00", "what a file is, and whether it is whole"},
    {false, "intake check --json *.e00", "... of many files, an object a line"},
    {true, "intake import --replace roads.e00 roads", "... in the place of the one that is there"},
    {true, "intake list", "what the workspace holds"},
    {false, "intake list --json maps", "... as one JSON object"},
    {false, "intake check-workspace --repair maps",
     "what is damaged in it or left over, and away with that"},
    {true, "intake show roads", "what it is, and what it holds"},
    {false, "intake show roads --within 0,0,5,5", "its features in a rectangle"},
    {true, "intake dump roads", "print every record, one JSON object a line"},
    {true, "intake dump roads --class arc", "... of one class only"},
    {true, "intake draw roads roads.svg", "a picture of it, as SVG or PNG"},
    {true, "intake convert roads.e00 roads.gpkg", "from the file to a format that others open"},
    {true, "intake export roads roads.gpkg", "the same of a dataset that was imported"},
    {false, "intake export roads roads.geojson --layer arcs", "one layer, as GeoJSON"},
    {true, "intake batch --to gpkg --out new maps", "... of all files of an archive"},
    {false, "intake batch --resume --to gpkg --out new maps", "go on where that was stopped"},
    {false, "intake batch --out new @list", "... of a list"},
    {true, "intake report new/report.jsonl", "what came of them"},
    {false, "intake report --html new/report.jsonl > page.html", "... as a page for a browser"},
    {true, "intake rename roads streets", "another name for it and its tables"},
    {true, "intake remove streets", "away with it and its tables"},
    {false, "intake remove --yes streets rivers", "... of several, without a question"},
    {true, "intake pack roads.e00 small.e00", "the same file in compressed form"},
    {false, "intake pack roads.e00 part.e00 --lines-per-volume 10000", "... in volumes"},
    {true, "intake unpack small.e00 plain.e00", "... and in plain form again"},
    {false, "intake help import", "how a command is used"},
};

struct StatusMeaning {
    int status;
    const char* words;
};

constexpr StatusMeaning kStatusMeanings[] = {
    {0, "Done; nothing worse than a warning was told."},
    {1, "Ended by an error. What an import read before it stays."},
    {2, "Wrong usage; nothing was done."},
    {3, "Done, but an error was told on the way or something was left out."},
    {130, "Stopped by Ctrl-C. What an import read before stays."},
    {143, "Stopped by the signal TERM. What an import read before stays."},
};

// The paragraphs on a command, parted by empty lines; on the program itself where it is empty.
std::string guideTo(std::string_view command);

// What the help of the program begins with.
std::string helpOpening();

}  // namespace program

#endif
