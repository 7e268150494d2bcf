#include "workbench/PatchedCopies.h"

#include <iterator>

#include "compare/CopyDatabase.h"
#include "compare/Products.h"
#include "db/Session.h"
#include "platform/FileSystem.h"
#include "platform/SameFile.h"
#include "text/Error.h"

namespace tavrel::workbench {

namespace {

constexpr std::int32_t kBadArgument = 5;

/// Every ".mdb" (in small letters) replaced, from the first character on.
std::string WithReplaced(const std::string& path, const std::string& replacement) {
    constexpr std::string_view kExtension = ".mdb";
    std::string replaced;
    std::size_t start = 0;
    for (std::size_t at = path.find(kExtension); at != std::string::npos; at = path.find(kExtension, start)) {
        replaced.append(path, start, at - start).append(replacement);
        start = at + kExtension.size();
    }
    return replaced.append(path, start);
}

std::string CopyName(const char* side) {
    return std::string(1, platform::kPathSeparator) + "temp(" + side + ").mdb";
}

/// The message field, shown for as long as the object lives.
class ShownField {
  public:
    explicit ShownField(MessageField& field) : field_(field) {
        field_.SetVisible(true);
        field_.SetFocus();
    }
    ~ShownField() { field_.SetVisible(false); }
    ShownField(const ShownField&) = delete;
    ShownField& operator=(const ShownField&) = delete;

  private:
    MessageField& field_;
};

/// Does a part of the work; a failure says what could not be done, and to which file.
template <class Work>
void OrSay(const char* what, const std::string& path, Work work) {
    try {
        work();
    } catch (const Error& error) {
        throw Error(error.Number(), std::string(what) + " (" + path + ") " + error.Description());
    }
}

/// Makes the working folder unless it is there; returns its path.  What it is made for is no more open than
/// the two databases.
std::string MadeFolder(const std::string& folder, const std::string& pathA, const std::string& pathB) {
    if (platform::FolderExists(folder)) {
        return folder;
    }
    if (platform::IsSameFile(folder, pathA)) {
        throw MakeError(errors::kFileExists, {},
                        "DB A의 이름에 소문자 \".mdb\"가 없어 작업 폴더의 이름이 그 파일과 같음");
    }
    platform::MakeFolder(folder);
    platform::NarrowFolderLike(pathA, folder);
    platform::NarrowFolderLike(pathB, folder);
    return platform::FullPath(folder);
}

/// The lock file, made when there is none.  It stays: who would remove it could take it from under another
/// run.
std::unique_ptr<platform::File> OpenLock(const std::string& path) {
    if (!platform::FileExists(path)) {
        try {
            return platform::OpenFile(path, platform::FileAccess::CreateNew);
        } catch (const Error& error) {
            if (error.Number() != errors::kFileExists) {
                throw;
            }
        }
    }
    return platform::OpenFile(path, platform::FileAccess::ReadWrite);
}

/// Keeps every other run out of the folder for as long as the file is open.
std::unique_ptr<platform::File> LockFolder(const std::string& folder) {
    try {
        return OpenLock(folder + platform::kPathSeparator + "temp.lock");
    } catch (const platform::FileInUse&) {
        throw MakeError(errors::kPermissionDenied, {}, "다른 비교가 이 작업 폴더를 쓰고 있음");
    }
}

/// Neither copy may take the place of one of the two databases.
void RefuseOwnFiles(const std::string& copy, const std::string& pathA, const std::string& pathB) {
    if (platform::IsSameFile(copy, pathA) || platform::IsSameFile(copy, pathB)) {
        throw MakeError(errors::kFileExists, {}, "비교할 데이터베이스에는 작업 사본을 만들 수 없음");
    }
}

/// Opens the session on a copy and runs the driver on it.
bool Patch(const compare::Product& product, const std::string& copy, const std::string& password) {
    bool open = false;
    OrSay("작업 사본을 열 수 없습니다.", copy,
          [&] { open = modDBsub::DBOpenADO(copy, password, modDBsub::SessionFile::WorkingCopy); });
    return open && product.ChkDBpatch();
}

}  // namespace

WorkingPaths::WorkingPaths(const std::string& pathA)
    : folder(WithReplaced(pathA, "temp")),
      copyA(WithReplaced(pathA, "temp" + CopyName("A"))),
      copyB(WithReplaced(pathA, "temp" + CopyName("B"))) {}

bool PatchedCopies::Prepare(WorkbenchControls& controls, std::string& pathA, std::string& pathB) {
    const modDBsub::MessagesScope messages(*controls.messages);
    WorkingPaths work(pathA);
    const compare::Product* product = nullptr;
    {
        const ShownField field(*controls.maketb);
        // The session of the run before holds a copy that is about to be overwritten.
        modDBsub::gDBConn.reset();
        OrSay("작업 폴더를 만들 수 없습니다.", work.folder,
              [&] { work.folder = MadeFolder(work.folder, pathA, pathB); });
        OrSay("작업 폴더를 쓸 수 없습니다.", work.folder, [&] { lock_ = LockFolder(work.folder); });
        MakeCopies(work, pathA, pathB);
        pathA = work.copyA;
        pathB = work.copyB;
        product = compare::ProductOfCode(controls.AppCode);
        if (product == nullptr) {
            throw MakeError(kBadArgument, {}, controls.AppCode);
        }
    }
    const char* const names[] = {"A", "B"};
    for (failedSide_ = 0; failedSide_ < std::size(names); ++failedSide_) {
        if (!Patch(*product, work.folder + CopyName(names[failedSide_]),
                   controls.txtPwd[failedSide_]->Text())) {
            return false;
        }
    }
    return true;
}

void PatchedCopies::MakeCopies(const WorkingPaths& work, const std::string& pathA, const std::string& pathB) {
    OrSay("DB A의 작업 사본을 만들 수 없습니다.", work.copyA, [&] {
        RefuseOwnFiles(work.copyA, pathA, pathB);
        compare::CopyDatabase(pathA, work.copyA);
    });
    OrSay("DB B의 작업 사본을 만들 수 없습니다.", work.copyB, [&] {
        RefuseOwnFiles(work.copyB, pathA, pathB);
        compare::CopyDatabase(pathB, work.copyB);
    });
}

}  // namespace tavrel::workbench
