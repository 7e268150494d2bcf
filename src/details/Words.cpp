#include "details/Words.h"

#include <algorithm>
#include <array>

namespace tavrel::details {

namespace {

struct AspectWords {
    Aspect aspect;
    std::string_view word;
    std::string_view code;
};

constexpr std::array kAspects =
    std::to_array<AspectWords>({{Aspect::Spelling, "이름의 표기", "name"},
                                {Aspect::Type, "형식", "type"},
                                {Aspect::Size, "크기", "size"},
                                {Aspect::Digits, "자릿수", "digits"},
                                {Aspect::Autonumber, "일련 번호", "autonumber"},
                                {Aspect::FixedWidth, "고정 길이", "fixedWidth"},
                                {Aspect::Default, "기본값", "default"},
                                {Aspect::Required, "필수", "required"},
                                {Aspect::ZeroLength, "빈 문자열 허용", "zeroLength"},
                                {Aspect::Place, "순서", "place"},
                                {Aspect::IndexColumns, "필드", "columns"},
                                {Aspect::Primary, "기본 키", "primary"},
                                {Aspect::Unique, "고유", "unique"},
                                {Aspect::NoNulls, "Null 금지", "required"},
                                {Aspect::IgnoreNulls, "Null 무시", "ignoreNulls"},
                                {Aspect::Child, "테이블", "table"},
                                {Aspect::ChildColumns, "필드", "columns"},
                                {Aspect::Parent, "기준 테이블", "referencedTable"},
                                {Aspect::ParentColumns, "기준 필드", "referencedColumns"},
                                {Aspect::UpdateRule, "고칠 때", "onUpdate"},
                                {Aspect::DeleteRule, "지울 때", "onDelete"},
                                {Aspect::Enforced, "강제", "enforced"},
                                {Aspect::OneToOne, "일대일", "oneToOne"}});

const AspectWords& WordsFor(Aspect aspect) {
    return *std::ranges::find(kAspects, aspect, &AspectWords::aspect);
}

struct SubjectWords {
    std::string_view word, code;
};
constexpr std::array<SubjectWords, 4> kSubjects = {
    {{"테이블", "table"}, {"필드", "column"}, {"인덱스", "index"}, {"관계", "relation"}}};

}  // namespace

std::string_view WordFor(Subject subject) {
    return kSubjects.at(static_cast<std::size_t>(subject)).word;
}

std::string_view CodeFor(Subject subject) {
    return kSubjects.at(static_cast<std::size_t>(subject)).code;
}

std::string_view WordFor(Aspect aspect) {
    return WordsFor(aspect).word;
}

std::string_view CodeFor(Aspect aspect) {
    return WordsFor(aspect).code;
}

std::string_view WordFor(Where where) {
    return where == Where::OnlyA ? "A에만 있음" : where == Where::OnlyB ? "B에만 있음" : "";
}

std::string NameInWords(const Difference& difference) {
    const bool inTable = difference.subject == Subject::Column || difference.subject == Subject::Index;
    return inTable ? difference.table + "." + difference.name : difference.name;
}

std::string Summary(const Facts& facts) {
    std::string summary;
    for (const Fact& fact : facts) {
        const bool silent = fact.aspect == Aspect::Spelling || fact.text.empty() || fact.text == "X" ||
                            fact.text == "NO ACTION" || (fact.aspect == Aspect::Enforced && fact.text == "O");
        if (!silent) {
            summary += summary.empty() ? "" : " · ";
            summary += WordFor(fact.aspect);
            summary += fact.text == "O" ? "" : " " + fact.text;
        }
    }
    const bool loose = TextOf(facts, Aspect::Enforced) == "X";
    return loose ? summary + " · 강제 안 함" : summary;
}

std::string InWords(const Difference& difference) {
    std::string line = std::string(WordFor(difference.subject)) + " " + NameInWords(difference) + ":";
    if (difference.where != Where::Both) {
        const std::string summary = Summary(difference.where == Where::OnlyA ? difference.a : difference.b);
        return line + " " + std::string(WordFor(difference.where)) +
               (summary.empty() ? "" : " (" + summary + ")");
    }
    bool first = true;
    for (const Aspect aspect : difference.aspects) {
        const auto shown = [&](const Facts& facts) {
            const std::string_view text = TextOf(facts, aspect);
            return text.empty() ? std::string("없음") : std::string(text);
        };
        line += first ? " " : "; ";
        line += WordFor(aspect);
        line += " " + shown(difference.a) + " → " + shown(difference.b);
        first = false;
    }
    return line;
}

}  // namespace tavrel::details
