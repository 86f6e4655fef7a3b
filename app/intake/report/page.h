// A report as one page that needs nothing else: a table to sort and to filter.
#ifndef APP_INTAKE_REPORT_PAGE_H
#define APP_INTAKE_REPORT_PAGE_H

#include <cstdint>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>

namespace program {

class ReportPage {
  public:
    explicit ReportPage(std::ostream& stream);
    // A row. Its small picture is within the page, up to some megabytes of all of them.
    void add(const nlohmann::json& object);
    // The sums, and the end.
    void end(const nlohmann::ordered_json& sums);

  private:
    std::string picture(const nlohmann::json& object);

    std::ostream& stream_;
    bool first_ = true;
    uint64_t pictureBytes_ = 0;
    uint64_t picturesLeftOut_ = 0;
};

}  // namespace program

#endif
