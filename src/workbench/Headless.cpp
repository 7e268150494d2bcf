#include "workbench/Headless.h"

#include "compare/Products.h"
#include "compare/SchemaSnapshot.h"
#include "workbench/CompareRun.h"

namespace tavrel::workbench {

namespace {

class FixedText : public platform::TextField {
  public:
    explicit FixedText(std::string text) : text_(std::move(text)) {}
    [[nodiscard]] std::string Text() const override { return text_; }
    void SetFocus() override {}

  private:
    std::string text_;
};

class FixedOption : public platform::OptionBox {
  public:
    explicit FixedOption(bool ticked) : ticked_(ticked) {}
    [[nodiscard]] int Value() const override { return ticked_ ? 1 : 0; }

  private:
    bool ticked_;
};

class NoPointer : public platform::Pointer {
  public:
    void SetHourglass(bool /*on*/) override {}
};

class NoMessageField : public MessageField {
  public:
    void SetVisible(bool /*visible*/) override {}
    void SetFocus() override {}
};

/// Controls filled from a request.
struct FixedControls {
    explicit FixedControls(const CompareRequest& request)
        : fields{FixedText(request.a.path),     FixedText(request.b.path),  FixedText(request.a.password),
                 FixedText(request.b.password), FixedText(request.a.table), FixedText(request.b.table)},
          options{FixedOption(request.bothOnly), FixedOption(request.indexOnly),
                  FixedOption(request.onlyDifferences)},
          product(request.product) {}

    WorkbenchControls Wire(grid::ResultGrid& grid, const Surroundings& around) {
        return {.txtDBPath = {&fields[0], &fields[1]},
                .txtPwd = {&fields[2], &fields[3]},
                .cmbTblName = {&fields[4], &fields[5]},
                .Check1 = {&options[0], &options[1], &options[2]},
                .ProgressBar1 = {&around.phase, &around.overall},
                .maketb = &messageField,
                .pointer = &noPointer,
                .messages = &around.messages,
                .spList = &grid,
                .AppCode = product};
    }

    std::array<FixedText, 6> fields;
    std::array<FixedOption, 3> options;
    std::string product;
    NoMessageField messageField;
    NoPointer noPointer;
};

std::string UnpatchedText(std::size_t side, const compare::Product& product) {
    return std::string("DB ") + (side == 0 ? "A" : "B") + "의 작업 사본을 최신 버전으로 바꾸지 못했습니다. " +
           compare::WrongProductHint(product);
}

}  // namespace

std::optional<compare::ComparisonResult> CompareDatabases(const CompareRequest& request,
                                                          const Surroundings& around) {
    auto grid = std::make_shared<grid::ResultGrid>();
    FixedControls fixed(request);
    WorkbenchControls controls = fixed.Wire(*grid, around);
    CompareRun run(controls);
    run.cmdComp_Click();
    if (const auto side = run.UnpatchedSide()) {
        around.messages.Say(UnpatchedText(*side, *compare::ProductOfCode(request.product)));
    }
    if (run.Outcome() == RunOutcome::Stopped) {
        return std::nullopt;
    }
    return compare::ComparisonResult(std::move(grid), run.Differences());
}

std::optional<compare::SchemaRows> ReadSchema(const DatabaseChoice& database, const Surroundings& around) {
    auto grid = std::make_shared<grid::ResultGrid>();
    const compare::SnapshotTarget target{*grid, around.phase, around.messages};
    around.phase.SetVisible(true);
    const bool read =
        compare::LoadSchemaSnapshot(target, database.path, true, database.password, database.table);
    around.phase.SetVisible(false);
    return read ? std::optional(compare::SchemaRows(std::move(grid))) : std::nullopt;
}

}  // namespace tavrel::workbench
