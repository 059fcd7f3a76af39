#include "tools/gen/FileSink.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace TavGen {

namespace {
constexpr std::size_t kBufferSize = 4u << 20;

std::runtime_error ioError(const std::string& path, const char* what) {
    return std::runtime_error(path + ": " + what + ": " + std::strerror(errno));
}
} // namespace

FileSink::FileSink(const std::string& path) : path_(path), buffer_(kBufferSize) {
    file_ = std::fopen(path.c_str(), "wb");
    if (file_ == nullptr)
        throw ioError(path, "cannot create the file");
}

FileSink::~FileSink() {
    if (file_ != nullptr)
        std::fclose(file_);
}

void FileSink::write(const std::uint8_t* data, std::size_t size) {
    if (used_ + size > buffer_.size()) {
        drain();
        if (size > buffer_.size()) {
            if (std::fwrite(data, 1, size, file_) != size)
                throw ioError(path_, "write failed");
            return;
        }
    }
    std::memcpy(buffer_.data() + used_, data, size);
    used_ += size;
}

void FileSink::drain() {
    if (used_ > 0 && std::fwrite(buffer_.data(), 1, used_, file_) != used_)
        throw ioError(path_, "write failed");
    used_ = 0;
}

void FileSink::close() {
    drain();
    std::FILE* f = file_;
    file_ = nullptr;
    if (std::fclose(f) != 0)
        throw ioError(path_, "write failed");
}

} // namespace TavGen
