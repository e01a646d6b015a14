#include "newfile.h"

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <random>

#include "../error.h"
#include "../files.h"
#include "../text.h"
#include "descriptor.h"

namespace store {
namespace {

[[noreturn]] void Fail(const std::string& name, int code) {
    if (code == EEXIST) throw CommandError("{}: there is a file of this name already", Printable(name));
    throw CommandError("{}: cannot be made: {}", Printable(name), std::strerror(code));
}

}  // namespace

NewFile::NewFile(const std::string& name)
    : name_(name), temporary_(fmt::format("{}.new-{:08x}", name, std::random_device()())) {
    std::error_code ignored;
    if (std::filesystem::exists(std::filesystem::symlink_status(PathOf(name), ignored))) Fail(name, EEXIST);
    const Descriptor file(::open(PathOf(temporary_).c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0666));
    if (file < 0) Fail(name, errno);
}

NewFile::~NewFile() {
    for (const char* end : {"", "-lock"}) ::unlink(PathOf(temporary_ + end).c_str());
}

// Some file systems can give a name that must be free only as a second one.
void NewFile::Keep() {
    const auto from = PathOf(temporary_), to = PathOf(name_);
    int code = ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
    if (code != 0 && (errno == EINVAL || errno == ENOSYS)) code = ::link(from.c_str(), to.c_str());
    if (code != 0) Fail(name_, errno);
}

}  // namespace store
