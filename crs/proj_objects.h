// What is asked of PROJ's objects again and again.
#ifndef CRS_PROJ_OBJECTS_H
#define CRS_PROJ_OBJECTS_H

#include <proj.h>
// What makes systems out of their parts; it is the same since PROJ 6.
#include <proj_experimental.h>

#include <cstdint>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

namespace crs {

inline constexpr double kRadiansInDegree = std::numbers::pi / 180;

struct Destroy {
    void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
    void operator()(PJ* object) const { proj_destroy(object); }
    void operator()(PJ_OBJ_LIST* list) const { proj_list_destroy(list); }
};
using Object = std::unique_ptr<PJ, Destroy>;
using ObjectList = std::unique_ptr<PJ_OBJ_LIST, Destroy>;

// Says nothing itself and never uses a network.
class Context {
  public:
    Context() : context_(proj_context_create()) {
        proj_log_level(context_.get(), PJ_LOG_NONE);
        proj_context_set_enable_network(context_.get(), 0);
    }
    operator PJ_CONTEXT*() const { return context_.get(); }

  private:
    std::unique_ptr<PJ_CONTEXT, Destroy> context_;
};

inline std::string orEmpty(const char* text) { return text == nullptr ? "" : text; }

// The system of a code of the registry; null if there is none.
Object registered(PJ_CONTEXT* context, int32_t code);

// The unit of the first axis of a system, in metres or radians; 0 if there is none.
double unitOf(PJ_CONTEXT* context, const Object& system);

// The parameters of a conversion, as it has them; their texts live as long as the conversion.
std::vector<PJ_PARAM_DESCRIPTION> parametersOf(PJ_CONTEXT* context, const Object& conversion);

}  // namespace crs

#endif
