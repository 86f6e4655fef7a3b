// Plays a plot: the records of its drawing, one after the other.
#include "datasets/plots.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "app/intake/draw/draw.h"
#include "app/intake/draw/palette.h"
#include "app/intake/interrupts.h"
#include "app/intake/utf8.h"

namespace program {

namespace {

enum Code : int32_t {
    kColour = 0,
    kMove = 1,
    kDraw = 2,
    kPoint = 3,
    kTextSize = 4,
    kEnd = 5,
    kOrigin = 6,
    kScale = 7,
    kShade = 10,
    kVertex = 11,
    kFill = 12
};

constexpr std::size_t kMostText = 320;
constexpr std::size_t kMostVertices = 5000;

// What the player hands on, in plot units.
class Stage {
  public:
    virtual ~Stage() = default;
    virtual void line(const std::vector<double>& pairs, int32_t colour) = 0;
    virtual void fill(const std::vector<double>& pairs, int32_t shade, bool outlined) = 0;
    virtual void point(double x, double y, int32_t colour) = 0;
    virtual void text(double x, double y, double height, const std::string& text,
                      int32_t colour) = 0;
};

class Player {
  public:
    explicit Player(Stage& stage) : stage_(stage) {}

    // False at the record that ends the plot.
    bool play(const datasets::PlotRecord& record) {
        if (record.code < 0) {
            takeText(record);
            return true;
        }
        endText();
        if (record.code != kDraw) endLine();
        const double x = xOrigin_ + double{record.reals[0]} * scale_;
        const double y = yOrigin_ + double{record.reals[1]} * scale_;
        switch (record.code) {
            case kColour:
                colour_ = record.integers[0];
                break;
            case kMove:
            case kDraw:
                line_.insert(line_.end(), {x, y});
                break;
            case kPoint:
                stage_.point(x, y, colour_);
                break;
            case kTextSize:
                textHeight_ = double{record.reals[0]} * scale_;
                break;
            case kEnd:
                return false;
            case kOrigin:
                xOrigin_ += double{record.reals[0]} * scale_;
                yOrigin_ += double{record.reals[1]} * scale_;
                break;
            case kScale:
                scale_ *= double{record.reals[0]};
                break;
            case kShade:
                shade_ = std::isfinite(record.reals[0])
                             ? static_cast<int32_t>(std::clamp(record.reals[0], -2e9F, 2e9F))
                             : 0;
                outlined_ = record.integers[1] != 0;
                break;
            case kVertex:
                if (polygon_.size() < 2 * kMostVertices) polygon_.insert(polygon_.end(), {x, y});
                break;
            case kFill:
                stage_.fill(polygon_, shade_, outlined_);
                polygon_.clear();
                break;
            default:
                break;
        }
        if (record.code == kMove || record.code == kPoint) textPlace_ = {x, y};
        return true;
    }

    void finish() {
        endText();
        endLine();
    }

  private:
    // As many characters as the code says; fewer than eight end the text.
    void takeText(const datasets::PlotRecord& record) {
        const auto count =
            static_cast<std::size_t>(std::min<int64_t>(-int64_t{record.code}, QX_PLOT_TEXT));
        if (text_.size() + count <= kMostText) text_ += record.text.full().substr(0, count);
        if (count < QX_PLOT_TEXT) endText();
    }
    void endText() {
        const std::string_view text = qx::trimText(text_);
        if (!text.empty()) {
            stage_.text(textPlace_.x, textPlace_.y, textHeight_, toUtf8(text), colour_);
        }
        text_.clear();
    }
    void endLine() {
        if (line_.size() >= 4) stage_.line(line_, colour_);
        line_.clear();
    }

    Stage& stage_;
    double scale_ = 1;
    double xOrigin_ = 0;
    double yOrigin_ = 0;
    double textHeight_ = 0;
    int32_t colour_ = 1;
    int32_t shade_ = 0;
    bool outlined_ = false;
    Place textPlace_;
    std::vector<double> line_;
    std::vector<double> polygon_;
    std::string text_;
};

void playFile(const std::string& file, Stage& stage) {
    Player player(stage);
    for (const datasets::PlotRecord& record : datasets::plotRecords(file)) {
        if (!player.play(record)) break;
    }
    player.finish();
}

class Measure : public Stage {
  public:
    Extent extent;
    void line(const std::vector<double>& pairs, int32_t) override { add(pairs); }
    void fill(const std::vector<double>& pairs, int32_t, bool) override { add(pairs); }
    void point(double x, double y, int32_t) override { extent.add(x, y); }
    void text(double x, double y, double, const std::string&, int32_t) override {
        extent.add(x, y);
    }

  private:
    void add(const std::vector<double>& pairs) {
        for (std::size_t index = 0; index + 1 < pairs.size(); index += 2) {
            extent.add(pairs[index], pairs[index + 1]);
        }
    }
};

class OnCanvas : public Stage {
  public:
    OnCanvas(Canvas& canvas, const View& view) : canvas_(canvas), view_(view) {}
    void line(const std::vector<double>& pairs, int32_t colour) override {
        throwIfInterrupted();
        canvas_.line(view_.places(pairs), lineColour(colour), 1);
    }
    void fill(const std::vector<double>& pairs, int32_t shade, bool outlined) override {
        std::vector<Place> places = view_.places(pairs);
        if (places.size() < 3) return;
        canvas_.area(places, shadeColour(shade));
        places.push_back(places.front());
        if (outlined) canvas_.line(places, kInk, 0.5);
    }
    void point(double x, double y, int32_t colour) override {
        if (!std::isfinite(x) || !std::isfinite(y)) return;
        canvas_.dot(view_.place(x, y), 2.5, lineColour(colour));
    }
    void text(double x, double y, double height, const std::string& text, int32_t colour) override {
        if (!std::isfinite(x) || !std::isfinite(y)) return;
        canvas_.text(view_.place(x, y), view_.length(height, kTextPixels), 0, text,
                     lineColour(colour));
    }

  private:
    Canvas& canvas_;
    const View& view_;
};

// The bounds that the plot says, if it does, and what it draws: not all plots keep to their bounds.
Extent extentOf(const std::string& file) {
    Measure measure;
    const datasets::PlotHead head = datasets::plotHead(file);
    const auto& [xmin, ymin, xmax, ymax] = head.bounds;
    if (head.hasBounds()) measure.extent.add({xmin, ymin, xmax, ymax});
    playFile(file, measure);
    return measure.extent;
}

Picture pictureOfFiles(const std::vector<std::string>& files) {
    Picture picture;
    for (const std::string& file : files) picture.extent.add(extentOf(file));
    picture.draw = [files](Canvas& canvas, const View& view) {
        OnCanvas stage(canvas, view);
        for (const std::string& file : files) playFile(file, stage);
    };
    return picture;
}

}  // namespace

Picture pictureOfPlot(const Dataset& dataset) { return pictureOfFiles({dataset.path}); }

Picture pictureOfMap(const Dataset& dataset) {
    std::vector<std::string> files;
    for (const std::string& element : datasets::mapElements(dataset.path)) {
        files.push_back(datasets::elementFile(dataset.path, element));
    }
    return pictureOfFiles(files);
}

}  // namespace program
