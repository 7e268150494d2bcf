// The commands that write, each with the files it begins with.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace tavrel::testing {

struct Scenario {
    const char* name;
    std::vector<std::vector<std::string>> prepare;  ///< commands that make what it begins with
    std::vector<std::string> command;               ///< "@" at the beginning stands for the folder
    std::string keep = {};       ///< of what was prepared only names that begin so; empty: everything
    std::size_t statements = 1;  ///< so many arguments at the end are done, or not, one after the other
    long sampled = 100;          ///< calls tried of each kind, at most, when samples are asked for
    long most = 2000;            ///< calls tried of each kind when all are asked for
};

const std::vector<Scenario>& Scenarios();

inline std::ostream& operator<<(std::ostream& out, const Scenario& scenario) {
    return out << scenario.name;
}

}  // namespace tavrel::testing
