#include "host/qxbase/channels.h"

#include <atomic>

#include "companions/qxbase/state.h"
#include "companions/qxbase/text_channel.h"
#include "companions/store/handle_table.h"
#include "companions/store/member_names.h"
#include "host/cpp/fixed_text.h"
#include "host/qxbase/strings.h"
#include "system/system.h"

namespace {

using qxbase::TextChannel;
using qxbase::TextReader;
using qxbase::TextWriter;

constexpr int32_t kFailed = 1;
constexpr int32_t kEndOfFile = -1;

store::HandleTable<TextChannel> channels;

// How many names of scratch files were given out.
std::atomic<int32_t> scratchFiles = 0;

std::string scratchName(int32_t number) {
    return os::temporaryFolder() + "/intake." + std::to_string(os::processNumber()) + '.' +
           std::to_string(number);
}

std::string path(const char* name, int32_t length) {
    return std::string(qx::textArgument(name, length));
}

void open(int32_t* channel, int32_t* status, TextChannel made) {
    *channel = channels.add(std::make_unique<TextChannel>(std::move(made)));
    *status = 0;
}

void create(int32_t* channel, std::string made, store::File::Creation creation, int32_t* status) {
    store::File file = store::File::create(made, creation);
    *status = kFailed;
    if (!file.isOpen()) return;
    open(channel, status,
         {nullptr, std::make_unique<TextWriter>(std::move(file)), std::move(made)});
}

void write(const int32_t* channel, std::string_view text, bool endsLine, int32_t* status) {
    TextChannel* found = channels.find(*channel);
    *status = found && found->writer && found->writer->write(text, endsLine) ? 0 : kFailed;
}

TextReader::Result read(const int32_t* channel, char* line, int32_t lineLength, bool inPieces,
                        int32_t* count) {
    *count = 0;
    TextChannel* found = channels.find(*channel);
    if (!found || !found->reader || lineLength < 1) return TextReader::Result::kFailed;
    std::size_t characters = 0;
    const auto result =
        found->reader->read(line, static_cast<std::size_t>(lineLength), characters, inPieces);
    *count = static_cast<int32_t>(characters);
    return result;
}

int32_t statusOf(TextReader::Result result) {
    switch (result) {
        case TextReader::Result::kEnd:
            return kEndOfFile;
        case TextReader::Result::kFailed:
            return kFailed;
        default:
            return 0;
    }
}

}  // namespace

namespace qxbase {

void closeChannels() { channels.closeAll(); }

}  // namespace qxbase

void aopen_(int32_t* channel, const char* name, int32_t* status, int32_t nameLength) {
    store::File file = store::File::read(path(name, nameLength));
    if (!file.isOpen()) {
        *status = kFailed;
        return;
    }
    open(channel, status, {std::make_unique<TextReader>(std::move(file)), nullptr, {}});
}

void acreat_(int32_t* channel, const char* name, int32_t* status, int32_t nameLength) {
    create(channel, path(name, nameLength), store::File::Creation::kAnew, status);
}

void acrnew_(int32_t* channel, const char* name, int32_t* status, int32_t nameLength) {
    create(channel, path(name, nameLength), store::File::Creation::kMustBeNew, status);
}

void aclose_(const int32_t* channel) { channels.close(*channel); }

void aread_(const int32_t* channel, char* line, int32_t* count, int32_t* status,
            int32_t lineLength) {
    TextChannel* found = channels.find(*channel);
    if (found && found->reader && lineLength == TextReader::kUsualLength &&
        found->reader->readUsual(line, *count)) {
        *status = 0;
        return;
    }
    const TextReader::Result result = read(channel, line, lineLength, false, count);
    *status = statusOf(result);
}

void apiece_(const int32_t* channel, char* piece, int32_t* count, int32_t* more, int32_t* status,
             int32_t pieceLength) {
    const TextReader::Result result = read(channel, piece, pieceLength, true, count);
    *more = result == TextReader::Result::kPiece ? 1 : 0;
    *status = statusOf(result);
}

void awindo_(const int32_t* channel, QxWindow** window) {
    TextChannel* found = channels.find(*channel);
    *window = found && found->reader ? &found->reader->window() : nullptr;
}

void awrite_(const int32_t* channel, const char* text, int32_t* status, int32_t textLength) {
    write(channel, qx::textArgument(text, textLength), true, status);
}

void aput_(const int32_t* channel, const char* text, int32_t* status, int32_t textLength) {
    write(channel, {text, static_cast<std::size_t>(textLength < 0 ? 0 : textLength)}, false,
          status);
}

void aflush_(const int32_t* channel, int32_t* status) {
    *status = kFailed;
    TextChannel* found = channels.find(*channel);
    if (!found || !found->writer) return;
    found->writer->flush();
    if (!found->writer->failed()) *status = 0;
}

void aatend_(const int32_t* channel, int32_t* ended) {
    TextChannel* found = channels.find(*channel);
    *ended = !found || !found->reader || found->reader->atEnd() ? 1 : 0;
}

void arewnd_(const int32_t* channel, int32_t* status) {
    *status = kFailed;
    TextChannel* found = channels.find(*channel);
    // One that could not be emptied is neither read nor written any more.
    if (!found || (!found->writer && !found->reader)) return;
    if (found->writer) {
        store::File file = found->writer->release();
        found->writer.reset();
        found->reader = std::make_unique<TextReader>(std::move(file));
    } else {
        found->reader->rewind();
    }
    *status = 0;
}

void aempty_(const int32_t* channel, int32_t* status) {
    *status = kFailed;
    TextChannel* found = channels.find(*channel);
    if (!found || found->madeAs.empty()) return;
    store::File file = store::File::create(found->madeAs, store::File::Creation::kAnew);
    if (!file.isOpen()) return;
    found->reader.reset();
    found->writer.reset();
    // The old writer has brought its lines to the file by now; they go as well.
    if (!file.truncate(0)) return;
    found->writer = std::make_unique<TextWriter>(std::move(file));
    *status = 0;
}

void abytes_(const int32_t* channel, int64_t* bytes) {
    TextChannel* found = channels.find(*channel);
    *bytes = found && found->reader ? found->reader->bytesRead() : 0;
}

void adelet_(const char* name, int32_t* status, int32_t nameLength) {
    *status = store::removeFile(path(name, nameLength)) ? 0 : kFailed;
}

void aexist_(const char* name, int32_t* status, int32_t nameLength) {
    *status = store::exists(path(name, nameLength)) ? 0 : kFailed;
}

void alink_(const char* name, int32_t* status, int32_t nameLength) {
    *status = store::isLink(std::string(store::plainPath(qx::textArgument(name, nameLength))))
                  ? 0
                  : kFailed;
}

void scrnam_(char* name, int32_t nameLength) {
    std::string scratch;
    constexpr int32_t kMostTries = 1000;
    const int32_t last = scratchFiles + kMostTries;
    do {
        scratch = scratchName(++scratchFiles);
    } while (scratchFiles < last && store::exists(scratch));
    qx::textResult(name, nameLength, scratch);
}

void scrnamC(char* name) {
    qx::Name scratch;
    scrnam_(scratch.data(), static_cast<int32_t>(scratch.size()));
    f772cee(name, scratch.data(), static_cast<int32_t>(scratch.size()));
}

void scrdel_(void) {
    for (int32_t number = scratchFiles; number > 0; --number) {
        store::dropFile(scratchName(number));
    }
}

void iename_(char* name, const int32_t* mode, int32_t* status, int32_t nameLength) {
    constexpr int32_t kReader = 2;
    std::string volume = path(name, nameLength);
    const auto digit = [&](std::size_t fromEnd) -> char& {
        return volume[volume.size() - fromEnd];
    };
    const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
    *status = kFailed;
    if (volume.size() < 2 || !isDigit(digit(1)) || !isDigit(digit(2))) return;
    if (digit(1) == '9' && digit(2) == '9') return;
    if (digit(1) == '9') {
        digit(1) = '0';
        ++digit(2);
    } else {
        ++digit(1);
    }
    qx::textResult(name, nameLength, volume);
    const bool there = store::exists(volume);
    *status = there == (*mode == kReader) ? 0 : kFailed;
}
