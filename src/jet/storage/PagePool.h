// Memory for pages that come and go: every statement that changes a page keeps what the page was, and lets it
// go at its end.
#pragma once

#include <memory>
#include <vector>

#include "jet/storage/Bytes.h"

namespace tavrel::jet {

/// Gives out pages and takes their memory back when the last holder lets go, which may be after the pool's
/// end.  Not for use from several threads at once.
class PagePool {
  public:
    /// A page whose content is undefined.
    [[nodiscard]] std::shared_ptr<Page> Take() {
        return std::allocate_shared_for_overwrite<Page>(Allocator<Page>(blocks_));
    }
    [[nodiscard]] std::shared_ptr<Page> Copy(const Page& page) {
        std::shared_ptr<Page> copy = Take();
        *copy = page;
        return copy;
    }

  private:
    /// Blocks of the one size that all pages with their counts have.
    class Blocks {
      public:
        Blocks() { free_.reserve(kMost); }
        ~Blocks() {
            for (void* block : free_) {
                ::operator delete(block);
            }
        }
        Blocks(const Blocks&) = delete;
        Blocks& operator=(const Blocks&) = delete;

        void* Take(std::size_t bytes) {
            if (free_.empty()) {
                return ::operator new(bytes);
            }
            void* block = free_.back();
            free_.pop_back();
            return block;
        }
        void Return(void* block) noexcept {
            if (free_.size() < kMost) {
                free_.push_back(block);
            } else {
                ::operator delete(block);
            }
        }

      private:
        static constexpr std::size_t kMost = 4096;
        std::vector<void*> free_;
    };

    template <typename T>
    struct Allocator {
        using value_type = T;
        explicit Allocator(std::shared_ptr<Blocks> from) : blocks(std::move(from)) {}
        template <typename U>
        Allocator(const Allocator<U>& other) : blocks(other.blocks) {}  // NOLINT: allocators convert
        T* allocate(std::size_t count) { return static_cast<T*>(blocks->Take(count * sizeof(T))); }
        void deallocate(T* block, std::size_t /*count*/) noexcept { blocks->Return(block); }
        template <typename U>
        bool operator==(const Allocator<U>& other) const {
            return blocks == other.blocks;
        }
        std::shared_ptr<Blocks> blocks;
    };

    std::shared_ptr<Blocks> blocks_ = std::make_shared<Blocks>();
};

}  // namespace tavrel::jet
