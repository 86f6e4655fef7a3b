#include "companions/qxfeat/feature_files.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "companions/qxfeat/state.h"

namespace qxfeat {

store::HandleTable<FeatureFile>& featureFiles() {
    static store::HandleTable<FeatureFile> files;
    return files;
}

void closeFeatures() { featureFiles().closeAll(); }

void enterWriter(int32_t* handle, int32_t* status, std::unique_ptr<store::RecordWriter> writer) {
    *status = kFailed;
    if (!writer) return;
    auto file = std::make_unique<FeatureFile>();
    file->keepsExtent = headerExtent(writer->header(), file->extent) || writer->count() == 0;
    file->writer = std::move(writer);
    *handle = featureFiles().add(std::move(file));
    *status = kSuccess;
}

void enterReader(int32_t* handle, int32_t* status, std::unique_ptr<store::RecordReader> reader) {
    *status = kFailed;
    if (!reader) return;
    auto file = std::make_unique<FeatureFile>();
    file->reader = std::move(reader);
    *handle = featureFiles().add(std::move(file));
    *status = kSuccess;
}

FeatureFile* findWritten(const int32_t* handle) {
    FeatureFile* file = featureFiles().find(*handle);
    return file && file->writer ? file : nullptr;
}

store::RecordWriter* findWriter(const int32_t* handle) {
    const FeatureFile* file = featureFiles().find(*handle);
    return file ? file->writer.get() : nullptr;
}

store::RecordReader* findReader(const int32_t* handle) {
    const FeatureFile* file = featureFiles().find(*handle);
    return file ? file->reader.get() : nullptr;
}

void countRecords(const int32_t* handle, int32_t* count) {
    store::RecordReader* reader = findReader(handle);
    *count = reader ? static_cast<int32_t>(std::min<int64_t>(reader->count(), INT32_MAX)) : 0;
}

void goToRecord(const int32_t* handle, const int32_t* record, int32_t* status) {
    store::RecordReader* reader = findReader(handle);
    *status = reader && reader->seek(*record) ? kSuccess : kFailed;
}

const std::byte* nextRecord(store::RecordReader* reader, std::size_t bytes, int32_t* number) {
    std::span<const std::byte> record;
    if (!reader || !reader->next(record)) return nullptr;
    if (record.size() != bytes) {
        reader->noteDamage();
        return nullptr;
    }
    *number = static_cast<int32_t>(reader->number());
    return record.data();
}

void appendRecord(FeatureFile& file, const RecordParts& parts) {
    constexpr std::size_t kInOnePart = 32 * 1024;
    store::RecordWriter& writer = *file.writer;
    const int32_t realBytes = file.coordinateBytes();
    const std::size_t bytes = parts.front.size() +
                              parts.coordinates.size() * static_cast<std::size_t>(realBytes) +
                              parts.integers.size_bytes() + parts.text.size();
    std::byte* place = nullptr;
    const bool whole = bytes <= kInOnePart;
    if (whole) {
        place = writer.append(bytes);
    } else {
        writer.announce(bytes);
    }
    // Room for some values: behind the ones before, or as a part of its own.
    const auto room = [&](std::size_t size) {
        std::byte* here = whole ? place : writer.part(size);
        place = here + size;
        return here;
    };
    const auto eachRun = [&](auto values, std::size_t valueBytes, auto put) {
        for (std::size_t start = 0; start < values.size();) {
            const std::size_t count = std::min(values.size() - start, kInOnePart / valueBytes);
            put(room(count * valueBytes), values.subspan(start, count));
            start += count;
        }
    };
    const auto copy = [](std::byte* here, auto run) {
        std::memcpy(here, run.data(), run.size_bytes());
    };
    eachRun(parts.front, 1, copy);
    eachRun(parts.coordinates, static_cast<std::size_t>(realBytes),
            [&](std::byte* here, auto run) { putCoordinates(here, run, realBytes); });
    eachRun(parts.integers, sizeof(int32_t),
            [](std::byte* here, auto run) { store::putAll(here, run); });
    eachRun(std::span(parts.text), 1, copy);
}

std::byte* putCoordinates(std::byte* place, std::span<const double> values, int32_t bytes) {
    if (bytes == 8) {
        store::putAll(place, values);
    } else {
        std::byte* each = place;
        for (const double value : values) {
            store::put(each, static_cast<float>(value));
            each += sizeof(float);
        }
    }
    return place + values.size() * static_cast<std::size_t>(bytes);
}

const std::byte* getCoordinates(const std::byte* place, std::span<double> values, int32_t bytes) {
    if (bytes == 8) {
        store::getAll(place, values);
    } else {
        // Two at once: coordinates come in pairs.
        const std::byte* each = place;
        std::size_t at = 0;
        for (; at + 1 < values.size(); at += 2, each += 8) {
            const auto both = store::get<uint64_t>(each);
            values[at] = std::bit_cast<float>(static_cast<uint32_t>(both >> 32));
            values[at + 1] = std::bit_cast<float>(static_cast<uint32_t>(both));
        }
        if (at < values.size()) values[at] = store::get<float>(each);
    }
    return place + values.size() * static_cast<std::size_t>(bytes);
}

}  // namespace qxfeat
