#include "app/SaveScript.h"

#include <optional>
#include <sstream>

#include "app/SaveComparison.h"
#include "jet/database/Database.h"
#include "report/ScriptText.h"

namespace tavrel::app {

namespace {

constexpr std::array<ScriptLine, 2> kDirections = {
    {{0, "A를 B처럼 만드는 SQL 저장…"}, {1, "B를 A처럼 만드는 SQL 저장…"}}};
constexpr const char* kScriptFilter = "SQL (*.sql)";
constexpr std::array<const char*, 2> kNames = {"A를 B처럼.sql", "B를 A처럼.sql"};

/// Nothing when a database cannot be read: the message box has said why.
std::optional<script::Script> Make(const ScriptSide& from, const ScriptSide& to,
                                   platform::MessageBox& messages) {
    try {
        const auto open = [](const ScriptSide& side) {
            return jet::Database::Open(side.path, {.password = side.password});
        };
        const auto a = open(from);
        const auto b = open(to);
        return script::MakeScript(*a, *b, false);
    } catch (...) {
        const Error error = PresentError();
        messages.Say("SQL을 만들 수 없습니다.\r\n\r\n오류 " + std::to_string(error.Number()) + ": " +
                     error.Description());
        return std::nullopt;
    }
}

void TellWhatIsLeft(const script::Script& script, platform::MessageBox& messages) {
    std::string text;
    if (script.Empty()) {
        text = "실행할 문장이 없습니다.";
    } else if (!script.losing.empty()) {
        text = "자료를 잃는 문장은 주석으로 두었습니다.";
    }
    if (!script.left.empty()) {
        text += text.empty() ? "" : "\r\n";
        text += "SQL을 실행한 뒤에도 남는 차이 " + std::to_string(script.left.size()) +
                "건을 파일 끝에 적었습니다.";
    }
    if (!text.empty()) {
        messages.Say(text);
    }
}

}  // namespace

std::span<const ScriptLine> ScriptDirections() {
    return kDirections;
}

void SaveScript(const std::array<ScriptSide, 2>& sides, const ScriptLine& direction,
                const std::string& folder, FileChooser& files, platform::MessageBox& messages) {
    const std::string chosen = files.AskSave({kNames.at(direction.from), folder, kScriptFilter});
    if (chosen.empty()) {
        return;
    }
    const ScriptSide& from = sides.at(direction.from);
    const ScriptSide& to = sides.at(1 - direction.from);
    if (const std::optional<script::Script> script = Make(from, to, messages)) {
        std::ostringstream text;
        report::WriteScript(text, *script, from.path, to.path);
        if (SaveBytes(chosen, std::move(text).str(), messages)) {
            TellWhatIsLeft(*script, messages);
        }
    }
}

}  // namespace tavrel::app
