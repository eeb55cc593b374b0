// Replacing a file in one step: the new text takes the earlier file's place
// only when all of it is on the disk, in every encoding, and a held file, a
// read-only folder or a full disk leave the earlier file and no side file.

#include "foundation/SafeWrite.h"

#include "FileTrouble.h"
#include "ScratchFolder.h"
#include "foundation/MTextFile.h"

#include <gtest/gtest.h>

#include <string>

namespace {

namespace fs = std::filesystem;

fs::path Target(const char* name) {
    fs::path path = scratch::Kept("safe-write") / name;
    std::error_code ignored;
    fs::remove(path, ignored);
    return path;
}

bool SideFileLeft(const fs::path& target) {
    return fs::exists(target.string() + ".saving");
}

} // namespace

TEST(SafeWrite, TheNewTextReplacesTheEarlierFile) {
    fs::path target = Target("replaced.txt");
    scratch::WriteBytes(target, std::string(3000, '#'));
    EXPECT_TRUE(ReplaceTextFile(MString(u"two\r\nlines\r\n"), scratch::Text(target), Encoding8Bit));
    EXPECT_EQ(scratch::ReadBytes(target), "two\r\nlines\r\n");
    EXPECT_FALSE(SideFileLeft(target));
}

TEST(SafeWrite, EveryEncodingIsMeasuredRight) {
    // "a", e acute and the euro sign: 3 bytes in 8 bits (the euro's low
    // byte), 2 + 6 in UTF-16, 3 + 1 + 2 + 3 in UTF-8.
    const MString text(u"a\u00E9\u20AC");
    const struct {
        int32_t Encoding;
        std::string Bytes;
    } cases[] = {
        {Encoding8Bit, std::string("a\xE9\xAC")},
        {EncodingUtf16LE, std::string("\xFF\xFE"
                                      "a\0\xE9\0\xAC\x20",
                                      8)},
        {EncodingUtf16BE, std::string("\xFE\xFF\0a\0\xE9\x20\xAC", 8)},
        {EncodingUtf8, std::string("\xEF\xBB\xBF"
                                   "a\xC3\xA9\xE2\x82\xAC")},
    };
    for (const auto& c : cases) {
        fs::path target = Target("encoded.txt");
        ASSERT_TRUE(ReplaceTextFile(text, scratch::Text(target), c.Encoding)) << c.Encoding;
        EXPECT_EQ(scratch::ReadBytes(target), c.Bytes) << c.Encoding;
        EXPECT_FALSE(SideFileLeft(target));
    }
}

TEST(SafeWrite, EmptyTextTouchesNothing) {
    fs::path target = Target("untouched.txt");
    scratch::WriteBytes(target, "kept");
    EXPECT_TRUE(ReplaceTextFile(MString(), scratch::Text(target), Encoding8Bit));
    EXPECT_EQ(scratch::ReadBytes(target), "kept");
    EXPECT_FALSE(SideFileLeft(target));
}

TEST(SafeWrite, AFileHeldElsewhereStays) {
    fs::path target = Target("held.txt");
    scratch::WriteBytes(target, "kept");
    {
        trouble::ForeignLock lock(target);
        ASSERT_TRUE(lock.Held());
        EXPECT_FALSE(ReplaceTextFile(MString(u"new"), scratch::Text(target), Encoding8Bit));
    }
    // Read once the other program let go: a file held with no sharing
    // cannot be read meanwhile.
    EXPECT_EQ(scratch::ReadBytes(target), "kept");
    EXPECT_FALSE(SideFileLeft(target));
}

TEST(SafeWrite, AMissingFolderFails) {
    fs::path target = scratch::Kept("safe-write") / "no such folder" / "file.txt";
    EXPECT_FALSE(ReplaceTextFile(MString(u"new"), scratch::Text(target), Encoding8Bit));
    EXPECT_FALSE(fs::exists(target.parent_path()));
}

TEST(SafeWrite, AReadOnlyDiskFails) {
    trouble::SmallDisk disk(scratch::Kept("safe-write") / "read-only disk", 64);
    if (!disk.Mounted()) GTEST_SKIP() << "mounting a small disk is not permitted here";
    fs::path target = disk.Folder / "file.txt";
    scratch::WriteBytes(target, "kept");
    ASSERT_TRUE(disk.MakeReadOnly());
    EXPECT_FALSE(ReplaceTextFile(MString(u"new"), scratch::Text(target), Encoding8Bit));
    EXPECT_EQ(scratch::ReadBytes(target), "kept");
    EXPECT_FALSE(SideFileLeft(target));
}

TEST(SafeWrite, AFullDiskKeepsTheEarlierFileAndRemovesTheSideFile) {
    trouble::SmallDisk disk(scratch::Kept("safe-write") / "full disk", 64);
    if (!disk.Mounted()) GTEST_SKIP() << "mounting a small disk is not permitted here";
    fs::path target = disk.Folder / "file.txt";
    scratch::WriteBytes(target, "kept");
    ASSERT_TRUE(disk.Fill());
    std::u16string big(100000, u'x');
    EXPECT_FALSE(ReplaceTextFile(MString(big.c_str()), scratch::Text(target), Encoding8Bit));
    EXPECT_EQ(scratch::ReadBytes(target), "kept");
    EXPECT_FALSE(SideFileLeft(target));
}
