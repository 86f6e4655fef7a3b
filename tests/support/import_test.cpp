#include "tests/support/import_test.h"

#include <stdlib.h>

#include <fstream>
#include <sstream>

#include "app/intake/dump/dump.h"
#include "host/qxbase.h"
#include "intakedl.h"

namespace intake::testing {

std::ostream& operator<<(std::ostream& stream, const Message& message) {
    return stream << message.level << ": " << message.text;
}

Workspace::Workspace() {
    // In memory where there is room: a test may make tens of thousands of files.
    const std::filesystem::path memory = "/dev/shm";
    std::error_code failure;
    const bool room = std::filesystem::space(memory, failure).available > 1 << 30 && !failure;
    const auto folder = room ? memory : std::filesystem::temp_directory_path();
    std::string name = (folder / "intake-test-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no directory for the test");
    root_ = name;
}

Workspace::~Workspace() {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
}

void ImportTest::given(const std::string& text, const std::string& file) {
    writeFile(path(file), text);
}

void ImportTest::given(const std::vector<std::string>& lines, const std::string& file) {
    std::string text;
    for (const std::string& line : lines) text += line + '\n';
    given(text, file);
}

int32_t ImportTest::import(const std::string& dataset, const std::string& file) {
    messages_.clear();
    mesink_(
        [](int32_t level, const char* text, void* user) {
            static_cast<std::vector<Message>*>(user)->push_back({level, text});
        },
        &messages_);
    const int32_t result = ImportFile(path(file).c_str(), path(dataset).c_str(), 1);
    mesink_(nullptr, nullptr);
    return result;
}

std::vector<std::string> ImportTest::complaints() const {
    std::vector<std::string> texts;
    for (const Message& message : messages_) {
        if (message.level >= QX_WARN) texts.push_back(message.text);
    }
    return texts;
}

std::vector<json> ImportTest::records(const std::string& className, const std::string& dataset,
                                      const std::string& kind) const {
    std::ostringstream text;
    program::DumpOptions options;
    if (!className.empty()) options.classes = {className};
    options.kind = kind;
    program::dump(path(dataset), options, text);
    std::vector<json> objects;
    std::istringstream lines(text.str());
    for (std::string line; std::getline(lines, line);) objects.push_back(json::parse(line));
    return objects;
}

std::string fileBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

}  // namespace intake::testing
