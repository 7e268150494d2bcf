// The program that is kept current, as its update sees it.
#pragma once

#include <string>

namespace tavrel::update {

struct RunningProgram {
    std::string updateHost;  ///< host, or host:port, of the update server; empty: there is none
    std::string folder;      ///< where the executable and its companions lie; no separator at the end
    std::string baseName;    ///< the executable's name without the suffix of programs
    std::string revision;    ///< last number of its file version, without leading zeros

    [[nodiscard]] std::string PathOf(const std::string& name) const;
};

/// This process, with the host that the build was given.  Throws Error when the system does not tell where
/// its executable lies.
RunningProgram ThisProgram();

}  // namespace tavrel::update
