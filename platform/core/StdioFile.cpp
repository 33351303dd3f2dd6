// SPDX-License-Identifier: MIT
#include "platform/core/StdioFile.h"

#include <cerrno>
#include <exception>
#include <utility>

#include <sys/stat.h>

namespace tallyscope {

namespace {

bool IsDirectory(std::FILE* file) {
  struct stat status {};
  return ::fstat(::fileno(file), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

CStdioFile::~CStdioFile() {
  if (std::uncaught_exceptions() == exceptions_) CloseFile();
}

bool CStdioFile::Fail(int number) {
  failure_ = CFileException::FromErrno(number, path_);
  return false;
}

bool CStdioFile::OpenFile(const CString& path, OpenMode mode) {
  CloseFile();
  path_ = path;
  failure_ = {};
  writing_ = false;
  exceptions_ = std::uncaught_exceptions();
  const CString native = NativePath(path);
  if (native.find('\0') != CString::npos) return Fail(EINVAL);
  if (mode == modeWrite) {
    writer_ = std::make_unique<CAtomicFile>(native);
    if (writer_->IsGood()) return true;
    const int number = writer_->GetErrorNumber();
    writer_.reset();
    return Fail(number);
  }
  reader_.reset(std::fopen(native.c_str(), mode == modeRead ? "rbe" : "r+be"));
  if (reader_ == nullptr) return Fail(errno);
  if (!IsDirectory(reader_.get())) return true;
  reader_.reset();
  return Fail(EISDIR);
}

bool CStdioFile::OpenText(std::string_view text) {
  CloseFile();
  path_.clear();
  failure_ = {};
  writing_ = false;
  exceptions_ = std::uncaught_exceptions();
  // Without a byte of its own an empty text has no address to read from. A stream to read leaves its memory alone.
  char* const bytes = text.empty() ? nullptr : const_cast<char*>(text.data());
  reader_.reset(::fmemopen(bytes, text.size(), "rb"));
  return reader_ != nullptr || Fail(errno);
}

bool CStdioFile::CloseFile() {
  const auto writer = std::move(writer_);
  std::FILE* const reader = reader_.release();
  const bool closed = reader == nullptr || std::fclose(reader) == 0;
  const int number = errno;
  if (failure_.cause != CFileException::none) return false;
  if (!closed) return Fail(number);
  return writer == nullptr || writer->Commit() || Fail(writer->GetErrorNumber());
}

// A stream has to be positioned between writing and reading.
bool CStdioFile::Turn(bool writing) {
  if (std::exchange(writing_, writing) == writing) return true;
  return std::fseek(reader_.get(), 0, SEEK_CUR) == 0 || Fail(errno);
}

bool CStdioFile::ReadString(CString& line, std::size_t most) {
  line.clear();
  if (reader_ == nullptr || !Turn(false)) return false;
  int next = 0;
  while (line.size() < most) {
    next = ::getc_unlocked(reader_.get());
    if (next == EOF || next == '\n') break;
    line.push_back(static_cast<char>(next));
  }
  if (next == EOF && std::ferror(reader_.get()) != 0) return Fail(errno);
  if (next == EOF && line.empty()) return false;
  if (next == '\n' && line.ends_with('\r')) line.pop_back();
  return true;
}

bool CStdioFile::WriteString(std::string_view text) {
  if (writer_ != nullptr) return writer_->Write(text) || Fail(writer_->GetErrorNumber());
  if (reader_ == nullptr) return Fail(EBADF);
  if (!Turn(true)) return false;
  return std::fwrite(text.data(), 1, text.size(), reader_.get()) == text.size() || Fail(errno);
}

}  // namespace tallyscope
