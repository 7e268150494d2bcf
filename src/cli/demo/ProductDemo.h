// Databases of the products: with business data at older versions, and at the lowest version.
#pragma once

#include <string>
#include <vector>

namespace tavrel::cli {

struct ProductDemo {
    const char* file;  ///< name in the folder
    void (*make)();    ///< fills the session's empty database
};

/// The first two are a pair to compare: product A at versions 96 and 133, the newer one changed by hand at
/// its site.
const std::vector<ProductDemo>& ProductDemos();

/// Makes the database at a path that does not exist yet.  Throws Error.
void WriteProductDemo(const ProductDemo& demo, const std::string& path);

/// True when a file is a demonstration database of ours, which may be replaced.
bool IsProductDemo(const std::string& path);

}  // namespace tavrel::cli
