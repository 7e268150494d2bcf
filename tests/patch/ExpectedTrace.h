// The independent reading of the lists (expected/), and whether a trace is what it demands.  The format
// stands in expected/README.md.
#pragma once

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "PatchBench.h"

namespace tavrel::testing {

inline std::string ExpectedFile(const std::string& name) {
    return std::string(TAVREL_EXPECTED_DIR) + "/" + name;
}

inline std::vector<std::string> FieldsOf(const std::string& line) {
    std::vector<std::string> fields;
    std::istringstream in(line);
    for (std::string field; std::getline(in, field, '\t');) {
        fields.push_back(field);
    }
    if (line.ends_with('\t')) {
        fields.emplace_back();
    }
    return fields;
}

/// Without blanks, quotes of names and letter case outside of literals.
inline std::string Normalised(const std::string& statement) {
    std::string out;
    char literal = 0;
    for (const char c : statement) {
        if (literal != 0) {
            literal = c == literal ? 0 : literal;
            out += c;
        } else if (c == '\'' || c == '"') {
            literal = c;
            out += c;
        } else if (std::string_view(" \t\r\n`[]").find(c) == std::string_view::npos) {
            out += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        }
    }
    return out;
}

class ExpectedTrace {
  public:
    ExpectedTrace(const std::string& product, int version) {
        std::ifstream file(ExpectedFile(product + ".txt"));
        bool open = false;
        for (std::string line; std::getline(file, line);) {
            if (line.starts_with("#")) {
                open = Holds(line.substr(line.find(": ") + 2), version);
            } else if (open) {
                lines_.push_back(FieldsOf(line));
            }
        }
    }

    /// The first difference, or nothing.
    std::string DifferenceFrom(const std::vector<SentStatement>& sent) {
        sent_ = &sent;
        place_ = 0;
        for (const std::vector<std::string>& line : lines_) {
            if (std::string difference = Match(line); !difference.empty()) {
                return difference;
            }
        }
        return lines_.empty()         ? "nothing is expected"
               : place_ < sent.size() ? "too much: " + sent[place_].sql
                                      : "";
    }

  private:
    static bool Holds(const std::string& gate, int version) {
        std::istringstream words(gate);
        std::string word;
        int number = 0;
        words >> word;
        if (word == "any") {
            return true;
        }
        words >> number;
        if (word == "from") {
            int below = 0;
            words >> word >> below;
            return number <= version && version < below;
        }
        return word == "below" ? version < number : version != number;
    }

    std::string Match(const std::vector<std::string>& line) {
        const char mark = line[0][0];
        if ((mark == '+' && found_) || (mark == '&' && !rows_.empty()) || (mark == '?' && count_ >= 1)) {
            return {};
        }
        if (mark != '*') {
            return MatchOne(line, {});
        }
        const auto rows = rows_;
        for (const std::vector<std::string>& row : rows) {
            if (std::string difference = MatchOne(line, row); !difference.empty()) {
                return difference;
            }
        }
        return {};
    }

    std::string MatchOne(const std::vector<std::string>& line, const std::vector<std::string>& row) {
        const std::string wanted = Filled(line[2], row);
        if (place_ == sent_->size()) {
            return "missing: " + wanted;
        }
        const SentStatement& actual = (*sent_)[place_++];
        const bool same =
            line[0][0] == '~' ? Normalised(actual.sql) == Normalised(wanted) : actual.sql == wanted;
        if (!same || actual.kind != line[1]) {
            return "wanted " + line[1] + " " + wanted + "\nsent " + actual.kind + " " + actual.sql;
        }
        Remember(actual, line[0][0] == '+');
        return {};
    }

    void Remember(const SentStatement& actual, bool followUp) {
        if (actual.kind == "value" && !followUp) {
            found_ = !actual.failed;
            nextCode_ = actual.rows.empty() ? "" : actual.rows[0][0];
        } else if (actual.kind == "open") {
            rows_ = actual.rows;
            // Columns as placeholders call them, in the order of the query.
            names_ = actual.sql.starts_with("SELECT b.code, p.") ? Names{"code", "dealdate", "compalias"}
                     : actual.sql.starts_with("select o.code")   ? Names{"ocode", "scode"}
                                                                 : Names{"code"};
        } else if (actual.kind == "count") {
            count_ = std::stoi(actual.rows.at(0).at(0));
        }
    }

    std::string Filled(std::string text, const std::vector<std::string>& row) const {
        const auto put = [&text](const std::string& name, const std::string& value) {
            const std::string place = "{" + name + "}";
            if (const std::size_t at = text.find(place); at != std::string::npos) {
                text.replace(at, place.size(), value);
            }
        };
        for (std::size_t i = 0; i < row.size(); ++i) {
            put(names_[i], row[i]);
        }
        if (row.empty()) {
            std::string next = std::to_string(nextCode_.empty() ? 1 : std::atoi(nextCode_.c_str()) + 1);
            next.insert(0, next.size() < 4 ? 4 - next.size() : 0, '0');
            put("code", next);
        }
        return text;
    }

    using Names = std::vector<std::string>;
    std::vector<std::vector<std::string>> lines_;
    const std::vector<SentStatement>* sent_ = nullptr;
    std::size_t place_ = 0;
    bool found_ = false;
    int count_ = 0;
    std::string nextCode_;
    Names names_;
    std::vector<std::vector<std::string>> rows_;
};

}  // namespace tavrel::testing
