// Texts of datasets are bytes in an encoding that nothing names; formats take UTF-8.
#ifndef APP_INTAKE_EXPORT_DECODER_H
#define APP_INTAKE_EXPORT_DECODER_H

#include <cstdint>
#include <string>
#include <string_view>

namespace program {

class Decoder {
  public:
    // Throws a std::runtime_error for an encoding that the system does not know.
    explicit Decoder(const std::string& encoding);
    ~Decoder();
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    // The text in UTF-8, without its trailing blanks: as it is if it is said to be UTF-8 already,
    // else out of the encoding. What cannot be decoded becomes U+FFFD, and is counted. Valid until
    // room is used again.
    std::string_view decode(std::string_view text, bool isUtf8, std::string& room);

    // How many bytes could not be decoded since the last call.
    int64_t takeUndecoded();

  private:
    void* converter_;
    int64_t undecoded_ = 0;
};

}  // namespace program

#endif
