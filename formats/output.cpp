#include "formats/output.h"

#include <cerrno>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace formats {

namespace {

namespace fs = std::filesystem;

bool isThere(const std::string& path) {
    std::error_code ignored;
    return fs::symlink_status(path, ignored).type() != fs::file_type::not_found;
}

// Beside the target, so that it can be renamed; of our own, so that nobody else's is touched.
std::string makePart(const std::string& target, Part::Kind kind) {
    constexpr int kAttempts = 100;
    std::random_device random;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        std::string path = target + "." + std::to_string(random()) + ".part";
        if (kind == Part::Kind::kFolder) {
            std::error_code error;
            if (fs::create_directory(path, error)) return path;
            if (error) failed(target, error.value());
        } else if (std::FILE* file = std::fopen(path.c_str(), "wbx")) {
            std::fclose(file);
            return path;
        } else if (errno != EEXIST) {
            failed(target, errno);
        }
    }
    failed(target, EEXIST);
}

// A slash at the end of a folder's name is no part of the name.
std::string withoutSlashes(std::string path) {
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

// The endings of files of texts.
struct TextKind {
    std::string_view type;
    std::string_view ending;
};
constexpr TextKind kTextKinds[] = {
    {"text/plain", ".txt"},        {"text/xml", ".xml"},   {"application/xml", ".xml"},
    {"application/json", ".json"}, {"text/html", ".html"},
};

std::string allEndings(std::string_view own) {
    std::string endings(own);
    for (const TextKind& kind : kTextKinds) endings.append(" ").append(kind.ending);
    return endings;
}

}  // namespace

std::string_view textEnding(std::string_view mimeType) {
    for (const TextKind& kind : kTextKinds) {
        if (kind.type == mimeType) return kind.ending;
    }
    return kTextKinds[0].ending;
}

void failed(const std::string& path, int error) {
    throw std::runtime_error(path + ": " + std::generic_category().message(error));
}

Part::Part(std::string path, Kind kind, bool replace, std::string_view endings)
    : target_(withoutSlashes(std::move(path))), endings_(endings), kind_(kind), replace_(replace) {
    refuseWhatIsThere();
    path_ = makePart(target_, kind);
}

Part::~Part() {
    std::error_code ignored;
    if (!placed_) fs::remove_all(path_, ignored);
}

void Part::refuseWhatIsThere() const {
    if (!isThere(target_)) return;
    // A link would be replaced, not what it leads to.
    std::error_code error;
    const fs::file_type type = fs::symlink_status(target_, error).type();
    if (kind_ == Kind::kFile) {
        if (type == fs::file_type::directory) failed(target_, EISDIR);
        if (!replace_) failed(target_, EEXIST);
        if (type == fs::file_type::regular || type == fs::file_type::symlink) return;
        throw std::runtime_error(target_ + ": is no regular file, and is not replaced");
    }
    if (type != fs::file_type::directory) failed(target_, replace_ ? ENOTDIR : EEXIST);
    for (fs::directory_iterator entry(target_, error), end; !error && entry != end;
         entry.increment(error)) {
        if (!replace_) failed(target_, EEXIST);
        if (entry->symlink_status(error).type() != fs::file_type::regular ||
            !hasEnding(entry->path().string(), endings_)) {
            throw std::runtime_error(target_ + ": holds " + entry->path().filename().string() +
                                     ", which is not of this format, and is not replaced");
        }
    }
    if (error) failed(target_, error.value());
}

void Part::putInPlace() {
    refuseWhatIsThere();
    std::error_code error;
    // A folder is not renamed over one that holds something.
    const bool aside = kind_ == Kind::kFolder && isThere(target_) && !fs::is_empty(target_, error);
    const std::string old = path_ + ".old";
    if (aside) {
        fs::rename(target_, old, error);
        if (error) failed(target_, error.value());
    }
    fs::rename(path_, target_, error);
    if (error) {
        const int reason = error.value();
        if (aside) fs::rename(old, target_, error);
        failed(target_, reason);
    }
    placed_ = true;
    if (aside) fs::remove_all(old, error);
}

TextFile::TextFile(const std::string& path, std::string target, std::function<void()> look)
    : file_(std::fopen(path.c_str(), "wb")), target_(std::move(target)), look_(std::move(look)) {
    if (!file_) failed(target_, errno);
    std::setvbuf(file_, nullptr, _IONBF, 0);  // pieces are large already
}

TextFile::~TextFile() {
    if (file_) std::fclose(file_);
}

void TextFile::flush() {
    if (std::fwrite(text_.data(), 1, text_.size(), file_) != text_.size()) failed(target_, errno);
    text_.clear();
    if (look_) look_();
}

void TextFile::close() {
    flush();
    if (std::fclose(std::exchange(file_, nullptr)) != 0) failed(target_, errno);
}

Folder::Folder(const std::string& path, bool replace, std::string_view ending)
    : part_(path, Part::Kind::kFolder, replace, allEndings(ending)) {}

void Folder::writeText(const Text& text) {
    const std::string name = text.layer.empty() ? text.name : text.layer + "." + text.name;
    TextFile file(pathOf(nameFor(name, textEnding(text.mimeType))), target());
    file.text() = text.content;
    file.close();
}

std::string Folder::nameFor(std::string_view name, std::string_view ending) {
    // The ending counts: A.txt of a layer and of a text are two.
    const std::string wanted = fileName(name);
    for (int count = 1;; ++count) {
        std::string file = count == 1 ? wanted : wanted + "_" + std::to_string(count);
        file += ending;
        if (names_.takeExactly(file)) return file;
    }
}

std::string Folder::pathOf(const std::string& fileName) const {
    return (fs::path(part_.path()) / fileName).string();
}

}  // namespace formats
