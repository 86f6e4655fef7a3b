#include "app/intake/commands/guide.h"

namespace program {

namespace {

struct Guide {
    std::string_view command;
    const char* text;
};

constexpr Guide kGuides[] = {
    {"",
     "Old map archives often come as interchange files: text files of 80-column lines, sometimes "
     "split in volumes (.e00, .e01, ...), sometimes compressed. intake reads such a file and "
     "rebuilds the dataset that it was made from: a coverage with its features and tables, a grid, "
     "a surface, a symbol set, a plot, a map or a text.\n\n"
     "A dataset lives in a workspace: a folder that holds datasets side by side and, in info, "
     "their tables. Messages go to standard error, each led by its level."},
    {"import",
     "FILE is the first volume of a file that comes in several; the others are found beside it. It "
     "may be compressed or lie in an archive, alone or named behind two colons.\n\n"
     "DATASET is made in its folder, the workspace. What was read before an error stays and can be "
     "shown and dumped."},
    {"check",
     "Each file is read as import would read it, into a temporary workspace. What is told: its "
     "container, form, volumes and sections, the messages, and a verdict: whole, partial with the "
     "place where it breaks off, or not an interchange file. Where files differ, the exit status "
     "is that of the worst."},
    {"list",
     "Tells the datasets of a workspace with their kind, date, size and content, and behind them "
     "the tables that belong to none."},
    {"check-workspace",
     "Reads the head and the length of every file that has them, and all datasets to their ends, "
     "and prints a line for each thing that is damaged or left over by an import that was killed. "
     "--repair writes a damaged list of tables anew, takes tables without files from it, and "
     "removes files of tables that it does not have, but for those of the last ten minutes, which "
     "an import may be writing. The exit status is 3 where something stays damaged; what is left "
     "over does no harm."},
    {"remove",
     "Takes away datasets, their tables in the catalogue and the files of both; a table that "
     "another dataset owns is left. It asks on a terminal; where there is none it needs --yes. "
     "What it was killed in, the next command brings to its end."},
    {"rename",
     "Gives a dataset and its tables another name in the same workspace, as a whole or not at "
     "all."},
    {"show",
     "Tells the kind, extent, features and tables of a dataset. With --within it lists the "
     "features "
     "of a coverage that meet a rectangle."},
    {"dump",
     "Prints all that is stored, one JSON object a line, each with the name of its class. A "
     "damaged "
     "file is told behind what could be read of it."},
    {"draw",
     "Draws features, cells, triangles, symbols or the strokes of a plot. The name of OUT tells "
     "the "
     "format."},
    {"export",
     "Writes coverages, triangulated surfaces and tables. The name of OUT tells the format: "
     "GeoPackage holds all layers and tables, GeoJSON layers, CSV a file each. What the format "
     "cannot keep is told, and the exit status is 3 then.\n\n"
     "The reference system comes from the projection text of the dataset, or by --crs."},
    {"convert",
     "Imports FILE into a temporary workspace and writes OUT as export does. Of a damaged file "
     "nothing is written unless --partial is given."},
    {"batch",
     "Takes each file: imports it and, with --to, exports it. Folders are searched for files of "
     "the "
     "usual names; a list has a path a line, or zeros between them. First volumes are told from "
     "further ones, which go with them. An output lies below FOLDER where its input lies below the "
     "folder that was given, and a listed one by its whole path.\n\n"
     "The files are shared among worker processes, the larger ones first. One that crashes, hangs "
     "or takes too much memory is told as failed and costs nothing else. Ctrl-C ends when the "
     "files "
     "at hand are done, a second one at once.\n\n"
     "The report has a JSON object a line for each input, written when its outputs are on the "
     "disk. "
     "With --resume what it has as whole is left out, where neither file nor options have changed. "
     "The exit status is 1 if some failed, otherwise 3 if some are not whole."},
    {"report",
     "Tells what reports of batches come to together: how many inputs of each kind are whole, "
     "partial or failed, the commonest messages, the slowest files. The last line of an input "
     "counts. The exit status is that of batch; what is missing from a list counts as failed."},
    {"pack",
     "Writes the lines of FILE in compressed form: blanks, and at level 2 numbers too, are kept "
     "short. The lines stay what they are."},
    {"unpack", "Writes the lines of FILE, which is in either form, in plain form."},
    {"help", "Tells what --help tells behind a command."},
};

}  // namespace

std::string guideTo(std::string_view command) {
    for (const Guide& guide : kGuides) {
        if (guide.command == command) return guide.text;
    }
    return "";
}

std::string helpOpening() {
    constexpr std::size_t kWidth = 42;
    std::string text = "Examples:\n";
    for (const Example& example : kExamples) {
        if (!example.inHelp) continue;
        std::string line = example.line;
        line.resize(kWidth, ' ');
        text += "  " + line + example.words + "\n";
    }
    return text + "\nRebuilds geographic datasets from an 80-column interchange text file.";
}

}  // namespace program
