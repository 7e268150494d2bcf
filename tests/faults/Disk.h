// A disk as the system promises it to be: what was synced lasts, everything else may be lost with the power,
// or not, in any order.
#pragma once

#include <map>
#include <random>
#include <string>
#include <vector>

#include "Folder.h"

namespace tavrel::testing {

/// A call that the fault library has recorded.
struct RecordedCall {
    std::string name;
    int number = 0;  ///< descriptor
    long long position = 0;
    std::string bytes;  ///< or a path
};

std::vector<RecordedCall> ReadRecord(const std::string& file);

/// What becomes of changes that were not synced.
enum class Unsynced { Lost, Kept, Some };

class Disk {
  public:
    /// `root` ends with "/"; `content` lasts.
    Disk(std::string root, const FolderContent& content);
    void Apply(const RecordedCall& call);
    /// What a power loss leaves now.
    [[nodiscard]] FolderContent AfterPowerLoss(Unsynced data, Unsynced names, std::mt19937& random) const;

  private:
    struct Write {
        long long position = 0;
        std::string bytes;
        bool truncates = false;
    };
    struct Node {
        bool folder = false;
        std::string path = {};   ///< of a folder
        std::string bytes = {};  ///< those that last
        std::vector<Write> writes = {};
    };
    using Names = std::map<std::string, std::size_t>;
    struct Renaming {
        std::string from;  ///< empty: made
        std::string to;    ///< empty: removed
        std::size_t node = 0;
    };

    void Change(const Renaming& renaming);
    void Open(int descriptor, const std::string& path);
    void Sync(Node& node);
    static void Carry(Names& names, const Renaming& renaming);
    static void Carry(std::string& bytes, const Write& write);

    std::string root_;
    std::string from_;
    std::vector<Node> nodes_;
    std::map<int, std::size_t> open_;
    Names lasting_;
    Names present_;
    std::vector<Renaming> renamings_;
};

}  // namespace tavrel::testing
