#include "platform/parser/MappedFile.h"

#include "platform/parser/ParseError.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace TavIec61850Parser {

MappedFile::MappedFile(const std::string& path, Access access) {
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        throw ParseError(path, std::string("cannot open: ") + std::strerror(errno));
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        throw ParseError(path, "not a regular file");
    }
    size_ = static_cast<std::size_t>(st.st_size);
    version_ = {static_cast<std::uint64_t>(st.st_size),
                st.st_mtim.tv_sec * 1'000'000'000LL + st.st_mtim.tv_nsec};
    if (size_ > 0) {
        void* p = ::mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, fd, 0);
        if (p == MAP_FAILED) {
            int err = errno;
            ::close(fd);
            throw ParseError(path, std::string("cannot map: ") + std::strerror(err));
        }
        ::madvise(p, size_, access == Access::Sequential ? MADV_SEQUENTIAL : MADV_NORMAL);
        data_ = static_cast<const std::uint8_t*>(p);
    }
    ::close(fd);
}

MappedFile::~MappedFile() {
    if (data_)
        ::munmap(const_cast<std::uint8_t*>(data_), size_);
}

} // namespace TavIec61850Parser
