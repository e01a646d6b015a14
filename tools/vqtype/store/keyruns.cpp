#include "keyruns.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "../error.h"
#include "../files.h"
#include "../text.h"

namespace store {
namespace {

constexpr std::size_t BufferSize = std::size_t{1} << 18;
constexpr std::size_t LengthSize = 2, MostKey = LengthSize + 0xFFFF;

std::uint16_t LengthAt(const unsigned char* at) {
    std::uint16_t length;
    std::memcpy(&length, at, LengthSize);
    return length;
}

}  // namespace

// Reads a run key by key.
class KeyRuns::Reader {
  public:
    Reader(const KeyRuns& runs, const Run& run) : runs_(&runs), run_(run) { Fill(); }

    bool IsAtEnd() const { return at_ == buffer_.size(); }
    ByteView Key() const { return ByteView(buffer_).subspan(at_ + LengthSize, LengthAt(&buffer_[at_])); }
    void Next() {
        at_ += LengthSize + Key().size();
        const std::size_t left = buffer_.size() - at_;
        if (run_.start != run_.end && (left < LengthSize || left < LengthSize + LengthAt(&buffer_[at_]))) Fill();
    }

  private:
    void Fill() {
        buffer_.erase(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(at_));
        at_ = 0;
        const std::size_t had = buffer_.size();
        const std::size_t more = std::min<std::uint64_t>(run_.end - run_.start, std::max(BufferSize, MostKey));
        buffer_.resize(had + more);
        runs_->Read(run_.start, buffer_.data() + had, more);
        run_.start += more;
    }

    const KeyRuns* runs_;
    Run run_;  // what has not been read
    Bytes buffer_;
    std::size_t at_ = 0;
};

KeyRuns::~KeyRuns() {
    if (file_ >= 0) ::close(file_);
}

void KeyRuns::Fail(const char* doing) const {
    throw CommandError("{}: {} a temporary file beside it: {}", Printable(store_), doing, std::strerror(errno));
}

void KeyRuns::Open() {
    std::string name = NameOf(std::filesystem::absolute(PathOf(store_))) + ".keys-XXXXXX";
    file_ = ::mkostemp(name.data(), O_CLOEXEC);
    if (file_ < 0) Fail("making");
    ::unlink(name.c_str());
}

void KeyRuns::Start() {
    if (file_ < 0) Open();
    runs_.push_back({written_, written_});
}

void KeyRuns::Add(ByteView key) {
    const auto length = static_cast<std::uint16_t>(key.size());
    const auto* const bytes = reinterpret_cast<const unsigned char*>(&length);
    buffer_.insert(buffer_.end(), bytes, bytes + LengthSize);
    Append(buffer_, key);
    if (buffer_.size() >= BufferSize) Write();
}

void KeyRuns::End() {
    Write();
    runs_.back().end = written_;
    Bytes().swap(buffer_);
}

void KeyRuns::Write() {
    for (std::size_t done = 0; done < buffer_.size();) {
        const ssize_t count =
            ::pwrite(file_, buffer_.data() + done, buffer_.size() - done, static_cast<off_t>(written_));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) Fail("writing");
        done += static_cast<std::size_t>(count);
        written_ += static_cast<std::uint64_t>(count);
    }
    buffer_.clear();
}

void KeyRuns::Read(std::uint64_t at, unsigned char* to, std::size_t size) const {
    while (size != 0) {
        const ssize_t count = ::pread(file_, to, size, static_cast<off_t>(at));
        if (count < 0 && errno == EINTR) continue;
        if (count == 0) errno = EIO;
        if (count <= 0) Fail("reading");
        at += static_cast<std::uint64_t>(count);
        to += count;
        size -= static_cast<std::size_t>(count);
    }
}

void KeyRuns::Merge(const std::function<bool(ByteView, ByteView)>& isBefore,
                    const std::function<void(ByteView)>& take) {
    std::vector<Reader> readers;
    for (const Run& run : runs_) readers.emplace_back(*this, run);
    std::erase_if(readers, [](const Reader& reader) { return reader.IsAtEnd(); });
    std::vector<std::size_t> heap;  // the reader with the least key is on top
    const auto isBehind = [&](std::size_t a, std::size_t b) {
        if (isBefore(readers[b].Key(), readers[a].Key())) return true;
        return a > b && !isBefore(readers[a].Key(), readers[b].Key());
    };
    for (std::size_t i = 0; i < readers.size(); ++i) heap.push_back(i);
    std::make_heap(heap.begin(), heap.end(), isBehind);
    while (!heap.empty()) {
        std::pop_heap(heap.begin(), heap.end(), isBehind);
        Reader& least = readers[heap.back()];
        take(least.Key());
        least.Next();
        if (least.IsAtEnd()) {
            heap.pop_back();
        } else {
            std::push_heap(heap.begin(), heap.end(), isBehind);
        }
    }
}

}  // namespace store
