// The calls take UTF-16, and paths in the form that has no bound of 260 characters.
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <mutex>
#include <optional>
#include <random>
#include <string_view>
#include <utility>

#include "system/system.h"

namespace os {

namespace {

// The headers of some compilers leave it out.
constexpr auto kFileRenameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

int errorNumber(DWORD error) {
    struct Row {
        DWORD error;
        int number;
    };
    constexpr Row kRows[] = {
        {ERROR_FILE_NOT_FOUND, ENOENT},      {ERROR_PATH_NOT_FOUND, ENOENT},
        {ERROR_BAD_NETPATH, ENOENT},         {ERROR_BAD_NET_NAME, ENOENT},
        {ERROR_INVALID_DRIVE, ENOENT},       {ERROR_ACCESS_DENIED, EACCES},
        {ERROR_WRITE_PROTECT, EROFS},        {ERROR_FILE_EXISTS, EEXIST},
        {ERROR_ALREADY_EXISTS, EEXIST},      {ERROR_DISK_FULL, ENOSPC},
        {ERROR_HANDLE_DISK_FULL, ENOSPC},    {ERROR_SHARING_VIOLATION, EBUSY},
        {ERROR_LOCK_VIOLATION, EAGAIN},      {ERROR_DIRECTORY, ENOTDIR},
        {ERROR_DIR_NOT_EMPTY, ENOTEMPTY},    {ERROR_INVALID_NAME, EINVAL},
        {ERROR_INVALID_PARAMETER, EINVAL},   {ERROR_FILENAME_EXCED_RANGE, ENAMETOOLONG},
        {ERROR_NOT_SAME_DEVICE, EXDEV},      {ERROR_TOO_MANY_OPEN_FILES, EMFILE},
        {ERROR_NOT_ENOUGH_MEMORY, ENOMEM},   {ERROR_OUTOFMEMORY, ENOMEM},
        {ERROR_CANT_RESOLVE_FILENAME, ELOOP}};
    for (const Row& row : kRows) {
        if (row.error == error) return row.number;
    }
    return EIO;
}

// Leaves the reason of the last call, and gives what tells its caller.
bool failed() {
    errno = errorNumber(GetLastError());
    return false;
}

bool failedWith(int number) {
    errno = number;
    return false;
}

bool toldOf(BOOL result) { return result || failed(); }

std::optional<std::wstring> wide(std::string_view text) {
    std::wstring result(text.size(), L'\0');
    if (text.empty()) return result;
    const int length = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(),
                                           static_cast<int>(text.size()), result.data(),
                                           static_cast<int>(result.size()));
    if (length == 0) return std::nullopt;
    result.resize(static_cast<std::size_t>(length));
    return result;
}

std::string narrow(std::wstring_view text) {
    std::string result(text.size() * 3, '\0');
    if (text.empty()) return result;
    const int length =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), result.data(),
                            static_cast<int>(result.size()), nullptr, nullptr);
    result.resize(static_cast<std::size_t>(length));
    return result;
}

// What a call of the system writes that gives the length it needs where a text is too short.
template <class Call>
std::wstring textFrom(Call call) {
    std::wstring text(MAX_PATH, L'\0');
    while (true) {
        const DWORD length = call(static_cast<DWORD>(text.size()), text.data());
        if (length < text.size()) {
            text.resize(length);
            return text;
        }
        text.resize(length);
    }
}

// The whole path in the form without bounds; nothing, with errno, for what can be no path. That
// form takes names as they stand, so the usual rules (".", "..", both separators, points and blanks
// at the end) are applied before. Devices and streams are no files.
std::optional<std::wstring> located(const char* path) {
    const auto given = wide(path);
    if (!given || given->empty()) {
        failedWith(given ? ENOENT : EINVAL);
        return std::nullopt;
    }
    constexpr std::wstring_view kUnbound = L"\\\\?\\";
    if (given->starts_with(kUnbound)) return given;
    std::wstring whole = textFrom([&](DWORD size, wchar_t* text) {
        return GetFullPathNameW(given->c_str(), size, text, nullptr);
    });
    const bool isShare = whole.starts_with(L"\\\\");
    if (whole.empty() || whole.starts_with(L"\\\\.\\") || whole.find(L':', 2) != whole.npos) {
        failedWith(EINVAL);
        return std::nullopt;
    }
    return isShare ? L"\\\\?\\UNC" + whole.substr(1) : std::wstring(kUnbound) + whole;
}

// Passes a located path to a call whose failure has the value of its second argument.
template <class Call, class Failure>
Failure withPath(const char* path, Failure failure, Call call) {
    const auto place = located(path);
    return place ? call(place->c_str()) : failure;
}

constexpr Handle kFolderMark = 1;  // in a handle, which is a multiple of four otherwise

HANDLE native(Handle handle) { return reinterpret_cast<HANDLE>(handle & ~kFolderMark); }

bool isFolder(Handle handle) { return (handle & kFolderMark) != 0; }

// Of a file: the byte that stands for its lock lies where no file has one, as a locked byte cannot
// be read by others.
OVERLAPPED lockedByte() {
    OVERLAPPED place{};
    place.OffsetHigh = 0x7FFFFFFF;
    return place;
}

OVERLAPPED placeAt(int64_t position) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(position);
    place.OffsetHigh = static_cast<DWORD>(position >> 32);
    return place;
}

int64_t secondsOf(const FILETIME& time, int64_t& nanoseconds) {
    const int64_t ticks = int64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
    constexpr int64_t kInSecond = 10'000'000;
    nanoseconds = ticks % kInSecond * 100;
    return ticks / kInSecond;
}

// Folders cannot be locked. Their lock is an event of a name made of what they are: whoever makes
// it has the lock, and it is gone with the last handle to it.
struct FolderLocks {
    std::mutex mutex;
    std::vector<std::pair<Handle, HANDLE>> held;

    void add(Handle folder, HANDLE event) {
        const std::lock_guard guard(mutex);
        held.emplace_back(folder, event);
    }
    void remove(Handle folder) {
        const std::lock_guard guard(mutex);
        std::erase_if(held, [&](const auto& each) {
            return each.first == folder && CloseHandle(each.second);
        });
    }
};

FolderLocks& folderLocks() {
    static FolderLocks locks;
    return locks;
}

bool tryFolderLock(Handle folder) {
    BY_HANDLE_FILE_INFORMATION found{};
    if (!GetFileInformationByHandle(native(folder), &found)) return failed();
    const std::wstring name =
        L"Global\\intake-folder-" + std::to_wstring(found.dwVolumeSerialNumber) + L'-' +
        std::to_wstring(found.nFileIndexHigh) + L'-' + std::to_wstring(found.nFileIndexLow);
    const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, name.c_str());
    if (!event) return failed();
    if (GetLastError() == ERROR_ALREADY_EXISTS) {
        CloseHandle(event);
        return failedWith(EAGAIN);
    }
    folderLocks().add(folder, event);
    return true;
}

bool lockFile(Handle handle, DWORD flags) {
    OVERLAPPED place = lockedByte();
    return toldOf(LockFileEx(native(handle), LOCKFILE_EXCLUSIVE_LOCK | flags, 0, 1, 0, &place));
}

Kind kindIn(DWORD attributes) {
    if (attributes & FILE_ATTRIBUTE_DIRECTORY) return Kind::kFolder;
    return attributes & FILE_ATTRIBUTE_DEVICE ? Kind::kOther : Kind::kFile;
}

HANDLE openToLook(const wchar_t* path, DWORD flags) {
    return CreateFileW(path, FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                       FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr);
}

// Files that are kept elsewhere until they are read are marked as links are.
bool isLink(const wchar_t* path) {
    const HANDLE handle = openToLook(path, FILE_FLAG_OPEN_REPARSE_POINT);
    if (handle == INVALID_HANDLE_VALUE) return true;
    FILE_ATTRIBUTE_TAG_INFO found{};
    const bool known =
        GetFileInformationByHandleEx(handle, FileAttributeTagInfo, &found, sizeof found);
    CloseHandle(handle);
    return !known || found.ReparseTag == IO_REPARSE_TAG_SYMLINK ||
           found.ReparseTag == IO_REPARSE_TAG_MOUNT_POINT;
}

// Like a rename elsewhere: who has the old file open keeps it.
bool moveOverOpen(const wchar_t* from, const std::wstring& to) {
    const HANDLE handle = CreateFileW(from, DELETE | SYNCHRONIZE, kShareAll, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return false;
    const std::size_t bytes = sizeof(FILE_RENAME_INFO) + to.size() * sizeof(wchar_t);
    std::vector<std::byte> memory(bytes);
    auto* request = reinterpret_cast<FILE_RENAME_INFO*>(memory.data());
    request->Flags = FILE_RENAME_FLAG_REPLACE_IF_EXISTS | FILE_RENAME_FLAG_POSIX_SEMANTICS;
    request->FileNameLength = static_cast<DWORD>(to.size() * sizeof(wchar_t));
    std::copy(to.begin(), to.end(), request->FileName);
    const bool moved =
        SetFileInformationByHandle(handle, kFileRenameInfoEx, request, static_cast<DWORD>(bytes));
    CloseHandle(handle);
    return moved;
}

bool removeAny(const std::wstring& path, DWORD attributes) {
    const bool folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (folder && !(attributes & FILE_ATTRIBUTE_REPARSE_POINT)) {
        WIN32_FIND_DATAW found{};
        const HANDLE search = FindFirstFileW((path + L"\\*").c_str(), &found);
        if (search != INVALID_HANDLE_VALUE) {
            do {
                const std::wstring_view name = found.cFileName;
                if (name == L"." || name == L"..") continue;
                removeAny(path + L'\\' + std::wstring(name), found.dwFileAttributes);
            } while (FindNextFileW(search, &found));
            FindClose(search);
        }
    }
    return toldOf(folder ? RemoveDirectoryW(path.c_str()) : DeleteFileW(path.c_str()));
}

}  // namespace

Handle openFile(const char* path, Opening how) {
    const auto place = located(path);
    if (!place) return kNoHandle;
    struct Row {
        DWORD access, creation, flags;
    };
    constexpr DWORD kBoth = GENERIC_READ | GENERIC_WRITE;
    constexpr std::array<Row, 5> kRows = {{{GENERIC_READ, OPEN_EXISTING, 0},
                                           {kBoth, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT},
                                           {kBoth, CREATE_NEW, FILE_FLAG_OPEN_REPARSE_POINT},
                                           {kBoth, OPEN_ALWAYS, FILE_FLAG_OPEN_REPARSE_POINT},
                                           {kBoth, OPEN_ALWAYS, FILE_FLAG_OPEN_REPARSE_POINT}}};
    const Row& row = kRows[static_cast<std::size_t>(how)];
    const HANDLE handle = CreateFileW(place->c_str(), row.access, kShareAll, nullptr, row.creation,
                                      FILE_ATTRIBUTE_NORMAL | row.flags, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        failed();
        if (errno == EACCES && kindOf(path) == Kind::kFolder) errno = EISDIR;
        return kNoHandle;
    }
    const auto opened = reinterpret_cast<Handle>(handle);
    if (row.flags != 0 && how != Opening::kMakeNew && kindOf(path) == Kind::kLink) {
        CloseHandle(handle);
        errno = ELOOP;
        return kNoHandle;
    }
    if (how == Opening::kMakeOrEmpty && !resize(opened, 0)) {
        const int failure = errno;
        CloseHandle(handle);
        errno = failure;
        return kNoHandle;
    }
    return opened;
}

bool identify(Handle file, FileIdentity& identity) {
    BY_HANDLE_FILE_INFORMATION found{};
    if (GetFileType(native(file)) != FILE_TYPE_DISK) return failedWith(EINVAL);
    if (!GetFileInformationByHandle(native(file), &found)) return failed();
    if (kindIn(found.dwFileAttributes) != Kind::kFile) return failedWith(EINVAL);
    identity.device = found.dwVolumeSerialNumber;
    identity.node = uint64_t{found.nFileIndexHigh} << 32 | found.nFileIndexLow;
    identity.madeSeconds = secondsOf(found.ftCreationTime, identity.madeNanoseconds);
    identity.size = int64_t{found.nFileSizeHigh} << 32 | found.nFileSizeLow;
    identity.changedSeconds = secondsOf(found.ftLastWriteTime, identity.changedNanoseconds);
    return true;
}

bool identifyPath(const char* path, FileIdentity& identity) {
    return withPath(path, false, [&](const wchar_t* place) {
        const HANDLE handle = openToLook(place, 0);
        if (handle == INVALID_HANDLE_VALUE) return failed();
        const bool known = identify(reinterpret_cast<Handle>(handle), identity);
        CloseHandle(handle);
        return known;
    });
}

int64_t sizeOf(Handle file) {
    LARGE_INTEGER size{};
    return toldOf(GetFileSizeEx(native(file), &size)) ? size.QuadPart : -1;
}

int64_t readAt(Handle file, int64_t position, std::span<std::byte> bytes) {
    OVERLAPPED place = placeAt(position);
    DWORD count = 0;
    const auto wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1U << 30));
    if (ReadFile(native(file), bytes.data(), wanted, &count, &place)) return count;
    if (GetLastError() == ERROR_HANDLE_EOF) return 0;
    failed();
    return -1;
}

int64_t writeAt(Handle file, int64_t position, std::span<const std::byte> bytes) {
    OVERLAPPED place = placeAt(position);
    DWORD count = 0;
    const auto wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1U << 30));
    return toldOf(WriteFile(native(file), bytes.data(), wanted, &count, &place)) ? count : -1;
}

bool resize(Handle file, int64_t bytes) {
    FILE_END_OF_FILE_INFO end{};
    end.EndOfFile.QuadPart = bytes;
    return toldOf(SetFileInformationByHandle(native(file), FileEndOfFileInfo, &end, sizeof end));
}

bool sync(Handle file) { return toldOf(FlushFileBuffers(native(file))); }

// The file system keeps a journal of names, in their order.
bool syncFolder(const char*) { return true; }

bool closeHandle(Handle handle) {
    if (isFolder(handle)) folderLocks().remove(handle);
    return toldOf(CloseHandle(native(handle)));
}

bool lock(Handle handle) {
    if (!isFolder(handle)) return lockFile(handle, 0);
    while (!tryFolderLock(handle)) {
        if (errno != EAGAIN) return false;
        Sleep(1);
    }
    return true;
}

bool tryLock(Handle handle) {
    if (!isFolder(handle)) return lockFile(handle, LOCKFILE_FAIL_IMMEDIATELY);
    // Another that looks holds the event for a moment.
    for (int tries = 0; tries < 3; ++tries) {
        if (tryFolderLock(handle)) return true;
        if (errno != EAGAIN) return false;
        Sleep(1);
    }
    return false;
}

void unlock(Handle handle) {
    if (isFolder(handle)) return folderLocks().remove(handle);
    OVERLAPPED place = lockedByte();
    UnlockFileEx(native(handle), 0, 1, 0, &place);
}

Handle openFolder(const char* path, bool followLinks) {
    const Kind kind = followLinks ? kindBehind(path) : kindOf(path);
    if (kind != Kind::kFolder) {
        if (kind != Kind::kNothing) errno = kind == Kind::kLink ? ELOOP : ENOTDIR;
        return kNoHandle;
    }
    return withPath(path, kNoHandle, [&](const wchar_t* place) {
        const HANDLE handle = openToLook(place, 0);
        if (handle != INVALID_HANDLE_VALUE) return reinterpret_cast<Handle>(handle) | kFolderMark;
        failed();
        return kNoHandle;
    });
}

Kind kindOf(const char* path) {
    return withPath(path, Kind::kNothing, [](const wchar_t* place) {
        const DWORD attributes = GetFileAttributesW(place);
        if (attributes == INVALID_FILE_ATTRIBUTES) {
            failed();
            return Kind::kNothing;
        }
        const bool marked = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
        return marked && isLink(place) ? Kind::kLink : kindIn(attributes);
    });
}

Kind kindBehind(const char* path) {
    return withPath(path, Kind::kNothing, [](const wchar_t* place) {
        const HANDLE handle = openToLook(place, 0);
        BY_HANDLE_FILE_INFORMATION found{};
        const bool known =
            handle != INVALID_HANDLE_VALUE && GetFileInformationByHandle(handle, &found);
        if (!known) failed();
        if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
        return known ? kindIn(found.dwFileAttributes) : Kind::kNothing;
    });
}

bool makeFolder(const char* path) {
    return withPath(path, false,
                    [](const wchar_t* place) { return toldOf(CreateDirectoryW(place, nullptr)); });
}

bool removeFolder(const char* path) {
    return withPath(path, false,
                    [](const wchar_t* place) { return toldOf(RemoveDirectoryW(place)); });
}

bool removeFile(const char* path) {
    return withPath(path, false, [](const wchar_t* place) { return toldOf(DeleteFileW(place)); });
}

bool moveOver(const char* from, const char* to) {
    const auto source = located(from);
    const auto target = located(to);
    if (!source || !target) return false;
    return moveOverOpen(source->c_str(), *target) ||
           toldOf(MoveFileExW(source->c_str(), target->c_str(), MOVEFILE_REPLACE_EXISTING));
}

bool moveUnlessThere(const char* from, const char* to) {
    const auto source = located(from);
    const auto target = located(to);
    return source && target && toldOf(MoveFileExW(source->c_str(), target->c_str(), 0));
}

bool namesIn(const char* folder, std::vector<std::string>& names) {
    return withPath(folder, false, [&](const wchar_t* place) {
        WIN32_FIND_DATAW found{};
        const HANDLE search = FindFirstFileW((std::wstring(place) + L"\\*").c_str(), &found);
        if (search == INVALID_HANDLE_VALUE) return failed();
        do {
            const std::wstring_view name = found.cFileName;
            if (name != L"." && name != L"..") names.push_back(narrow(name));
        } while (FindNextFileW(search, &found));
        const bool whole = GetLastError() == ERROR_NO_MORE_FILES;
        if (!whole) failed();
        FindClose(search);
        return whole;
    });
}

bool removeTree(const char* path) {
    return withPath(path, false, [](const wchar_t* place) {
        const DWORD attributes = GetFileAttributesW(place);
        if (attributes != INVALID_FILE_ATTRIBUTES) return removeAny(place, attributes);
        failed();
        return errno == ENOENT;
    });
}

std::string makeUniqueFolder(const std::string& prefix) {
    constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    constexpr int kMostTries = 100;
    for (int tries = 0; tries < kMostTries; ++tries) {
        std::string path = prefix;
        for (int letter = 0; letter < 6; ++letter) path += kLetters[random() % kLetters.size()];
        if (makeFolder(path.c_str())) return path;
        if (errno != EEXIST) break;
    }
    return {};
}

std::string temporaryFolder() {
    std::wstring folder = textFrom(
        [](DWORD size, wchar_t* text) { return GetEnvironmentVariableW(L"TMPDIR", text, size); });
    if (folder.empty()) {
        folder = textFrom([](DWORD size, wchar_t* text) { return GetTempPathW(size, text); });
    }
    while (folder.size() > 3 && (folder.back() == L'\\' || folder.back() == L'/')) {
        folder.pop_back();
    }
    return narrow(folder);
}

std::string currentFolder() {
    return narrow(
        textFrom([](DWORD size, wchar_t* text) { return GetCurrentDirectoryW(size, text); }));
}

int64_t processNumber() { return GetCurrentProcessId(); }

bool setVariable(const char* name, const char* value) { return ::_putenv_s(name, value) == 0; }

void* loadCompanion(const char* name) { return LoadLibraryA(name); }

void* thisProgram() {
    HMODULE program = nullptr;
    GetModuleHandleExW(0, nullptr, &program);
    return program;
}

void freeLibrary(void* library) { FreeLibrary(static_cast<HMODULE>(library)); }

void messageBox(const char* text, const char* caption, uint32_t style) {
    MessageBoxA(nullptr, text, caption, style);
}

bool isSeparator(char character) { return character == '/' || character == '\\'; }

bool isAbsolute(std::string_view path) {
    return !path.empty() && (isSeparator(path.front()) || (path.size() > 1 && path[1] == ':'));
}

}  // namespace os
