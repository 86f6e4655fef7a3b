// Plot files: a header with bounds and title, and records of one length behind it.
#include "host/qxbase/plots.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include "companions/qxbase/state.h"
#include "companions/store/appender.h"
#include "companions/store/handle_table.h"
#include "companions/store/open_files.h"
#include "companions/store/words.h"
#include "host/cpp/fixed_text.h"

namespace {

using store::File;

constexpr int32_t kFailed = 1;
constexpr int32_t kEnd = -1;
constexpr char kMagic[] = "QXPLOT  ";
constexpr int32_t kVersion = 1;
constexpr std::size_t kOrderPlace = 12;
constexpr std::size_t kBoundsPlace = 16;
constexpr std::size_t kTitlePlace = 32;
constexpr std::size_t kHeaderBytes = kTitlePlace + QX_PLOT_TITLE;
constexpr std::size_t kRecordBytes = 4 + 8 + 8 + QX_PLOT_TEXT;
constexpr std::array<float, 4> kUnsetBounds = {9.0E27F, 9.0E27F, -9.0E27F, -9.0E27F};

using Header = std::array<std::byte, kHeaderBytes>;

class PlotWriter : public store::Buffered {
  public:
    explicit PlotWriter(File file) : appender_(std::move(file), 0) {}
    ~PlotWriter() override { flush(); }
    std::byte* reserve(std::size_t bytes) { return appender_.reserve(bytes); }
    bool failed() const { return appender_.failed(); }
    void flush() override { appender_.flush(); }

  private:
    store::Appender appender_;
};

// Records are read in blocks.
class PlotReader {
  public:
    explicit PlotReader(File file) : file_(std::move(file)), size_(file_.size()) {}

    const std::byte* next() {
        if (next_ == block_.size() && !refill()) return nullptr;
        const std::byte* record = block_.data() + next_;
        next_ += kRecordBytes;
        return record;
    }
    int32_t count() const {
        return static_cast<int32_t>((size_ - static_cast<int64_t>(kHeaderBytes)) /
                                    static_cast<int64_t>(kRecordBytes));
    }

  private:
    bool refill() {
        constexpr std::size_t kRecordsPerBlock = 4096;
        block_.resize(kRecordsPerBlock * kRecordBytes);
        const int64_t bytes = std::max<int64_t>(file_.readAt(position_, block_), 0);
        block_.resize(static_cast<std::size_t>(bytes) / kRecordBytes * kRecordBytes);
        position_ += static_cast<int64_t>(block_.size());
        next_ = 0;
        return !block_.empty();
    }

    File file_;
    int64_t size_;
    int64_t position_ = kHeaderBytes;
    std::vector<std::byte> block_;
    std::size_t next_ = 0;
};

struct Plot {
    std::unique_ptr<PlotWriter> writer;
    std::unique_ptr<PlotReader> reader;
};

store::HandleTable<Plot> plots;
// Plot files made in this import: a map keeps the order of its elements by it.
int32_t created = 0;

std::string path(const char* name, int32_t length) {
    return std::string(qx::textArgument(name, length));
}

// The file and its header; false if it is no plot file.
bool readHeader(const File& file, Header& header) {
    return file.isOpen() && file.readAt(0, header) == static_cast<int64_t>(kHeaderBytes) &&
           std::memcmp(header.data(), kMagic, 8) == 0 &&
           store::get<int32_t>(header.data() + 8) == kVersion;
}

template <class Change>
void changeHeader(const char* name, int32_t nameLength, int32_t* status, Change change) {
    File file = File::readWrite(path(name, nameLength));
    Header header;
    *status = kFailed;
    if (!readHeader(file, header)) return;
    change(header);
    if (file.writeAt(0, header)) *status = 0;
}

template <class Look>
void lookAtHeader(const char* name, int32_t nameLength, int32_t* status, Look look) {
    Header header;
    *status = readHeader(File::read(path(name, nameLength)), header) ? 0 : kFailed;
    if (*status == 0) look(header);
}

}  // namespace

namespace qxbase {

void closePlots() {
    plots.closeAll();
    created = 0;
}

}  // namespace qxbase

void ptexis_(const char* name, int32_t* status, int32_t nameLength) {
    *status = store::exists(path(name, nameLength)) ? 0 : kFailed;
}

void ptcrea_(int32_t* channel, const char* name, int32_t* status, int32_t nameLength) {
    File file = File::create(path(name, nameLength), File::Creation::kMustBeNew);
    *status = kFailed;
    if (!file.isOpen()) return;
    auto writer = std::make_unique<PlotWriter>(std::move(file));
    std::byte* header = writer->reserve(kHeaderBytes);
    std::memcpy(header, kMagic, 8);
    store::WordWriter(header + 8) << kVersion << ++created;
    store::putAll(header + kBoundsPlace, std::span<const float>(kUnsetBounds));
    std::memset(header + kTitlePlace, ' ', QX_PLOT_TITLE);
    *channel = plots.add(std::make_unique<Plot>(Plot{std::move(writer), nullptr}));
    *status = 0;
}

void ptwrit_(const int32_t* channel, const int32_t* code, const float* reals,
             const int32_t* integers, const char* text, int32_t* status, int32_t textLength) {
    Plot* plot = plots.find(*channel);
    *status = kFailed;
    if (!plot || !plot->writer) return;
    store::WordWriter words(plot->writer->reserve(kRecordBytes));
    words << *code << reals[0] << reals[1] << integers[0] << integers[1];
    qx::padText(reinterpret_cast<char*>(words.place()), QX_PLOT_TEXT,
                qx::textArgument(text, textLength));
    if (!plot->writer->failed()) *status = 0;
}

void ptclos_(const int32_t* channel) { plots.close(*channel); }

void ptbndw_(const char* name, const float* xmin, const float* ymin, const float* xmax,
             const float* ymax, int32_t* status, int32_t nameLength) {
    changeHeader(name, nameLength, status, [&](Header& header) {
        store::WordWriter(header.data() + kBoundsPlace) << *xmin << *ymin << *xmax << *ymax;
    });
}

void ptbndr_(const char* name, float* xmin, float* ymin, float* xmax, float* ymax, int32_t* status,
             int32_t nameLength) {
    lookAtHeader(name, nameLength, status, [&](const Header& header) {
        store::WordReader(header.data() + kBoundsPlace) >> *xmin >> *ymin >> *xmax >> *ymax;
    });
}

void pthdrw_(const char* name, const char* title, int32_t* status, int32_t nameLength,
             int32_t titleLength) {
    changeHeader(name, nameLength, status, [&](Header& header) {
        qx::padText(reinterpret_cast<char*>(header.data()) + kTitlePlace, QX_PLOT_TITLE,
                    qx::textArgument(title, titleLength));
    });
}

void pthdrr_(const char* name, char* title, int32_t* status, int32_t nameLength,
             int32_t titleLength) {
    lookAtHeader(name, nameLength, status, [&](const Header& header) {
        qx::textResult(title, titleLength,
                       {reinterpret_cast<const char*>(header.data()) + kTitlePlace, QX_PLOT_TITLE});
    });
}

void ptord_(const char* name, int32_t* order, int32_t* status, int32_t nameLength) {
    lookAtHeader(name, nameLength, status, [&](const Header& header) {
        *order = store::get<int32_t>(header.data() + kOrderPlace);
    });
}

void ptopen_(int32_t* channel, const char* name, int32_t* status, int32_t nameLength) {
    File file = File::read(path(name, nameLength));
    Header header;
    *status = kFailed;
    if (!readHeader(file, header)) return;
    *channel = plots.add(
        std::make_unique<Plot>(Plot{nullptr, std::make_unique<PlotReader>(std::move(file))}));
    *status = 0;
}

void ptread_(const int32_t* channel, int32_t* code, float* reals, int32_t* integers, char* text,
             int32_t* status, int32_t textLength) {
    Plot* plot = plots.find(*channel);
    const std::byte* record = plot && plot->reader ? plot->reader->next() : nullptr;
    *status = kEnd;
    if (!record) return;
    store::WordReader words(record);
    words >> *code >> reals[0] >> reals[1] >> integers[0] >> integers[1];
    qx::textResult(text, textLength, {reinterpret_cast<const char*>(words.place()), QX_PLOT_TEXT});
    *status = 0;
}

void ptrec_(const int32_t* channel, int32_t* count) {
    Plot* plot = plots.find(*channel);
    *count = plot && plot->reader ? plot->reader->count() : 0;
}
