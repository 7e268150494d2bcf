#include "workbench/OpenInAccess.h"

#include "platform/OpenWithProgram.h"

namespace tavrel::workbench {

void cmdAccess_Click(const platform::TextField& txtDBPath,
                     const std::function<bool(const std::string& path)>& validateDbPath,
                     const std::function<void(const std::string& path)>& open) {
    const std::string path = txtDBPath.Text();
    if (validateDbPath(path)) {
        if (open) {
            open(path);
        } else {
            platform::OpenWithAssociatedProgram(path);
        }
    }
}

}  // namespace tavrel::workbench
