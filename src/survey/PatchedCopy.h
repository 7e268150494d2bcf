// A copy of one database, brought to the latest version of a product, for as long as it is looked at.
#pragma once

#include <string>

#include "compare/Products.h"

namespace tavrel::survey {

/// A folder of its own for temporary files, gone with the object.
class CopiesFolder {
  public:
    /// Throws Error when it cannot be made.
    CopiesFolder();
    ~CopiesFolder();
    CopiesFolder(const CopiesFolder&) = delete;
    CopiesFolder& operator=(const CopiesFolder&) = delete;

    /// Where a file of that name would lie.
    [[nodiscard]] std::string File(const std::string& name) const;

  private:
    std::string path_;
};

class PatchedCopy {
  public:
    /// Copies `original`, which is opened for reading only, and patches the copy.  From any thread: one copy
    /// is patched at a time.  Throws Error, and Failure when a patch fails.
    PatchedCopy(const CopiesFolder& folder, const std::string& name, const std::string& original,
                const std::string& password, const compare::Product& product);
    ~PatchedCopy();
    PatchedCopy(const PatchedCopy&) = delete;
    PatchedCopy& operator=(const PatchedCopy&) = delete;

    [[nodiscard]] const std::string& Path() const { return path_; }

  private:
    void Remove() const;

    std::string path_;
};

}  // namespace tavrel::survey
