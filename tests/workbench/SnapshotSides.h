// Snapshots written down by hand or thrown by dice, and put into the grid without a database.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "workbench/WorkbenchControls.h"

namespace tavrel::workbench {

/// One row of one side: eleven texts.
using SideRow = std::array<std::string, 11>;
using SideRows = std::vector<SideRow>;

/// A row from "table.field" and perhaps a type.
inline SideRow RowOf(const std::string& key, const std::string& type = "Long") {
    const auto dot = key.find('.');
    return {key.substr(0, dot), "", "", "", key.substr(dot + 1), type, "", "", "O", "", key};
}

inline SideRows RowsOf(const std::vector<std::string>& keys) {
    SideRows rows;
    for (const std::string& key : keys) {
        rows.push_back(RowOf(key));
    }
    return rows;
}

inline void Fill(grid::ResultGrid& grid, const SideRows& a, const SideRows& b) {
    grid.SetRowCount(static_cast<int>(std::max(a.size(), b.size())));
    for (const auto& [rows, offset] : {std::pair(&a, 0), std::pair(&b, 12)}) {
        for (std::size_t i = 0; i < rows->size(); ++i) {
            for (int c = 0; c < 11; ++c) {
                grid.PutText(offset + c + 1, static_cast<int>(i) + 1,
                             (*rows)[i][static_cast<std::size_t>(c)]);
            }
        }
    }
}

/// Dice with a seed, for snapshots that provoke duplicates, case variants and keyless rows.
class Dice {
  public:
    explicit Dice(unsigned seed) : random_(seed) {}

    unsigned Below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
    bool OneIn(unsigned chances) { return Below(chances) == 0; }

    SideRow Row(unsigned names) {
        static const std::vector<std::string> kNames = {"a", "A", "b", "c", "C", "가",
                                                        "é", "É", "d", "e", "f", "g"};
        SideRow row = RowOf((OneIn(2) ? "t." : OneIn(2) ? "T." : "u.") + kNames[Below(names)]);
        for (const std::size_t cell : {1, 2, 3, 5, 7, 8}) {
            if (OneIn(6)) {
                row[cell] = OneIn(2) ? "v" : "V";
            }
        }
        if (OneIn(40)) {
            row[10].clear();
        }
        return row;
    }

    SideRows Rows(unsigned atMost) {
        const unsigned names = 1 + Below(12);
        SideRows rows(Below(atMost + 1));
        for (SideRow& row : rows) {
            row = Row(names);
        }
        return rows;
    }

    /// The other side of a pair: rows dropped, added, changed, moved.
    SideRows Relative(SideRows rows) {
        for (unsigned changes = Below(6); changes > 0 && !rows.empty(); --changes) {
            const auto at = rows.begin() + Below(static_cast<unsigned>(rows.size()));
            switch (Below(4)) {
                case 0:
                    rows.erase(at);
                    break;
                case 1:
                    rows.insert(at, Row(12));
                    break;
                case 2:
                    (*at)[5] = "Text";
                    break;
                default:
                    std::rotate(rows.begin(), at, rows.end());
                    break;
            }
        }
        return rows;
    }

  private:
    std::mt19937 random_;
};

}  // namespace tavrel::workbench
