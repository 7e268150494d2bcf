#include "report/ScriptText.h"

#include "details/Words.h"
#include "report/DisplayText.h"

namespace tavrel::report {

namespace {

/// A comment line: whatever the text holds, it ends with the line.
void WriteComment(std::ostream& out, const std::string& text) {
    out << (text.empty() ? "--" : "-- ") << Printable(text) << '\n';
}

void WriteSteps(std::ostream& out, const std::vector<script::Step>& steps) {
    for (const script::Step& step : steps) {
        out << '\n';
        WriteComment(out, step.reason);
        for (const std::string& statement : step.statements) {
            out << statement << ";\n";
        }
    }
}

/// Every line of a statement becomes a comment of its own.
void WriteInComments(std::ostream& out, const std::string& statement) {
    out << "-- ";
    for (const char c : statement) {
        out << c;
        if (c == '\n') {
            out << "-- ";
        }
    }
    out << ";\n";
}

}  // namespace

void WriteScript(std::ostream& out, const script::Script& script, const std::string& pathA,
                 const std::string& pathB) {
    WriteComment(out, "A의 구조를 B처럼 만드는 SQL");
    WriteComment(out, "A: " + pathA);
    WriteComment(out, "B: " + pathB);
    if (!script.steps.empty()) {
        WriteComment(out, "모두 되거나 하나도 안 됩니다. 한 문장이라도 실패하면 A는 그대로 남습니다.");
        out << "\nBEGIN TRANSACTION;\n";
        WriteSteps(out, script.steps);
        out << "\nCOMMIT TRANSACTION;\n";
    } else {
        WriteComment(out, "실행할 문장이 없습니다.");
    }
    if (!script.losing.empty()) {
        out << '\n';
        WriteComment(out, "자료를 잃는 문장이라 주석으로 두었습니다. 함께 실행하려면 --drop을 주십시오.");
        for (const script::Step& step : script.losing) {
            WriteComment(out, "");
            WriteComment(out, step.reason);
            for (const std::string& statement : step.statements) {
                WriteInComments(out, statement);
            }
        }
    }
    if (!script.left.empty()) {
        out << '\n';
        WriteComment(out, "이 스크립트를 실행한 뒤에도 남는 차이 " + std::to_string(script.left.size()) +
                              "건 (A → B)");
        for (const details::Difference& difference : script.left) {
            WriteComment(out, details::InWords(difference));
        }
    }
}

}  // namespace tavrel::report
