#include "formats/ply/ply.h"

#include "formats/little_endian.h"
#include "formats/numbers.h"
#include "formats/output.h"

namespace formats::ply {

namespace {

// Lines of comments; what would end or disturb one becomes a blank.
void comment(std::string& text, std::string_view lead, std::string_view content) {
    while (!content.empty()) {
        const std::size_t end = std::min(content.find('\n'), content.size());
        text.append("comment ").append(lead).append(": ");
        for (const char each : content.substr(0, end)) {
            text += static_cast<unsigned char>(each) < ' ' ? ' ' : each;
        }
        text += '\n';
        content.remove_prefix(std::min(end + 1, content.size()));
    }
}

void element(std::string& text, const char* name, std::size_t count) {
    text.append("element ").append(name).append(" ").append(std::to_string(count)).append("\n");
}

std::string header(const Mesh& mesh, bool ascii) {
    std::string text = "ply\nformat ";
    text += ascii ? "ascii 1.0\n" : "binary_little_endian 1.0\n";
    comment(text, "surface", mesh.name);
    comment(text, "system", mesh.system.description);
    const std::string& units = mesh.system.heightUnits;
    comment(text, "heights", units.empty() ? "Zunits are not named" : "Zunits " + units);
    for (const Mesh::Note& note : mesh.notes) comment(text, note.name, note.content);
    element(text, "vertex", mesh.vertices.size());
    text += "property double x\nproperty double y\nproperty double z\n";
    if (!mesh.codes.empty()) text += "property int code\n";
    element(text, "face", mesh.triangles.size());
    text += "property list uchar int vertex_indices\n";
    element(text, "edge", mesh.hull.size() + mesh.breakLines.size());
    text += "property int vertex1\nproperty int vertex2\nproperty uchar break_line\nend_header\n";
    return text;
}

// Takes the numbers of one line after the other, in the types of the header.
class Lines {
  public:
    Lines(TextFile& file, bool ascii) : file_(file), ascii_(ascii) {}

    template <class Number>
    Lines& operator<<(Number number) {
        std::string& text = file_.text();
        if (!ascii_) {
            appendLittleEndian(text, number);
        } else if constexpr (std::is_same_v<Number, double>) {
            appendShortest(text, number);
            text += ' ';
        } else {
            appendInteger(text, number);
            text += ' ';
        }
        return *this;
    }
    template <class Number, std::size_t count>
    Lines& operator<<(const std::array<Number, count>& numbers) {
        for (const Number number : numbers) *this << number;
        return *this;
    }
    void end() {
        if (ascii_) file_.text().back() = '\n';
        file_.written();
    }

  private:
    TextFile& file_;
    bool ascii_;
};

class Writer : public MeshWriter {
  public:
    void write(const std::string& path, const Mesh& mesh, const Options& options) const override {
        Part part(path, Part::Kind::kFile, options.replace);
        TextFile file(part.path(), part.target(), options.look);
        file.text() = header(mesh, options.ascii);
        Lines lines(file, options.ascii);
        for (std::size_t vertex = 0; vertex < mesh.vertices.size(); ++vertex) {
            lines << mesh.vertices[vertex];
            if (!mesh.codes.empty()) lines << mesh.codes[vertex];
            lines.end();
        }
        for (const Mesh::Triangle& triangle : mesh.triangles) {
            lines << uint8_t{3} << triangle;
            lines.end();
        }
        for (const bool breaks : {false, true}) {
            for (const Mesh::Edge& edge : breaks ? mesh.breakLines : mesh.hull) {
                lines << edge << static_cast<uint8_t>(breaks);
                lines.end();
            }
        }
        file.close();
        part.putInPlace();
    }
};

}  // namespace

const MeshWriter& writer() {
    static const Writer writer;
    return writer;
}

}  // namespace formats::ply
