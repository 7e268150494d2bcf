// Random damage to database files, and everything that reading can do with such a file.  Used by the mutation
// tests and by the fuzz target.
#pragma once

#include <cstdint>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace tavrel::testing {

using FileBytes = std::vector<std::uint8_t>;

/// Changes a file at a few places, the same ones for the same seed on every machine.
class Mutator {
  public:
    explicit Mutator(std::uint32_t seed) : random_(seed) {}

    /// One to four changes; returns what was done.  REQUIRES: at least a page of bytes.
    std::string Mutate(FileBytes& file);

    // The single changes.
    std::string FlipBytes(FileBytes& file);
    std::string OverwriteNumber(FileBytes& file);
    std::string CrossLink(FileBytes& file);
    std::string SwapPages(FileBytes& file);
    std::string CopyPage(FileBytes& file);
    std::string FillPage(FileBytes& file);
    std::string Truncate(FileBytes& file);

  private:
    std::uint32_t Below(std::size_t limit) { return random_() % static_cast<std::uint32_t>(limit); }
    std::size_t PickPage(const FileBytes& file);
    std::size_t PickUsedByte(const FileBytes& file);
    std::vector<std::size_t> Links(const FileBytes& file, std::size_t page, unsigned shift) const;

    std::mt19937 random_;
};

struct Exercise {
    std::size_t answers = 0;   ///< rows, entries and descriptions that were read
    std::size_t errors = 0;    ///< tavrel::Error, each ending one part of the work
    std::size_t findings = 0;  ///< of the integrity check
};

/// Opens the bytes as a database, strict and tolerant, and reads all that is in it: schema, relations,
/// properties, rows, indexes; then runs the integrity check.  Any exception but tavrel::Error comes through.
Exercise ReadEverything(const FileBytes& file);

}  // namespace tavrel::testing
