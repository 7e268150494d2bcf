#include "patch/log/Report.h"
#include "patch/repair/Query.h"
#include "patch/repair/Repairs.h"

namespace tavrel::patch {

void LoginPwdUpdate() {
    try {
        const Query logins("SELECT l.code, l.loginpwd FROM local_user AS l WHERE l.loginid <> ''");
    } catch (const Error& error) {
        ReportFailure(error, "LoginPwdUpdate", kPatchModule);
    }
}

}  // namespace tavrel::patch
