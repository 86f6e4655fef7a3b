#include "app/intake/show/feature_boxes.h"

#include <algorithm>
#include <vector>

#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"

namespace program {

using qx::call;

namespace {

constexpr std::size_t kUsualPoints = 1000;

// What the files of all kinds have in common: their operations to count, go and close.
template <auto countOf, auto goTo, auto close>
class FeatureFile : public FeatureBoxes {
  public:
    explicit FeatureFile(int32_t handle) : handle_(handle) {}
    ~FeatureFile() override { close(&handle_); }
    FeatureFile(const FeatureFile&) = delete;
    FeatureFile& operator=(const FeatureFile&) = delete;
    int32_t count() override {
        int32_t records = 0;
        countOf(&handle_, &records);
        return records;
    }
    bool go(int32_t record) override {
        int32_t status = 0;
        goTo(&handle_, &record, &status);
        return status == 0;
    }

  protected:
    int32_t handle_;
};

class Labels : public FeatureFile<labrec_, labpos_, labcls_> {
  public:
    using FeatureFile::FeatureFile;
    bool next(Box& box) override {
        QxLabel label{};
        int32_t number = 0;
        int32_t status = 0;
        call(labrd_, handle_, number, label, status);
        box = {label.x, label.y, label.x, label.y};
        return status == 0;
    }
};

class Arcs : public FeatureFile<arcrec_, arcpos_, arccls_> {
  public:
    using FeatureFile::FeatureFile;
    bool next(Box& box) override {
        QxArc arc{};
        int32_t number = 0;
        int32_t status = 1;
        while (status > 0) {
            const auto room = static_cast<int32_t>(vertices_.size() / 2);
            call(arcrd_, handle_, number, arc, vertices_, room, status);
            if (status > 0) vertices_.resize(static_cast<std::size_t>(arc.vertexCount) * 2);
        }
        if (status == 0) call(boxfd2_, vertices_, arc.vertexCount, box);
        return status == 0;
    }

  private:
    std::vector<double> vertices_ = std::vector<double>(2 * kUsualPoints);
};

class Polygons : public FeatureFile<palrec_, palpos_, palcls_> {
  public:
    using FeatureFile::FeatureFile;
    bool next(Box& box) override {
        QxPolygon polygon{};
        std::array<int32_t, 3> noArcs;
        int32_t number = 0;
        int32_t status = 0;
        call(palrd_, handle_, number, polygon, noArcs, 0, status);
        std::copy_n(polygon.box, 4, box.begin());
        return status == 0;
    }
};

class Annotation : public FeatureFile<annrec_, annpos_, anncls_> {
  public:
    using FeatureFile::FeatureFile;
    // One without points lies where the one before it does, so that has to be found first.
    bool go(int32_t record) override {
        int32_t first = record;
        int32_t points = 0;
        while (first > known_ + 1 && points == 0) {
            if (!FeatureFile::go(--first) || !read()) return false;
            points = anno_.pointCount;
        }
        if (first <= 1) box_ = {};
        if (!FeatureFile::go(first)) return false;
        for (int32_t each = first; each < record; ++each) {
            if (!step()) return false;
        }
        known_ = record - 1;
        return true;
    }
    bool next(Box& box) override {
        if (!step()) return false;
        ++known_;
        box = box_;
        return true;
    }

  private:
    bool read() {
        int32_t status = 1;
        while (status > 0) {
            const auto room = static_cast<int32_t>(points_.size() / 2);
            call(annrd_, handle_, anno_, points_, room, status);
            if (status > 0) points_.resize(static_cast<std::size_t>(anno_.pointCount) * 2);
        }
        return status == 0;
    }
    bool step() {
        if (!read()) return false;
        call(annbox_, anno_, points_, box_);
        return true;
    }

    AnnoRecord anno_{};
    std::vector<double> points_ = std::vector<double>(2 * kUsualPoints);
    Box box_{};
    int32_t known_ = 0;  // the record whose box is at hand
};

}  // namespace

std::unique_ptr<FeatureBoxes> openFeatureBoxes(const std::string& coverage, int32_t kind,
                                               std::string_view subclass) {
    constexpr int32_t kRegionCode = 90;
    const std::string_view path(coverage);
    int32_t handle = 0;
    int32_t status = 1;
    qx::Name regions;
    switch (kind) {
        case QX_INDEX_POINTS:
            call(labopn_, handle, path, status);
            if (status == 0) return std::make_unique<Labels>(handle);
            break;
        case QX_INDEX_ARCS:
            call(arcopn_, handle, path, status);
            if (status == 0) return std::make_unique<Arcs>(handle);
            break;
        case QX_INDEX_POLYGONS:
            call(palopn_, handle, path, 1, int32_t{QX_POLYGON_ARCS}, status);
            if (status == 0) return std::make_unique<Polygons>(handle);
            break;
        case QX_INDEX_ANNOTATION:
            call(annopn_, handle, path, subclass, status);
            if (status == 0) return std::make_unique<Annotation>(handle);
            break;
        default:
            call(fname_, path, subclass, regions, kRegionCode);
            call(palopn_, handle, regions, 1, int32_t{QX_POLYGON_PATH}, status);
            if (status == 0) return std::make_unique<Polygons>(handle);
    }
    return nullptr;
}

}  // namespace program
