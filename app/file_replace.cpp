#include "app/file_replace.h"

#include <algorithm>
#include <atomic>
#include <random>
#include <string_view>

#include "host/utf8_path.h"

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace fs = std::filesystem;
namespace text = file_write_text;

// ---- Results -------------------------------------------------------------------------------

namespace {

const char* reasonFor(const std::error_code& ec) {
    using std::errc;
    if (ec == errc::permission_denied || ec == errc::operation_not_permitted)
        return text::kNoPermission;
    if (ec == errc::read_only_file_system) return text::kReadOnlyDisk;
    if (ec == errc::no_space_on_device) return text::kDiskFull;
    if (ec == errc::no_such_file_or_directory || ec == errc::not_a_directory)
        return text::kNoFolder;
    if (ec == errc::filename_too_long) return text::kNameTooLong;
    if (ec == errc::io_error) return text::kIoError;
    if (ec == errc::is_a_directory) return text::kNotAFile;
    return nullptr;
}

}  // namespace

std::string FileWriteResult::message() const {
    if (ok) return {};
    const std::string_view pattern = text::kCannotSave;
    const std::string fills[] = {pathUtf8(file), reason};
    std::string out;
    std::size_t from = 0;
    for (const auto& fill : fills) {
        const std::size_t at = pattern.find("%s", from);
        out.append(pattern.substr(from, at - from)).append(fill);
        from = at + 2;
    }
    return out.append(pattern.substr(from));
}

FileWriteResult FileWriteResult::failure(fs::path file, std::error_code error) {
    FileWriteResult r;
    r.ok = false;
    r.file = std::move(file);
    const char* reason = reasonFor(error);
    r.reason = reason ? reason : error.message();
    r.error = error;
    return r;
}

FileWriteResult FileWriteResult::failure(fs::path file, const char* reason) {
    FileWriteResult r;
    r.ok = false;
    r.file = std::move(file);
    r.reason = reason;
    return r;
}

// ---- Shared steps --------------------------------------------------------------------------

namespace {

// The file a chain of symbolic links ends at (it may not exist yet).
fs::path resolveTarget(const fs::path& path) {
    fs::path p = path;
    for (int hops = 0; hops < 40; ++hops) {
        std::error_code ec;
        if (!fs::is_symlink(fs::symlink_status(p, ec))) return p;
        fs::path to = fs::read_symlink(p, ec);
        if (ec) return p;
        p = to.is_absolute() ? to : p.parent_path() / to;
    }
    return p;
}

fs::path withSuffix(const fs::path& target, std::string_view suffix) {
    fs::path p = target;
    p += fs::path(std::string(suffix));
    return p;
}

// "<name>.~<pid>-<serial>-<random>.tmp": unique across processes and threads, so a leftover
// of any kind under any name never stands in the way.
fs::path uniqueTempName(const fs::path& target, long pid) {
    static std::atomic<unsigned> serial{0};
    static const unsigned salt = std::random_device{}();
    return withSuffix(target, ".~" + std::to_string(pid) + "-" + std::to_string(serial++) + "-" +
                                  std::to_string(salt) + ".tmp");
}

// Removes what killed writers left. Only called under the lock: every writer holds it while
// its temporary exists, so any temporary seen now is a leftover. Folders are removed only
// when empty; whatever cannot be removed is simply left.
void removeLeftoverTemps(const fs::path& target) {
    const fs::path prefixPath = withSuffix(target.filename(), ".~");
    const fs::path suffixPath = ".tmp";
    const auto& prefix = prefixPath.native();
    const auto& suffix = suffixPath.native();
    std::error_code ec;
    const fs::path dir = target.has_parent_path() ? target.parent_path() : fs::path(".");
    for (fs::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec)) {
        const fs::path namePath = it->path().filename();
        const auto& name = namePath.native();
        if (name.size() > prefix.size() + suffix.size() &&
            name.compare(0, prefix.size(), prefix) == 0 &&
            name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0) {
            std::error_code ignored;
            fs::remove(it->path(), ignored);
        }
    }
}

}  // namespace

// ---- The platform's part -------------------------------------------------------------------

#ifdef _WIN32

namespace {

std::error_code lastError() {
    return {static_cast<int>(GetLastError()), std::system_category()};
}

class FileLock {
public:
    std::error_code acquire(const fs::path& lockPath) {
        m_handle = CreateFileW(lockPath.c_str(), GENERIC_READ | GENERIC_WRITE,
                               FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                               OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (m_handle == INVALID_HANDLE_VALUE) return lastError();
        OVERLAPPED whole{};
        if (!LockFileEx(m_handle, LOCKFILE_EXCLUSIVE_LOCK, 0, MAXDWORD, MAXDWORD, &whole))
            return lastError();
        m_locked = true;
        return {};
    }
    ~FileLock() {
        if (m_handle == INVALID_HANDLE_VALUE) return;
        if (m_locked) {
            OVERLAPPED whole{};
            UnlockFileEx(m_handle, 0, MAXDWORD, MAXDWORD, &whole);
        }
        CloseHandle(m_handle);
    }

private:
    HANDLE m_handle = INVALID_HANDLE_VALUE;
    bool m_locked = false;
};

std::optional<FileWriteResult> checkTarget(const fs::path& target) {
    const DWORD attributes = GetFileAttributesW(target.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        const DWORD error = GetLastError();
        if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) return std::nullopt;
        return FileWriteResult::failure(target, lastError());
    }
    if (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE))
        return FileWriteResult::failure(target, text::kNotAFile);
    if (attributes & FILE_ATTRIBUTE_READONLY)
        return FileWriteResult::failure(target, text::kReadOnlyFile);
    return std::nullopt;
}

FileWriteResult writeAndReplace(const fs::path& target, const std::string& data) {
    fs::path temp;
    HANDLE h = INVALID_HANDLE_VALUE;
    for (int attempt = 0; attempt < 100 && h == INVALID_HANDLE_VALUE; ++attempt) {
        temp = uniqueTempName(target, static_cast<long>(GetCurrentProcessId()));
        h = CreateFileW(temp.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                        nullptr);
        const DWORD error = GetLastError();
        if (h == INVALID_HANDLE_VALUE && error != ERROR_FILE_EXISTS &&
            error != ERROR_ALREADY_EXISTS && error != ERROR_ACCESS_DENIED)
            break;
    }
    if (h == INVALID_HANDLE_VALUE) return FileWriteResult::failure(target, lastError());

    std::size_t done = 0;
    bool good = true;
    while (good && done < data.size()) {
        DWORD written = 0;
        const DWORD chunk = static_cast<DWORD>(std::min<std::size_t>(data.size() - done, 1u << 20));
        good = WriteFile(h, data.data() + done, chunk, &written, nullptr) != 0;
        done += written;
    }
    good = good && FlushFileBuffers(h);
    std::error_code error = good ? std::error_code{} : lastError();
    CloseHandle(h);
    if (good) {
        // A reader that has the file open without sharing deletion holds up the rename for
        // the moment it reads; try again briefly.
        for (int attempt = 0; attempt < 50; ++attempt) {
            if (MoveFileExW(temp.c_str(), target.c_str(),
                            MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
                return {};
            const DWORD e = GetLastError();
            error = lastError();
            if (e != ERROR_ACCESS_DENIED && e != ERROR_SHARING_VIOLATION &&
                e != ERROR_LOCK_VIOLATION)
                break;
            Sleep(10);
        }
    }
    DeleteFileW(temp.c_str());
    return FileWriteResult::failure(target, error);
}

}  // namespace

#else

namespace {

std::error_code errnoCode(int e) {
    return {e, std::generic_category()};
}

class FileLock {
public:
    std::error_code acquire(const fs::path& lockPath) {
        m_fd = ::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        if (m_fd < 0) {
            // A lock file that exists but is not writable still locks.
            const int first = errno;
            m_fd = ::open(lockPath.c_str(), O_RDONLY | O_CLOEXEC);
            if (m_fd < 0) return errnoCode(first);
        }
        while (::flock(m_fd, LOCK_EX) != 0)
            if (errno != EINTR) return errnoCode(errno);
        return {};
    }
    // Closing the descriptor releases the lock.
    ~FileLock() {
        if (m_fd >= 0) ::close(m_fd);
    }

private:
    int m_fd = -1;
};

struct ExistingFile {
    mode_t mode;
    uid_t uid;
    gid_t gid;
};

// Refuses what the platform would not write; tells the mode and owner to keep.
std::optional<FileWriteResult> checkTarget(const fs::path& target,
                                           std::optional<ExistingFile>& existing) {
    struct stat st {};
    if (::stat(target.c_str(), &st) != 0) {
        if (errno == ENOENT) return std::nullopt;
        return FileWriteResult::failure(target, errnoCode(errno));
    }
    if (!S_ISREG(st.st_mode)) return FileWriteResult::failure(target, text::kNotAFile);
    // No write bit at all is the read-only attribute; checked apart from access() because
    // a privileged user passes access() for any file.
    if ((st.st_mode & 0222) == 0) return FileWriteResult::failure(target, text::kReadOnlyFile);
    if (::access(target.c_str(), W_OK) != 0)
        return FileWriteResult::failure(target, errnoCode(errno));
    existing = ExistingFile{st.st_mode & 07777, st.st_uid, st.st_gid};
    return std::nullopt;
}

bool writeAll(int fd, const std::string& data) {
    std::size_t done = 0;
    while (done < data.size()) {
        const ssize_t n = ::write(fd, data.data() + done, data.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        done += static_cast<std::size_t>(n);
    }
    return true;
}

FileWriteResult writeAndReplace(const fs::path& target, const std::string& data,
                                const std::optional<ExistingFile>& existing) {
    const mode_t createMode = existing ? (existing->mode & 0777) : 0666;
    fs::path temp;
    int fd = -1;
    for (int attempt = 0; attempt < 100 && fd < 0; ++attempt) {
        temp = uniqueTempName(target, static_cast<long>(::getpid()));
        fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, createMode);
        if (fd < 0 && errno != EEXIST) break;
    }
    if (fd < 0) return FileWriteResult::failure(target, errnoCode(errno));
    if (existing) {
        // Keep the file's owner and exact mode; only a privileged writer can give a file
        // away, so a failure here is expected and harmless.
        if (::fchown(fd, existing->uid, existing->gid) != 0) { /* keep ours */
        }
        ::fchmod(fd, existing->mode);
    }

    bool good = writeAll(fd, data) && ::fsync(fd) == 0;
    int error = good ? 0 : errno;
    if (::close(fd) != 0 && good) {
        good = false;
        error = errno;
    }
    if (good && ::rename(temp.c_str(), target.c_str()) != 0) {
        good = false;
        error = errno;
    }
    if (!good) {
        ::unlink(temp.c_str());
        return FileWriteResult::failure(target, errnoCode(error));
    }
    // The rename lives in the folder: flush it too, so the new name survives a power cut.
    const fs::path dir = target.has_parent_path() ? target.parent_path() : fs::path(".");
    const int dirFd = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dirFd >= 0) {
        ::fsync(dirFd);
        ::close(dirFd);
    }
    return {};
}

}  // namespace

#endif

// ---- The whole save ------------------------------------------------------------------------

FileWriteResult replaceFileLocked(
    const fs::path& path,
    const std::function<std::optional<std::string>(const fs::path& target)>& compose) {
    if (path.empty()) return FileWriteResult::failure(path, text::kNoPath);
    const fs::path target = resolveTarget(path);
    if (target.has_parent_path()) {
        std::error_code ec;
        fs::create_directories(target.parent_path(), ec);
        if (ec) return FileWriteResult::failure(target, ec);
    }

    FileLock lock;
    if (auto ec = lock.acquire(withSuffix(target, ".lock")))
        return FileWriteResult::failure(target, ec);
#ifdef _WIN32
    if (auto refused = checkTarget(target)) return *refused;
#else
    std::optional<ExistingFile> existing;
    if (auto refused = checkTarget(target, existing)) return *refused;
#endif
    removeLeftoverTemps(target);

    const std::optional<std::string> data = compose(target);
    if (!data) return FileWriteResult::failure(target, text::kCannotRead);
#ifdef _WIN32
    return writeAndReplace(target, *data);
#else
    return writeAndReplace(target, *data, existing);
#endif
}
