// A database that is being made.
#pragma once

#include <memory>
#include <string>

#include "jet/define/Writer.h"

namespace tavrel::jet {

/// Removes the file at the end of its life unless it was kept: nothing half-made stays beside the user's files.
class UnfinishedFile {
  public:
    explicit UnfinishedFile(std::string path) : path_(std::move(path)) {}
    ~UnfinishedFile();
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;
    void Keep() { path_.clear(); }
    /// Empty when it is kept.
    [[nodiscard]] const std::string& Path() const { return path_; }

  private:
    std::string path_;  ///< empty = keep
};

struct Creation {
    explicit Creation(const std::string& path) : file(path) {}
    UnfinishedFile file;
    std::unique_ptr<TableEdits> edits;
    std::unique_ptr<Writer> writer;
};

}  // namespace tavrel::jet
