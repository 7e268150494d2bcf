// One of the two engines that do the same work.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace tavrel::bench {

class Contestant {
  public:
    virtual ~Contestant() = default;
    virtual void Execute(const std::string& statement) = 0;
    /// Runs a query and fetches every value of every row; returns the number of rows.
    virtual std::uint64_t Fetch(const std::string& query) = 0;
};

/// Whether a finished transaction is on the medium before the next begins.
enum class Safety { Synced, WrittenOut };

/// A new database at `path` in our format.
std::unique_ptr<Contestant> MakeTavrel(const std::string& path, Safety safety);
/// A new database at `path`; rollback journal (journal_mode DELETE), synchronous FULL or OFF.
std::unique_ptr<Contestant> MakeSqlite(const std::string& path, Safety safety);

}  // namespace tavrel::bench
