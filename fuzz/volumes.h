// A file in volumes that the reader finds in memory, and its lines as an editor would show them.
#ifndef FUZZ_VOLUMES_H
#define FUZZ_VOLUMES_H

#include <string_view>

namespace fuzz {

// Takes a text that form feeds part as the volumes of a file, opens the first and reads its
// version. The text must outlive the reading.
void openVolumes(std::string_view text);

// Whether the file that is open is a plain one, whose logical lines are those of the text.
bool isPlain(std::string_view text);

// The lines of a text volume by volume.
class PlainLines {
  public:
    explicit PlainLines(std::string_view text) : rest_(text) { startVolume(); }
    // False behind the last line of the last volume.
    bool next(std::string_view& line);

  private:
    void startVolume();

    std::string_view rest_;
    std::string_view volume_;
    int volumes_ = 0;
    bool more_ = true;
};

}  // namespace fuzz

#endif
