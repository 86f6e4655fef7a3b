#include "tests/support/containers.h"

#include <archive.h>
#include <archive_entry.h>

#include <memory>
#include <stdexcept>

namespace intake::testing {

std::string packed(const std::string& format, const std::vector<std::string>& filters,
                   const Contents& contents, const std::string& password) {
    std::string bytes;
    const std::unique_ptr<archive, decltype(&archive_write_free)> made(archive_write_new(),
                                                                       archive_write_free);
    const auto check = [&](int status) {
        if (status < ARCHIVE_WARN) throw std::runtime_error(archive_error_string(made.get()));
    };
    check(archive_write_set_format_by_name(made.get(), format.c_str()));
    for (const std::string& filter : filters) {
        check(archive_write_add_filter_by_name(made.get(), filter.c_str()));
    }
    if (!password.empty()) {
        check(archive_write_set_options(made.get(), "zip:encryption=traditional"));
        check(archive_write_set_passphrase(made.get(), password.c_str()));
    }
    // No filling behind the end.
    check(archive_write_set_bytes_in_last_block(made.get(), 1));
    const auto append = [](archive*, void* user, const void* data, size_t size) {
        static_cast<std::string*>(user)->append(static_cast<const char*>(data), size);
        return static_cast<la_ssize_t>(size);
    };
    check(archive_write_open(made.get(), &bytes, nullptr, append, nullptr));
    for (const auto& [name, content] : contents) {
        const std::unique_ptr<archive_entry, decltype(&archive_entry_free)> entry(
            archive_entry_new(), archive_entry_free);
        archive_entry_set_pathname(entry.get(), name.c_str());
        archive_entry_set_filetype(entry.get(), AE_IFREG);
        archive_entry_set_perm(entry.get(), 0644);
        archive_entry_set_size(entry.get(), static_cast<la_int64_t>(content.size()));
        check(archive_write_header(made.get(), entry.get()));
        archive_write_data(made.get(), content.data(), content.size());
        check(archive_write_finish_entry(made.get()));
    }
    check(archive_write_close(made.get()));
    return bytes;
}

}  // namespace intake::testing
