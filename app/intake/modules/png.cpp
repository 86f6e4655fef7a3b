// PNG by cairo.
#include <cairo.h>

#include <cerrno>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <system_error>

#include "app/intake/draw/canvas.h"
#include "app/intake/module.h"

namespace program {

namespace {

struct DestroySurface {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct DestroyContext {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Surface = std::unique_ptr<cairo_surface_t, DestroySurface>;
using Context = std::unique_ptr<cairo_t, DestroyContext>;

// The surface borrows the image's pixels.
Surface surfaceOf(const Image& image) {
    return Surface(cairo_image_surface_create_for_data(const_cast<uint8_t*>(image.pixels.data()),
                                                       CAIRO_FORMAT_ARGB32, image.width,
                                                       image.height, image.width * 4));
}

class PngCanvas : public Canvas {
  public:
    PngCanvas(std::string path, double width, double height)
        : path_(std::move(path)),
          surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24,
                                              static_cast<int>(std::ceil(width)),
                                              static_cast<int>(std::ceil(height)))),
          context_(cairo_create(surface_.get())) {
        cairo_set_source_rgb(context_.get(), 1, 1, 1);
        cairo_paint(context_.get());
        cairo_set_line_join(context_.get(), CAIRO_LINE_JOIN_ROUND);
        cairo_select_font_face(context_.get(), "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                               CAIRO_FONT_WEIGHT_NORMAL);
    }

    void line(std::span<const Place> places, Colour colour, double width) override {
        path(places);
        use(colour);
        cairo_set_line_width(context_.get(), width);
        cairo_stroke(context_.get());
    }

    void area(std::span<const Place> places, Colour colour) override {
        path(places);
        use(colour);
        cairo_fill(context_.get());
    }

    void rings(std::span<const std::vector<Place>> rings, Colour colour) override {
        cairo_new_path(context_.get());
        for (const std::vector<Place>& ring : rings) {
            cairo_new_sub_path(context_.get());
            for (const Place& place : ring) cairo_line_to(context_.get(), place.x, place.y);
        }
        use(colour);
        cairo_set_fill_rule(context_.get(), CAIRO_FILL_RULE_EVEN_ODD);
        cairo_fill(context_.get());
        cairo_set_fill_rule(context_.get(), CAIRO_FILL_RULE_WINDING);
    }

    void dot(Place place, double radius, Colour colour) override {
        use(colour);
        cairo_new_path(context_.get());
        cairo_arc(context_.get(), place.x, place.y, radius, 0, 2 * std::numbers::pi);
        cairo_fill(context_.get());
    }

    void text(Place place, double height, double degrees, std::string_view text,
              Colour colour) override {
        use(colour);
        cairo_save(context_.get());
        cairo_translate(context_.get(), place.x, place.y);
        cairo_rotate(context_.get(), -degrees * std::numbers::pi / 180);
        cairo_set_font_size(context_.get(), height);
        cairo_move_to(context_.get(), 0, 0);
        cairo_show_text(context_.get(), std::string(text).c_str());
        cairo_restore(context_.get());
    }

    void image(Place topLeft, double width, double height, const Image& image) override {
        const Surface source = surfaceOf(image);
        cairo_save(context_.get());
        cairo_translate(context_.get(), topLeft.x, topLeft.y);
        cairo_scale(context_.get(), width / image.width, height / image.height);
        cairo_set_source_surface(context_.get(), source.get(), 0, 0);
        cairo_pattern_set_filter(cairo_get_source(context_.get()), CAIRO_FILTER_NEAREST);
        cairo_paint(context_.get());
        cairo_restore(context_.get());
    }

    void finish() override {
        errno = 0;
        if (cairo_status(context_.get()) != CAIRO_STATUS_SUCCESS ||
            cairo_surface_write_to_png(surface_.get(), path_.c_str()) != CAIRO_STATUS_SUCCESS) {
            throw std::system_error(errno != 0 ? errno : EIO, std::generic_category());
        }
    }

  private:
    void use(Colour colour) {
        cairo_set_source_rgb(context_.get(), colour.red / 255.0, colour.green / 255.0,
                             colour.blue / 255.0);
    }
    void path(std::span<const Place> places) {
        cairo_new_path(context_.get());
        for (const Place& place : places) cairo_line_to(context_.get(), place.x, place.y);
    }

    std::string path_;
    Surface surface_;
    Context context_;
};

class CairoPictures : public Pictures {
  public:
    std::unique_ptr<Canvas> png(const std::string& path, double width,
                                double height) const override {
        return std::make_unique<PngCanvas>(path, width, height);
    }

    std::string bytes(const Image& image) const override {
        std::string bytes;
        const auto append = [](void* target, const unsigned char* data, unsigned int size) {
            static_cast<std::string*>(target)->append(reinterpret_cast<const char*>(data), size);
            return CAIRO_STATUS_SUCCESS;
        };
        if (cairo_surface_write_to_png_stream(surfaceOf(image).get(), append, &bytes) !=
            CAIRO_STATUS_SUCCESS) {
            throw std::runtime_error("could not make an image");
        }
        return bytes;
    }
};

}  // namespace

}  // namespace program

INTAKE_MODULE(program::Pictures, program::CairoPictures)
