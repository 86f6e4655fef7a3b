// What stands before and behind the rows of a report's page.
#ifndef APP_INTAKE_REPORT_PAGE_TEXT_H
#define APP_INTAKE_REPORT_PAGE_TEXT_H

namespace program {

extern const char kPageHead[];
extern const char kPageEnd[];

}  // namespace program

#endif
