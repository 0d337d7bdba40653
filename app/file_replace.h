// Replacing a small settings file so that no writer, crash or kill can lose it.
//
// Several processes (the host, its add-ins, the desk) write the same Profile.ini, each by
// reading it, changing some keys and writing it back. Two things keep that safe:
// - A per-file lock across processes ("<name>.lock" beside the file; flock on POSIX,
//   LockFileEx on Windows) is held from the read to the moment the new content is in place,
//   so no writer ever works on a stale copy and no update is lost.
// - The new content goes to a temporary file with a unique name in the same folder, is
//   flushed to disk, and is renamed over the file; the folder is flushed after the rename.
//   A reader sees the old file or the new one, never a half-written or empty one, and a kill
//   at any moment leaves one of the two.
// Temporaries left by a killed writer are removed by the next writer (under the lock no
// other writer can own one) and never block a save, whatever they are.
//
// The file is never replaced when the platform would not write it either: a read-only
// file, or a name that is a folder or other non-file. A symbolic link is followed and the
// file it names is replaced, so the link stays a link.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <system_error>

// Texts of failed saves, ready for a message or a log.
namespace file_write_text {
// The whole message: the file's path and the reason.
inline constexpr const char* kCannotSave = "无法保存设置文件 %s：%s。本次修改只在舵手关闭前有效。";
inline constexpr const char* kReadOnlyFile = "文件是只读的";
inline constexpr const char* kNotAFile = "同名的文件夹或其他对象已存在";
inline constexpr const char* kCannotRead = "无法读取文件现有的内容";
inline constexpr const char* kNoPermission = "没有写入权限";
inline constexpr const char* kReadOnlyDisk = "磁盘是只读的";
inline constexpr const char* kDiskFull = "磁盘空间不足";
inline constexpr const char* kNoFolder = "所在的文件夹不存在，也无法创建";
inline constexpr const char* kNameTooLong = "路径太长";
inline constexpr const char* kIoError = "磁盘读写出错";
inline constexpr const char* kNoPath = "没有指定文件";
}  // namespace file_write_text

// The outcome of a save: ok, or which file and why.
struct FileWriteResult {
    bool ok = true;
    std::filesystem::path file;  // the file that could not be written
    std::error_code error;       // the system's error, when there was one
    std::string reason;          // why, in Chinese (see file_write_text)

    explicit operator bool() const { return ok; }
    // The full Chinese message (file_write_text::kCannotSave); empty when ok.
    std::string message() const;

    static FileWriteResult failure(std::filesystem::path file, std::error_code error);
    static FileWriteResult failure(std::filesystem::path file, const char* reason);
};

// Replaces the file at `path` with the bytes `compose` returns. `compose` runs under the
// file's lock and gets the path of the real file (symbolic links followed) so it can re-read
// the current content there; it returns nullopt when that content cannot be read, and the
// file is then left alone. Missing parent folders are created. Never throws (allocation
// failure aside).
FileWriteResult replaceFileLocked(
    const std::filesystem::path& path,
    const std::function<std::optional<std::string>(const std::filesystem::path& target)>& compose);
