// The fixture of every test that imports: write an interchange text, import it, look at what was
// stored and said.
#ifndef TESTS_SUPPORT_IMPORT_TEST_H
#define TESTS_SUPPORT_IMPORT_TEST_H

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace intake::testing {

using nlohmann::json;

struct Message {
    int32_t level;  // QX_INFORM ... QX_FATAL
    std::string text;
    friend bool operator==(const Message&, const Message&) = default;
};
std::ostream& operator<<(std::ostream& stream, const Message& message);

// A directory that is gone after the test.
class Workspace {
  public:
    Workspace();
    ~Workspace();
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    std::string path(const std::string& name) const { return (root_ / name).string(); }

  private:
    std::filesystem::path root_;
};

class ImportTest : public ::testing::Test {
  protected:
    // The interchange file: a text with line feeds, or its lines. The name may be that of a volume.
    void given(const std::string& text, const std::string& file = "in.e00");
    void given(const std::vector<std::string>& lines, const std::string& file = "in.e00");

    // Imports the file into the workspace; gives what ImportFile returned.
    int32_t import(const std::string& dataset = "DS", const std::string& file = "in.e00");

    // What the last import said, and its texts alone of the levels from warnings on.
    const std::vector<Message>& messages() const { return messages_; }
    std::vector<std::string> complaints() const;

    // The objects of one class of the dataset's dump, or all objects for "".
    std::vector<json> records(const std::string& className, const std::string& dataset = "DS",
                              const std::string& kind = "") const;

    std::string path(const std::string& name) const { return workspace_.path(name); }

  private:
    Workspace workspace_;
    std::vector<Message> messages_;
};

// A whole file of bytes.
std::string fileBytes(const std::string& path);
void writeFile(const std::string& path, const std::string& bytes);

}  // namespace intake::testing

#endif
