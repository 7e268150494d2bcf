#include <array>
#include <filesystem>
#include <functional>
#include <numeric>
#include <vector>

#include <gtest/gtest.h>

#include "platform/File.h"
#include "platform/FileSystem.h"

#ifndef _WIN32
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace tavrel::platform {
namespace {

/// The number of the error that `action` raises; 0 when it raises none.
std::int32_t NumberOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const Error& error) {
        return error.Number();
    }
    return 0;
}

class FileTest : public testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directories(folder_);
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    [[nodiscard]] std::string Path(const std::string& name) const { return (folder_ / name).string(); }

    void Create(const std::string& name, std::size_t size = 0) const {
        const auto file = OpenFile(Path(name), FileAccess::CreateNew);
        file->WriteAt(0, std::vector<std::uint8_t>(size, 7));
    }

  private:
    std::filesystem::path folder_ =
        std::filesystem::path(testing::TempDir()) /
        (std::string("tavrel-파일-") + testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST_F(FileTest, GivesBackWhatWasWrittenAnywhere) {
    const auto file = OpenFile(Path("자료.bin"), FileAccess::CreateNew);
    std::vector<std::uint8_t> bytes(100000);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    file->WriteAt(5000, bytes);
    EXPECT_EQ(file->Size(), 105000U);
    std::vector<std::uint8_t> back(bytes.size());
    file->ReadAt(5000, back);
    EXPECT_EQ(back, bytes);
    std::array<std::uint8_t, 4> gap = {1, 2, 3, 4};
    file->ReadAt(4998, gap);
    EXPECT_EQ(gap, (std::array<std::uint8_t, 4>{0, 0, 0, 1}));
    file->Truncate(5002);
    file->Sync();
    EXPECT_EQ(FileSize(Path("자료.bin")), 5002U);
}

TEST_F(FileTest, ReadingBeyondTheEndIsAFault) {
    Create("a", 10);
    const auto file = OpenFile(Path("a"), FileAccess::Read);
    std::array<std::uint8_t, 4> out{};
    EXPECT_EQ(NumberOf([&] { file->ReadAt(7, out); }), errors::kDeviceFault);
    EXPECT_EQ(NumberOf([&] { file->ReadAt(10, out); }), errors::kDeviceFault);
    EXPECT_EQ(NumberOf([&] { file->ReadAt(std::uint64_t{1} << 63, out); }), errors::kDeviceFault);
    EXPECT_EQ(NumberOf([&] { file->ReadAt(10, {}); }), 0);
    EXPECT_NE(NumberOf([&] { file->WriteAt(0, out); }), 0) << "opened for reading";
}

TEST_F(FileTest, SharingFollowsTheAccess) {
    Create("a");
    const FileAccess accesses[] = {FileAccess::Read, FileAccess::ReadWrite};
    for (const FileAccess held : accesses) {
        for (const FileAccess wanted : accesses) {
            const auto holder = OpenFile(Path("a"), held);
            if (held == FileAccess::Read && wanted == FileAccess::Read) {
                EXPECT_NO_THROW(OpenFile(Path("a"), wanted));
            } else {
                EXPECT_THROW(OpenFile(Path("a"), wanted), FileInUse);
            }
        }
    }
    EXPECT_NO_THROW(OpenFile(Path("a"), FileAccess::ReadWrite)) << "everybody has left";
}

TEST_F(FileTest, FailuresHaveTheRunTimesNumbers) {
    Create("a");
    MakeFolder(Path("folder"));
    const struct {
        const char* name;
        FileAccess access;
        std::int32_t number;
    } cases[] = {
        {"missing", FileAccess::Read, errors::kFileNotFound},
        {"missing", FileAccess::ReadWrite, errors::kFileNotFound},
        {"nowhere/a", FileAccess::Read, errors::kPathNotFound},
        {"nowhere/a", FileAccess::CreateNew, errors::kPathNotFound},
        {"a", FileAccess::CreateNew, errors::kFileExists},
        {"folder", FileAccess::Read, errors::kPathAccess},
        {"folder", FileAccess::ReadWrite, errors::kPathAccess},
    };
    for (const auto& failure : cases) {
        EXPECT_EQ(NumberOf([&] { OpenFile(Path(failure.name), failure.access); }), failure.number)
            << failure.name;
    }
    EXPECT_FALSE(FileExists(Path("missing"))) << "a failed opening makes nothing";
}

TEST_F(FileTest, NamesOnDisk) {
    Create("a", 3);
    Create("b", 5);
    MakeFolder(Path("folder"));
    MakeFolder(Path("folder"));
    EXPECT_TRUE(FileExists(Path("a")));
    EXPECT_FALSE(FileExists(Path("folder")));
    EXPECT_FALSE(FileExists(""));
    EXPECT_TRUE(FolderExists(Path("folder")));
    EXPECT_FALSE(FolderExists(Path("a")));

    ReplaceFile(Path("a"), Path("b"));
    EXPECT_FALSE(FileExists(Path("a")));
    EXPECT_EQ(FileSize(Path("b")), 3U);
    DeleteFileIfThere(Path("b"));
    DeleteFileIfThere(Path("b"));
    EXPECT_FALSE(FileExists(Path("b")));
}

TEST_F(FileTest, FailuresOfNames) {
    Create("a");
    MakeFolder(Path("folder"));
    EXPECT_EQ(NumberOf([&] { FileSize(Path("missing")); }), errors::kFileNotFound);
    EXPECT_EQ(NumberOf([&] { FileSize(Path("folder")); }), errors::kPathAccess);
    EXPECT_EQ(NumberOf([&] { DeleteFileIfThere(Path("folder")); }), errors::kPathAccess);
    EXPECT_EQ(NumberOf([&] { MakeFolder(Path("a")); }), errors::kFileExists);
    EXPECT_EQ(NumberOf([&] { MakeFolder(Path("nowhere/folder")); }), errors::kPathNotFound);
    EXPECT_EQ(NumberOf([&] { ReplaceFile(Path("missing"), Path("a")); }), errors::kFileNotFound);
    EXPECT_TRUE(FileExists(Path("a")));
}

TEST_F(FileTest, FullPathStartsAtTheRoot) {
    const std::filesystem::path here = std::filesystem::current_path();
    EXPECT_EQ(FullPath("a.mdb"), (here / "a.mdb").string());
    EXPECT_EQ(FullPath("./x/../a.mdb"), (here / "a.mdb").string());
    EXPECT_EQ(FullPath(Path("a")), Path("a"));
}

#ifndef _WIN32
/// A lock as another program would hold it, through a file descriptor of its own.
class ForeignLock {
  public:
    ForeignLock(const std::string& path, int flags) : descriptor_(::open(path.c_str(), flags | O_CLOEXEC)) {}
    ForeignLock(const ForeignLock&) = delete;
    ForeignLock& operator=(const ForeignLock&) = delete;
    ~ForeignLock() { ::close(descriptor_); }

    [[nodiscard]] bool Whole(int operation) const { return ::flock(descriptor_, operation | LOCK_NB) == 0; }

#ifdef F_OFD_SETLK
    [[nodiscard]] bool Bytes(short type, off_t start, off_t length) const {
        struct flock range = {};
        range.l_type = type;
        range.l_whence = SEEK_SET;
        range.l_start = start;
        range.l_len = length;
        return ::fcntl(descriptor_, F_OFD_SETLK, &range) == 0;
    }
#endif

  private:
    int descriptor_;
};

TEST_F(FileTest, OtherProgramsLocksOnTheWholeFileAreHonoured) {
    Create("a");
    const ForeignLock lock(Path("a"), O_RDWR);
    ASSERT_TRUE(lock.Whole(LOCK_SH));
    EXPECT_NO_THROW(OpenFile(Path("a"), FileAccess::Read));
    EXPECT_THROW(OpenFile(Path("a"), FileAccess::ReadWrite), FileInUse);
    ASSERT_TRUE(lock.Whole(LOCK_EX));
    EXPECT_THROW(OpenFile(Path("a"), FileAccess::Read), FileInUse);
}

#ifdef F_OFD_SETLK
TEST_F(FileTest, OtherProgramsLocksOnBytesAreHonoured) {
    Create("a");
    {
        const ForeignLock lock(Path("a"), O_RDWR);
        ASSERT_TRUE(lock.Bytes(F_RDLCK, 1000, 1));
        EXPECT_NO_THROW(OpenFile(Path("a"), FileAccess::Read));
        EXPECT_THROW(OpenFile(Path("a"), FileAccess::ReadWrite), FileInUse);
        ASSERT_TRUE(lock.Bytes(F_WRLCK, 1000, 1));
        EXPECT_THROW(OpenFile(Path("a"), FileAccess::Read), FileInUse);
    }
    const auto ours = OpenFile(Path("a"), FileAccess::Read);
    const ForeignLock late(Path("a"), O_RDWR);
    EXPECT_TRUE(late.Bytes(F_RDLCK, 0, 0));
    EXPECT_FALSE(late.Bytes(F_WRLCK, 1 << 20, 1));
}
#endif

TEST_F(FileTest, PipesAndDevicesAreRefusedWithoutWaiting) {
    ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
    for (const std::string& path : {Path("pipe"), std::string("/dev/null")}) {
        EXPECT_EQ(NumberOf([&] { OpenFile(path, FileAccess::Read); }), errors::kPathAccess) << path;
        EXPECT_EQ(NumberOf([&] { OpenFile(path, FileAccess::ReadWrite); }), errors::kPathAccess) << path;
        EXPECT_FALSE(FileExists(path));
    }
}

TEST_F(FileTest, ReadingNeedsNoWritePermission) {
    Create("a", 1);
    ASSERT_EQ(::chmod(Path("a").c_str(), 0400), 0);
    EXPECT_NO_THROW(OpenFile(Path("a"), FileAccess::Read));
    if (::geteuid() == 0) {
        GTEST_SKIP() << "the administrator may write to anything";
    }
    EXPECT_EQ(NumberOf([&] { OpenFile(Path("a"), FileAccess::ReadWrite); }), errors::kPermissionDenied);
}

TEST_F(FileTest, FullPathFollowsLinksOnlyToClimb) {
    MakeFolder(Path("real"));
    MakeFolder(Path("real/deep"));
    std::filesystem::create_directory_symlink(Path("real/deep"), Path("link"));
    EXPECT_EQ(FullPath(Path("link/a")), Path("link/a"));
    EXPECT_EQ(FullPath(Path("link/../a")), std::filesystem::canonical(Path("real")).string() + "/a");
}
#endif

}  // namespace
}  // namespace tavrel::platform
