#include "workbench/CompactCommand.h"

#include "compare/CompactSwap.h"
#include "db/DBEngine.h"
#include "text/ProcedureError.h"

namespace tavrel::workbench {

namespace {

constexpr const char* kQuestion = "정말 압축 및 복구를 하시겠습니까?";
constexpr const char* kDone = "압축 및 복구를 완료하였습니다.";
constexpr const char* kFailed = "압축 및 복구 실패!";
/// Ours: the compacted form would have the name of the database itself.
constexpr const char* kNoTemporaryName =
    "파일 이름에 소문자 \".mdb\"가 없어 압축 및 복구를 할 수 없습니다. 파일 이름을 바꾼 다음 다시 하십시오."
    "\r\n\r\n";
/// The password that the products' databases have.
constexpr const char* kConnect = ";pwd=kq5183";

class Hourglass {
  public:
    explicit Hourglass(platform::Pointer& pointer) : pointer_(pointer) { pointer_.SetHourglass(true); }
    ~Hourglass() { pointer_.SetHourglass(false); }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;

  private:
    platform::Pointer& pointer_;
};

bool Confirmed(platform::MessageBox& messages) {
    constexpr int kNoButton = 2;
    return messages.Show({.text = kQuestion,
                          .icon = platform::MessageIcon::None,
                          .buttons = platform::MessageButtons::YesNo,
                          .defaultButton = kNoButton}) == platform::MessageAnswer::Yes;
}

/// True when the database has been replaced by its compacted form.
bool Compact(const std::string& path, const std::string& temporary, platform::Pointer& pointer) {
    compare::DeleteLeftover(temporary, path);
    compare::RequireReplaceable(path);
    const Hourglass hourglass(pointer);
    db::DBEngine::Instance().CompactDatabase(path, temporary, {}, {}, kConnect);
    return compare::ReplaceByCompacted(temporary, path);
}

}  // namespace

void cmdCompact_Click(const CompactControls& controls) {
    platform::MessageBox& messages = *controls.messages;
    try {
        if (!Confirmed(messages)) {
            return;
        }
        const std::string path = controls.txtDBPath->Text();
        if (!controls.validateDbPath(path)) {
            return;
        }
        const std::string temporary = compare::CompactTempName(path);
        if (temporary == path) {
            messages.Show({.text = kNoTemporaryName + path, .icon = platform::MessageIcon::Exclamation});
            return;
        }
        const bool done = Compact(path, temporary, *controls.pointer);
        messages.Show(
            {.text = done ? kDone : kFailed,
             .icon = done ? platform::MessageIcon::Information : platform::MessageIcon::Exclamation});
    } catch (...) {
        messages.Say(ProcedureErrorText(PresentError(), "cmdCompact_Click", "Form Form1"));
    }
}

}  // namespace tavrel::workbench
