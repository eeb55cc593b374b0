// MFile: open modes, reads and writes in handle and memory mode, positions.

#include "foundation/MFile.h"

#include "ScratchFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

fs::path TestFolder() {
    return scratch::Kept("mfile");
}

// A fresh path in the folder of this test; the file does not exist.
fs::path FreshPath(const fs::path& name) {
    fs::path path = TestFolder() / name;
    std::error_code ignored;
    fs::remove(path, ignored);
    return path;
}

MString PathText(const fs::path& path) {
    return MString(path.u16string().c_str());
}

void WriteBytes(const fs::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), std::streamsize(bytes.size()));
}

std::string ReadBytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

} // namespace

TEST(MFile, WritesAndReadsBackBytes) {
    fs::path path = FreshPath("roundtrip.bin");
    {
        MFile file;
        ASSERT_TRUE(file.Open(PathText(path), true, false));
        EXPECT_TRUE(file.IsOpen);
        EXPECT_TRUE(file.ForWriting);
        EXPECT_FALSE(file.InMemory);
        EXPECT_NE(file.Handle, nullptr);
        EXPECT_TRUE(file.Write("abc", 3));
        EXPECT_TRUE(file.Write("\0\xff", 2));
        EXPECT_EQ(file.Tell(), 5);
    }
    EXPECT_EQ(ReadBytes(path), std::string("abc\0\xff", 5));

    MFile file;
    ASSERT_TRUE(file.Open(PathText(path), false, false));
    EXPECT_FALSE(file.ForWriting);
    char buffer[5] = {};
    EXPECT_TRUE(file.Read(buffer, 3));
    EXPECT_EQ(std::string(buffer, 3), "abc");
    EXPECT_EQ(file.Tell(), 3);
    // Only 2 bytes are left: a read of 3 does not deliver exactly 3.
    EXPECT_FALSE(file.Read(buffer, 3));
}

TEST(MFile, ReadingAMissingFileFails) {
    fs::path path = FreshPath("missing.bin");
    MFile file;
    EXPECT_FALSE(file.Open(PathText(path), false, true));
    EXPECT_FALSE(file.IsOpen);
    EXPECT_EQ(file.Handle, nullptr);
    char byte;
    EXPECT_FALSE(file.Read(&byte, 1));
    EXPECT_FALSE(file.Write("x", 1));
    EXPECT_FALSE(file.Seek(0));
    EXPECT_EQ(file.Tell(), -1);
    EXPECT_FALSE(fs::exists(path)); // reading never creates
}

TEST(MFile, ReadingAFolderFails) {
    fs::path folder = FreshPath("a-folder");
    fs::create_directories(folder);
    MFile file;
    EXPECT_FALSE(file.Open(PathText(folder), false, false));
}

TEST(MFile, OpeningForWritingCreatesAMissingFile) {
    fs::path path = FreshPath("created.bin");
    {
        MFile file;
        EXPECT_TRUE(file.Open(PathText(path), true, false));
    }
    EXPECT_TRUE(fs::exists(path));
    EXPECT_EQ(fs::file_size(path), 0u);
}

TEST(MFile, OpeningForWritingRemovesTheOldContentsEvenIfNothingIsWritten) {
    fs::path path = FreshPath("truncated.bin");
    WriteBytes(path, "old contents that must go");
    {
        MFile file;
        ASSERT_TRUE(file.Open(PathText(path), true, false));
    }
    EXPECT_TRUE(fs::exists(path));
    EXPECT_EQ(fs::file_size(path), 0u);

    WriteBytes(path, "longer old contents");
    {
        MFile file;
        ASSERT_TRUE(file.Open(PathText(path), true, false));
        EXPECT_TRUE(file.Write("new", 3));
    }
    EXPECT_EQ(ReadBytes(path), "new");
}

TEST(MFile, ReadRefusesNullBufferZeroSizeAndClosedFile) {
    fs::path path = FreshPath("refusals.bin");
    WriteBytes(path, "0123456789");
    for (bool toMemory : {false, true}) {
        MFile file;
        ASSERT_TRUE(file.Open(PathText(path), false, toMemory));
        EXPECT_EQ(file.InMemory, toMemory);
        char buffer[4];
        EXPECT_FALSE(file.Read(nullptr, 4));
        EXPECT_FALSE(file.Read(buffer, 0));
        EXPECT_EQ(file.Tell(), 0);
        file.Close();
        EXPECT_FALSE(file.IsOpen);
        EXPECT_FALSE(file.Read(buffer, 1));
    }
}

TEST(MFile, ToMemoryReadsTheWholeFileAndClosesTheHandle) {
    fs::path path = FreshPath("memory.bin");
    WriteBytes(path, "0123456789");
    MFile file;
    ASSERT_TRUE(file.Open(PathText(path), false, true));
    EXPECT_TRUE(file.IsOpen);
    EXPECT_TRUE(file.InMemory);
    EXPECT_EQ(file.Handle, nullptr);
    EXPECT_EQ(file.Position, 0);
    EXPECT_EQ(file.Size, 10);
    ASSERT_EQ(file.Memory.Count, 10);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(file.Memory.Data), 10), "0123456789");

    // The handle is closed at once, so the file is free to be replaced.
    {
        MFile writer;
        EXPECT_TRUE(writer.Open(PathText(path), true, false));
    }

    char buffer[8] = {};
    EXPECT_TRUE(file.Read(buffer, 4));
    EXPECT_EQ(std::string(buffer, 4), "0123");
    EXPECT_EQ(file.Tell(), 4);
    EXPECT_TRUE(file.Read(buffer, 6));
    EXPECT_EQ(std::string(buffer, 6), "456789");
    EXPECT_EQ(file.Tell(), 10);
    EXPECT_FALSE(file.Read(buffer, 1));
    EXPECT_EQ(file.Position, 10);
}

TEST(MFile, MemoryReadMustLieInsideTheCopy) {
    MFile file;
    ASSERT_TRUE(file.OpenMemory("abcdef", 6));
    char buffer[8] = {};
    EXPECT_TRUE(file.Read(buffer, 4));
    // Two bytes remain: a read of three delivers nothing and moves nothing.
    EXPECT_FALSE(file.Read(buffer, 3));
    EXPECT_EQ(file.Position, 4);
    EXPECT_TRUE(file.Read(buffer, 2));
    EXPECT_EQ(std::string(buffer, 2), "ef");
    // A huge size must not wrap around the bounds check.
    EXPECT_TRUE(file.Seek(1));
    EXPECT_FALSE(file.Read(buffer, 0xFFFFFFFFu));
    EXPECT_EQ(file.Position, 1);
}

TEST(MFile, MemorySeekRules) {
    MFile file;
    ASSERT_TRUE(file.OpenMemory("abcdef", 6));
    EXPECT_EQ(file.Size, 6);
    EXPECT_TRUE(file.Seek(5));
    EXPECT_EQ(file.Tell(), 5);
    char byte = 0;
    EXPECT_TRUE(file.Read(&byte, 1));
    EXPECT_EQ(byte, 'f');
    // At or beyond the size, or negative: false, and the position stays.
    EXPECT_FALSE(file.Seek(6));
    EXPECT_FALSE(file.Seek(7));
    EXPECT_FALSE(file.Seek(-1));
    EXPECT_EQ(file.Tell(), 6);
    EXPECT_TRUE(file.Seek(0));
    EXPECT_TRUE(file.Read(&byte, 1));
    EXPECT_EQ(byte, 'a');
}

TEST(MFile, HandleSeekRules) {
    fs::path path = FreshPath("seek.bin");
    WriteBytes(path, "abcdef");
    MFile file;
    ASSERT_TRUE(file.Open(PathText(path), false, false));
    EXPECT_FALSE(file.InMemory);
    EXPECT_TRUE(file.Seek(3));
    EXPECT_EQ(file.Tell(), 3);
    char byte = 0;
    EXPECT_TRUE(file.Read(&byte, 1));
    EXPECT_EQ(byte, 'd');
    EXPECT_FALSE(file.Seek(-1));
    EXPECT_EQ(file.Tell(), 4);
    // A file on disk may be positioned at or past its end; reads then fail.
    EXPECT_TRUE(file.Seek(6));
    EXPECT_FALSE(file.Read(&byte, 1));
    EXPECT_TRUE(file.Seek(100));
    EXPECT_EQ(file.Tell(), 100);
    EXPECT_FALSE(file.Read(&byte, 1));
    EXPECT_TRUE(file.Seek(0));
    EXPECT_TRUE(file.Read(&byte, 1));
    EXPECT_EQ(byte, 'a');
}

TEST(MFile, SizeIsUnknownUntilAsked) {
    fs::path path = FreshPath("size.bin");
    WriteBytes(path, "12345");
    MFile file;
    ASSERT_TRUE(file.Open(PathText(path), false, false));
    EXPECT_EQ(file.Size, -1);
    EXPECT_EQ(file.FileSize(), 5);
    EXPECT_EQ(file.Size, 5);
    file.Close();
    EXPECT_EQ(file.Size, -1);
}

TEST(MFile, EmptyFileToMemoryStaysInHandleMode) {
    fs::path path = FreshPath("empty.bin");
    WriteBytes(path, "");
    MFile file;
    ASSERT_TRUE(file.Open(PathText(path), false, true));
    EXPECT_FALSE(file.InMemory);
    EXPECT_EQ(file.Size, 0);
    char byte;
    EXPECT_FALSE(file.Read(&byte, 1));
}

TEST(MFile, ToMemoryIsIgnoredForWriting) {
    fs::path path = FreshPath("write-memory.bin");
    MFile file;
    ASSERT_TRUE(file.Open(PathText(path), true, true));
    EXPECT_FALSE(file.InMemory);
    EXPECT_TRUE(file.Write("xy", 2));
    file.Close();
    EXPECT_EQ(ReadBytes(path), "xy");
}

TEST(MFile, WritesFailOnReadersAndMemoryCopies) {
    fs::path path = FreshPath("readonly.bin");
    WriteBytes(path, "abc");
    {
        MFile file;
        ASSERT_TRUE(file.Open(PathText(path), false, false));
        EXPECT_FALSE(file.Write("x", 1));
    }
    {
        MFile file;
        ASSERT_TRUE(file.Open(PathText(path), false, true));
        ASSERT_TRUE(file.InMemory);
        EXPECT_FALSE(file.Write("x", 1));
    }
    EXPECT_EQ(ReadBytes(path), "abc");
}

TEST(MFile, ReadersShareAndWritersExclude) {
    fs::path path = FreshPath("shared.bin");
    WriteBytes(path, "shared");
    {
        MFile first, second, writer;
        ASSERT_TRUE(first.Open(PathText(path), false, false));
        EXPECT_TRUE(second.Open(PathText(path), false, false));
        // A file being read is neither replaced nor emptied by a writer.
        EXPECT_FALSE(writer.Open(PathText(path), true, false));
    }
    EXPECT_EQ(ReadBytes(path), "shared");
    {
        MFile writer, reader;
        ASSERT_TRUE(writer.Open(PathText(path), true, false));
        EXPECT_FALSE(reader.Open(PathText(path), false, false));
        EXPECT_FALSE(reader.Open(PathText(path), false, true));
    }
    MFile reader;
    EXPECT_TRUE(reader.Open(PathText(path), false, false));
}

TEST(MFile, PathsAreWideText) {
    fs::path path = FreshPath(u"Zo\u00eb \u03a9 \u6f22.bin");
    {
        MFile file;
        ASSERT_TRUE(file.Open(PathText(path), true, false));
        EXPECT_TRUE(file.Write("wide", 4));
    }
    EXPECT_TRUE(fs::exists(path));
    EXPECT_EQ(ReadBytes(path), "wide");
    MFile file;
    EXPECT_FALSE(file.Open(MString(), false, false));
}

TEST(MFile, OpenMemoryServesReadsFromACopy) {
    std::vector<char> bytes = {'q', 'r', 's'};
    MFile file;
    ASSERT_TRUE(file.OpenMemory(bytes.data(), 3));
    bytes[0] = 'x';
    EXPECT_TRUE(file.IsOpen);
    EXPECT_TRUE(file.InMemory);
    EXPECT_EQ(file.Handle, nullptr);
    char buffer[3];
    EXPECT_TRUE(file.Read(buffer, 3));
    EXPECT_EQ(std::string(buffer, 3), "qrs");

    MFile empty;
    EXPECT_TRUE(empty.OpenMemory(nullptr, 0));
    EXPECT_FALSE(empty.Read(buffer, 1));
    EXPECT_FALSE(empty.Seek(0));
    EXPECT_FALSE(empty.OpenMemory(nullptr, 3));
    EXPECT_FALSE(empty.OpenMemory("abc", -1));
}

TEST(MFile, ReopeningClosesTheEarlierFile) {
    fs::path first = FreshPath("first.bin"), second = FreshPath("second.bin");
    WriteBytes(second, "2");
    MFile file;
    ASSERT_TRUE(file.Open(PathText(first), true, false));
    ASSERT_TRUE(file.Open(PathText(second), false, true));
    EXPECT_TRUE(file.InMemory);
    EXPECT_FALSE(file.ForWriting);
    // The first file is free again: a reader may open it.
    MFile reader;
    EXPECT_TRUE(reader.Open(PathText(first), false, false));
}

// ---- Gathered writes

TEST(MFile, WritesOfEverySizeGiveTheSameBytesInTheSameOrder) {
    fs::path path = FreshPath("gathered.bin");
    std::string expected;
    {
        MFile file;
        ASSERT_TRUE(file.Open(PathText(path), true, false));
        // Single bytes, pairs, writes that end exactly at a block's end, ones
        // larger than a block, and everything between.
        const uint32_t sizes[] = {1, 2, 1, 3, 65536 - 7, 1, 1, 65536, 1, 200000, 2, 65535, 1, 4097};
        uint32_t seed = 1;
        for (uint32_t size : sizes) {
            std::string chunk;
            for (uint32_t i = 0; i < size; i++) {
                seed = seed * 1103515245u + 12345u;
                chunk += char(seed >> 24);
            }
            EXPECT_TRUE(file.Write(chunk.data(), size));
            expected += chunk;
        }
        for (int i = 0; i < 300000; i++) {
            char byte = char(i * 7);
            EXPECT_TRUE(file.Write(&byte, 1));
            expected += byte;
        }
    }
    EXPECT_EQ(ReadBytes(path).size(), expected.size());
    EXPECT_TRUE(ReadBytes(path) == expected);
}

TEST(MFile, PositionAndSizeCountTheBytesNotYetHandedOver) {
#if defined(_WIN32)
    GTEST_SKIP() << "an open file is not shared for reading on Windows";
#endif
    fs::path path = FreshPath("pending.bin");
    MFile file;
    ASSERT_TRUE(file.Open(PathText(path), true, false));
    EXPECT_TRUE(file.Write("abcdef", 6));
    EXPECT_EQ(file.Tell(), 6);
    EXPECT_EQ(file.FileSize(), 6);
    EXPECT_TRUE(file.Write("gh", 2));
    EXPECT_EQ(file.FileSize(), 8);
    EXPECT_TRUE(file.Seek(2));
    EXPECT_TRUE(file.Write("XY", 2));
    EXPECT_TRUE(file.Flush());
    EXPECT_EQ(ReadBytes(path), "abXYefgh");
    EXPECT_TRUE(file.Flush()); // nothing pending
}

TEST(MFile, FlushHandsOverWhatIsPendingAndCloseDoesTooWithoutBeingAsked) {
#if defined(_WIN32)
    GTEST_SKIP() << "an open file is not shared for reading on Windows";
#endif
    fs::path path = FreshPath("flush.bin");
    MFile file;
    ASSERT_TRUE(file.Open(PathText(path), true, false));
    EXPECT_TRUE(file.Write("abc", 3));
    EXPECT_TRUE(file.Flush());
    EXPECT_EQ(ReadBytes(path), "abc");
    EXPECT_TRUE(file.Write("def", 3));
    file.Close();
    EXPECT_EQ(ReadBytes(path), "abcdef");
    EXPECT_EQ(file.PendingCount, 0);
    EXPECT_TRUE(file.Flush());
}

// The system refuses every write once the handle is gone: the refusal of
// gathered bytes shows when they are handed over, as false from the Write
// that fills the block or from Flush, as it did from a Write of its own.
TEST(MFile, AFailedHandOverReportsFailureAsAFailedWriteDid) {
    fs::path path = FreshPath("refused.bin");
    MFile file;
    ASSERT_TRUE(file.Open(PathText(path), true, false));
    PlatformFileClose(file.Handle);
    EXPECT_EQ(PlatformFileWrite(file.Handle, "a", 1), -1);
    // Larger than a block: straight to the system, refused at once.
    std::string large(70000, 'x');
    EXPECT_FALSE(file.Write(large.data(), uint32_t(large.size())));
    // Small writes are gathered; the refusal comes with the hand-over.
    EXPECT_TRUE(file.Write("abc", 3));
    EXPECT_FALSE(file.Flush());
    EXPECT_EQ(file.PendingCount, 0);
    std::string block(65536 - 1, 'y');
    EXPECT_TRUE(file.Write(block.data(), uint32_t(block.size())));
    EXPECT_FALSE(file.Write("z", 1)); // fills the block: handed over and refused
    EXPECT_TRUE(file.Write("abc", 3));
    EXPECT_FALSE(file.Write(large.data(), uint32_t(large.size())));
    file.Handle = nullptr; // already closed
    file.Close();
    EXPECT_EQ(ReadBytes(path), "");
}
