#include "workbench/CompareRun.h"

#include "compare/SchemaSnapshot.h"
#include "platform/FileSystem.h"
#include "text/Error.h"
#include "text/ProcedureError.h"
#include "workbench/PatchedCopies.h"
#include "workbench/StructureComparison.h"

namespace tavrel::workbench {

namespace {

constexpr const char* kNoPath = "DataBase 파일을 선택하세요.";
constexpr const char* kNoFile = "파일을 찾을 수 없습니다.\r\n\r\n";
constexpr int kRunSteps = 5;

/// Hourglass, no repainting, visible progress bars: from here to the end of the block, however it is left.
class BusyState {
  public:
    explicit BusyState(WorkbenchControls& controls) : controls_(controls) {
        controls_.pointer->SetHourglass(true);
        controls_.spList->SetRepaint(false);
        controls_.ProgressBar1[1]->SetMaximum(kRunSteps);
        controls_.ProgressBar1[1]->SetValue(0);
        ShowBars(true);
    }
    ~BusyState() {
        controls_.pointer->SetHourglass(false);
        controls_.spList->SetRepaint(true);
        ShowBars(false);
    }
    BusyState(const BusyState&) = delete;
    BusyState& operator=(const BusyState&) = delete;

  private:
    void ShowBars(bool visible) {
        for (platform::ProgressBar* bar : controls_.ProgressBar1) {
            bar->SetVisible(visible);
        }
    }

    WorkbenchControls& controls_;
};

}  // namespace

void CompareRun::cmdComp_Click() {
    outcome_ = RunOutcome::Stopped;
    unpatchedSide_.reset();
    procedure_ = "cmdComp_Click";
    try {
        if (!PathIsGood(0) || !PathIsGood(1)) {
            return;
        }
        std::string pathA = controls_.txtDBPath[0]->Text();
        std::string pathB = controls_.txtDBPath[1]->Text();
        // The copies are this run's own until it has ended.
        PatchedCopies patched;
        WorkingCopies& copies = copies_ != nullptr ? *copies_ : patched;
        if (controls_.AppCode.empty() || PrepareCopies(copies, pathA, pathB)) {
            SnapshotAndCompare(pathA, pathB);
        }
    } catch (...) {
        controls_.messages->Say(ProcedureErrorText(PresentError(), procedure_, "Form Form1"));
    }
}

bool CompareRun::PathIsGood(std::size_t side) {
    platform::TextField& field = *controls_.txtDBPath[side];
    const std::string path = field.Text();
    if (!path.empty() && platform::FileExists(path)) {
        return true;
    }
    controls_.messages->Say(path.empty() ? kNoPath : kNoFile + path);
    field.SetFocus();
    return false;
}

bool CompareRun::PrepareCopies(WorkingCopies& copies, std::string& pathA, std::string& pathB) {
    const bool prepared = copies.Prepare(controls_, pathA, pathB);
    if (!prepared) {
        unpatchedSide_ = copies.FailedSide();
    }
    return prepared;
}

void CompareRun::SnapshotAndCompare(const std::string& pathA, const std::string& pathB) {
    const BusyState busy(controls_);
    listed_ = false;
    const compare::SnapshotTarget target{*controls_.spList, *controls_.ProgressBar1[0], *controls_.messages};
    platform::ProgressBar& overall = *controls_.ProgressBar1[1];
    procedure_ = "LoadSchemaSnapshot";
    if (!compare::LoadSchemaSnapshot(target, pathA, true, controls_.txtPwd[0]->Text(),
                                     controls_.cmbTblName[0]->Text())) {
        return;
    }
    overall.Advance();
    if (!compare::LoadSchemaSnapshot(target, pathB, false, controls_.txtPwd[1]->Text(),
                                     controls_.cmbTblName[1]->Text())) {
        return;
    }
    overall.Advance();
    procedure_ = "CompareSnapshots";
    differences_ = CompareSnapshots(controls_);
    listed_ = true;
    outcome_ = differences_ == 0 ? RunOutcome::Equal : RunOutcome::Different;
}

}  // namespace tavrel::workbench
