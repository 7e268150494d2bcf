#include "jet/storage/SharedFile.h"

#include <algorithm>
#include <filesystem>
#include <list>
#include <map>
#include <mutex>

#include "jet/storage/Bytes.h"

namespace tavrel::jet {

namespace {

class View;

/// The open file and who looks at it.
struct HeldFile {
    std::unique_ptr<platform::File> file;
    std::filesystem::path path;
    std::list<View*> views;
};

/// One at a time: threads with databases of their own may hold and look for files all the same.
std::mutex& HeldFilesInUse() {
    static std::mutex inUse;
    return inUse;
}

/// Files that are held; those that are gone are taken out when the next one comes.
std::list<std::weak_ptr<HeldFile>>& HeldFiles() {
    static std::list<std::weak_ptr<HeldFile>> files;
    return files;
}

std::filesystem::path PathOf(const std::string& utf8) {
    return {std::u8string(utf8.begin(), utf8.end())};
}

class View final : public platform::File {
  public:
    explicit View(std::shared_ptr<HeldFile> held) : held_(std::move(held)), size_(held_->file->Size()) {
        held_->views.push_back(this);
    }
    ~View() override { held_->views.remove(this); }
    View(const View&) = delete;
    View& operator=(const View&) = delete;

    std::uint64_t Size() override { return size_; }

    void ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
        if (offset > size_ || out.size() > size_ - offset) {
            throw MakeError(errors::kDeviceFault, {}, "파일의 끝");
        }
        while (!out.empty()) {
            const std::size_t inBlock = offset % kPageSize;
            const std::size_t length = std::min(out.size(), kPageSize - inBlock);
            const auto kept = kept_.find(offset / kPageSize);
            if (kept == kept_.end()) {
                held_->file->ReadAt(offset, out.first(length));
            } else {
                std::ranges::copy(Slice(kept->second, inBlock, length), out.begin());
            }
            out = out.subspan(length);
            offset += length;
        }
    }

    void WriteAt(std::uint64_t /*offset*/, std::span<const std::uint8_t> /*bytes*/) override { Refuse(); }
    void Truncate(std::uint64_t /*size*/) override { Refuse(); }
    void Sync() override {}

    /// What stands there is about to go.
    void Keep(std::uint64_t from, std::uint64_t end) {
        for (std::uint64_t block = from / kPageSize; block * kPageSize < std::min(end, size_); ++block) {
            if (!kept_.contains(block)) {
                ByteVector bytes(std::min<std::uint64_t>(kPageSize, size_ - block * kPageSize));
                held_->file->ReadAt(block * kPageSize, bytes);
                kept_.emplace(block, std::move(bytes));
            }
        }
    }

  private:
    [[noreturn]] static void Refuse() { throw MakeError(errors::kReadOnly); }

    std::shared_ptr<HeldFile> held_;
    std::uint64_t size_;
    std::map<std::uint64_t, ByteVector> kept_;  ///< old content by block of a page's size
};

class SharedFile final : public platform::File {
  public:
    explicit SharedFile(std::shared_ptr<HeldFile> held) : held_(std::move(held)) {}

    std::uint64_t Size() override { return held_->file->Size(); }
    void ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
        held_->file->ReadAt(offset, out);
    }
    void WriteAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) override {
        KeepForViews(offset, offset + bytes.size());
        held_->file->WriteAt(offset, bytes);
    }
    void Truncate(std::uint64_t size) override {
        KeepForViews(size, held_->file->Size());
        held_->file->Truncate(size);
    }
    void Sync() override { held_->file->Sync(); }

  private:
    void KeepForViews(std::uint64_t from, std::uint64_t end) {
        for (View* view : held_->views) {
            view->Keep(from, end);
        }
    }

    std::shared_ptr<HeldFile> held_;
};

}  // namespace

std::unique_ptr<platform::File> ShareWithReaders(std::unique_ptr<platform::File> file,
                                                 const std::string& path) {
    auto held = std::make_shared<HeldFile>();
    held->file = std::move(file);
    held->path = std::filesystem::absolute(PathOf(path));
    const std::lock_guard<std::mutex> lock(HeldFilesInUse());
    HeldFiles().remove_if([](const std::weak_ptr<HeldFile>& other) { return other.expired(); });
    HeldFiles().push_back(held);
    return std::make_unique<SharedFile>(std::move(held));
}

std::unique_ptr<platform::File> OpenView(const std::string& path) {
    const std::lock_guard<std::mutex> lock(HeldFilesInUse());
    for (const std::weak_ptr<HeldFile>& known : HeldFiles()) {
        std::error_code gone;  // a file that is there under neither name is not the same one
        std::shared_ptr<HeldFile> held = known.lock();
        if (held && std::filesystem::equivalent(held->path, PathOf(path), gone)) {
            return std::make_unique<View>(std::move(held));
        }
    }
    return nullptr;
}

}  // namespace tavrel::jet
