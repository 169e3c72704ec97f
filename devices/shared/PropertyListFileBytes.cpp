// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/PropertyListFileBytes.h"

#include "devices/words/Text.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace hushmode::devices {

namespace {

using Failure = std::optional<std::string>;

/// An open file, closed at the latest when it goes.
class OpenFile {
 public:
  OpenFile(FileCalls& calls, const std::string& path, int flags, mode_t mode = 0)
      : calls_(calls), file_(calls.open(path.c_str(), flags | O_CLOEXEC, mode)) {}
  ~OpenFile() {
    if (*this) close();
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  explicit operator bool() const { return file_ != -1; }
  int number() const { return file_; }
  int close() {
    const int file = file_;
    file_ = -1;
    return calls_.close(file);
  }

 private:
  FileCalls& calls_;
  int file_;
};

/// A name that is removed when it goes, unless it was kept.
class TemporaryName {
 public:
  TemporaryName(FileCalls& calls, std::string path) : calls_(calls), path_(std::move(path)) {}
  ~TemporaryName() {
    if (!isKept_) calls_.unlink(path_.c_str());
  }
  TemporaryName(const TemporaryName&) = delete;
  TemporaryName& operator=(const TemporaryName&) = delete;
  void keep() { isKept_ = true; }

 private:
  FileCalls& calls_;
  std::string path_;
  bool isKept_ = false;
};

std::string folderOf(const std::string& path) {
  const auto folder = std::filesystem::path(path).parent_path().string();
  return folder.empty() ? "." : folder;
}

/// Makes `folder` and those above it that are missing, open to the user alone.
Failure makeFolders(const std::filesystem::path& folder) {
  std::error_code error;
  if (folder.empty() || std::filesystem::is_directory(folder, error)) return std::nullopt;
  if (auto failure = makeFolders(folder.parent_path())) return failure;
  if (::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST) return std::nullopt;
  return systemFailure(tr("cannot make the folder {}", folder.string()));
}

/// Path of a new name in `folder`. Another process may be about to use the same: whoever creates it first has it.
std::string temporaryPath(const std::string& folder, int attempt) {
  return folder + "/.hushmode-" + std::to_string(::getpid()) + "-" + std::to_string(attempt) + ".new";
}

/// Gives `made` mode and owner of the file at `model`. One that is not there has none to give.
Failure copyAttributes(FileCalls& calls, const std::string& model, const OpenFile& made) {
  const OpenFile file(calls, model, O_PATH);
  if (!file) return errno == ENOENT ? std::nullopt : Failure(systemFailure(tr("cannot open the old file")));
  struct stat old {};
  struct stat fresh {};
  if (calls.fstat(file.number(), &old) != 0 || calls.fstat(made.number(), &fresh) != 0) {
    return systemFailure(tr("cannot find out the old file's mode"));
  }
  // Only the superuser may give files away; for others the file belongs to whoever writes it.
  if (old.st_uid != fresh.st_uid || old.st_gid != fresh.st_gid) {
    static_cast<void>(calls.fchown(made.number(), old.st_uid, old.st_gid) == 0);
  }
  if (calls.fchmod(made.number(), old.st_mode & 07777) != 0) return systemFailure(tr("cannot set the new file's mode"));
  return std::nullopt;
}

Failure writeAll(FileCalls& calls, const OpenFile& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = calls.write(file.number(), bytes.data(), bytes.size());
    if (written < 0) return systemFailure(tr("cannot write the new file"));
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return std::nullopt;
}

}  // namespace

std::string systemFailure(std::string_view what) {
  return std::string(what) + ": " + std::generic_category().message(errno);
}

FileBytes readFileBytes(FileCalls& calls, const std::string& path, std::size_t limit) {
  using State = FileBytes::State;
  // Without waiting for the other end, should it be a pipe.
  const OpenFile file(calls, path, O_RDONLY | O_NONBLOCK);
  if (!file) {
    if (errno == ENOENT || errno == ENOTDIR) return {State::Missing, {}, {}};
    return {State::Unreadable, {}, systemFailure(tr("cannot open the file"))};
  }
  struct stat status {};
  if (calls.fstat(file.number(), &status) != 0)
    return {State::Unreadable, {}, systemFailure(tr("cannot read the file"))};
  if (!S_ISREG(status.st_mode)) return {State::Unreadable, {}, tr("expected a regular file")};
  const auto size = static_cast<std::size_t>(status.st_size);
  const std::string tooLarge = tr("expected at most {} bytes, found more", limit);
  if (size > limit) return {State::Unreadable, {}, tooLarge};

  // One byte more than it should have, to see its end; a file that grows meanwhile is read on.
  std::string bytes(size + 1, '\0');
  for (std::size_t filled = 0;;) {
    const ssize_t got = calls.read(file.number(), bytes.data() + filled, bytes.size() - filled);
    if (got < 0) return {State::Unreadable, {}, systemFailure(tr("cannot read the file"))};
    filled += static_cast<std::size_t>(got);
    if (filled > limit) return {State::Unreadable, {}, tooLarge};
    if (got == 0) {
      bytes.resize(filled);
      return {State::Read, std::move(bytes), {}};
    }
    if (filled == bytes.size()) bytes.resize(2 * filled);
  }
}

std::string withoutLinks(const std::string& path) {
  constexpr int kLongestChain = 40;
  std::filesystem::path at = path;
  for (int i = 0; i < kLongestChain; ++i) {
    std::error_code error;
    const auto target = std::filesystem::read_symlink(at, error);
    if (error) return at.string();
    at = at.parent_path() / target;  // An absolute target stands for itself.
  }
  return path;
}

Failure syncFolderOf(FileCalls& calls, const std::string& path) {
  const OpenFile folder(calls, folderOf(path), O_RDONLY | O_DIRECTORY);
  if (!folder) return systemFailure(tr("cannot open the folder"));
  // Some file systems cannot sync folders, and say so with EINVAL.
  if (calls.fsync(folder.number()) != 0 && errno != EINVAL) return systemFailure(tr("cannot sync the folder"));
  return std::nullopt;
}

Failure replaceFileBytes(FileCalls& calls, const std::string& path, std::string_view bytes, const std::string* model) {
  const std::string target = withoutLinks(path);
  if (auto failure = makeFolders(std::filesystem::path(target).parent_path())) return failure;

  constexpr int kMostNames = 100;
  for (int attempt = 0; attempt < kMostNames; ++attempt) {
    const std::string temporary = temporaryPath(folderOf(target), attempt);
    OpenFile file(calls, temporary, O_WRONLY | O_CREAT | O_EXCL, 0600);
    if (!file && errno == EEXIST) continue;
    if (!file) return systemFailure(tr("cannot make a new file"));
    TemporaryName name(calls, temporary);
    if (auto failure = writeAll(calls, file, bytes)) return failure;
    if (auto failure = copyAttributes(calls, model ? *model : target, file)) return failure;
    if (calls.fsync(file.number()) != 0) return systemFailure(tr("cannot sync the new file"));
    if (file.close() != 0) return systemFailure(tr("cannot close the new file"));
    if (calls.rename(temporary.c_str(), target.c_str()) != 0)
      return systemFailure(tr("cannot put the new file in place"));
    name.keep();
    return syncFolderOf(calls, target);
  }
  return tr("cannot make a new file: too many were left behind in the folder");
}

}  // namespace hushmode::devices
