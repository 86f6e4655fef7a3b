#include "app/intake/report/page.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "app/intake/batch/exact_path.h"
#include "app/intake/report/page_text.h"

namespace program {

namespace {

using nlohmann::ordered_json;

constexpr uint64_t kMostPicture = 256 << 10;
constexpr uint64_t kMostPictures = 32 << 20;

// JSON that may stand in a script: nothing in it ends the script.
std::string forScript(const ordered_json& value) {
    std::string text;
    for (const char each : value.dump()) {
        if (each == '<') {
            text += "\\u003c";
        } else {
            text += each;
        }
    }
    return text;
}

std::string base64(const std::string& bytes) {
    constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        uint32_t three = 0;
        for (std::size_t each = 0; each < 3; ++each) {
            const bool there = at + each < bytes.size();
            three = three << 8 | (there ? static_cast<unsigned char>(bytes[at + each]) : 0U);
        }
        for (std::size_t each = 0; each < 4; ++each) {
            const bool there = at + each <= bytes.size();
            text += there ? kDigits[three >> (18 - 6 * each) & 63] : '=';
        }
    }
    return text;
}

}  // namespace

ReportPage::ReportPage(std::ostream& stream) : stream_(stream) {
    stream_ << kPageHead << "<script type=\"application/json\" id=\"rows\">[\n";
}

std::string ReportPage::picture(const nlohmann::json& object) {
    const auto thumbnail = object.find("thumbnail");
    if (thumbnail == object.end() || !thumbnail->is_object()) return {};
    const std::string path = pathOf(*thumbnail);
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return {};
    const uint64_t size = std::filesystem::file_size(path, error);
    if (error || size > kMostPicture || pictureBytes_ + size > kMostPictures) {
        ++picturesLeftOut_;
        return {};
    }
    pictureBytes_ += size;
    std::ifstream file(path, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)),
                            std::istreambuf_iterator<char>());
    return base64(bytes);
}

void ReportPage::add(const nlohmann::json& object) {
    ordered_json row;
    row["p"] = object["path"];
    row["s"] = object["status"];
    row["k"] = object["kind"];
    row["b"] = object["size"];
    row["t"] = object["seconds"];
    row["m"] = object["peak_bytes"];
    if (object.contains("failure")) row["f"] = object["failure"];
    constexpr std::size_t kMostMessages = 5;
    ordered_json words = ordered_json::array();
    for (const auto& message : object["messages"]) {
        if (words.size() == kMostMessages) break;
        words.push_back(message.value("level", "") + ": " + message.value("text", ""));
    }
    row["w"] = words;
    ordered_json outputs = ordered_json::array();
    for (const auto& output : object["outputs"]) outputs.push_back(output.value("path", ""));
    row["o"] = outputs;
    const std::string image = picture(object);
    if (!image.empty()) row["i"] = image;
    stream_ << (first_ ? "" : ",\n") << forScript(row);
    first_ = false;
}

void ReportPage::end(const ordered_json& sums) {
    ordered_json all = sums;
    all["pictures_left_out"] = picturesLeftOut_;
    stream_ << "\n]</script>\n<script type=\"application/json\" id=\"sums\">" << forScript(all)
            << "</script>\n"
            << kPageEnd;
}

}  // namespace program
