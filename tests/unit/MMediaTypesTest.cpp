// The media type table: the fixed lists, the picture decoders' extensions,
// the sorting and the dialog filters.

#include "drawing/MMediaTypes.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#ifdef _WIN32
#include <objbase.h>
#endif

namespace {

std::vector<std::u16string> List(int32_t slot) {
    std::vector<std::u16string> list;
    const MMediaSlot& s = MMediaTypes[slot];
    for (int32_t i = 0; i < s.ExtensionCount; i++)
        list.push_back(s.Extensions[i].Chars());
    return list;
}

std::u16string Filter(int32_t slot) {
    const MMediaSlot& s = MMediaTypes[slot];
    return std::u16string(s.Filter.Data, size_t(s.Filter.Count));
}

int Occurrences(int32_t slot, const std::u16string& extension) {
    int count = 0;
    for (const std::u16string& e : List(slot))
        count += e == extension;
    return count;
}

bool Sorted(const std::vector<std::u16string>& list) {
    for (size_t i = 1; i < list.size(); i++)
        if (!(list[i - 1] < list[i])) return false; // u16string compares by code unit
    return true;
}

const std::vector<std::u16string> VideoSorted = {
    u"3GP", u"ASF", u"AVI", u"BDMV", u"DIVX", u"FLV",  u"GIF",  u"HDMOV", u"M2T", u"M2TS",
    u"M4V", u"MKA", u"MKV", u"MOV",  u"MP4",  u"MPEG", u"MPG",  u"MPLS",  u"MTS", u"OGA",
    u"OGG", u"OGM", u"OGV", u"QT",   u"TS",   u"VOB",  u"WEBM", u"WMV"};

const std::vector<std::u16string> FallbackPictures = {u"BMP", u"DDS", u"GIF", u"JPE", u"JPEG",
                                                      u"JPG", u"PNG", u"TGA", u"TIF", u"TIFF"};

class MediaTypes : public ::testing::Test {
  protected:
    void TearDown() override { ClearMediaTypes(); }
};

} // namespace

TEST_F(MediaTypes, TwentyThreeSlotsWithTheirNames) {
    ASSERT_TRUE(BuildMediaTypesWith(MString()));
    const char16_t* names[MediaTypeCount] = {u"Text files",
                                             u"Cinderlane show files",
                                             u"Cinderlane playlists",
                                             u"Cinderlane presets",
                                             u"Cinderlane colour fonts",
                                             u"Cinderlane uncompiled effects",
                                             u"Cinderlane effects",
                                             u"Cube map files",
                                             u"(Animated) GIF files",
                                             u"Video files",
                                             u"Vector files",
                                             u"Audio files",
                                             u"XML files",
                                             u"3D model files",
                                             u"Picture files",
                                             u"Server scripts",
                                             u"Webcams",
                                             u"QR code",
                                             u"Dynamic colour maps",
                                             u"Dynamic cube maps",
                                             u"Dynamic glow maps",
                                             u"Previous frame",
                                             u"Picture and video files"};
    for (int32_t i = 0; i < MediaTypeCount; i++) {
        ASSERT_NE(MMediaTypes[i].DisplayName, nullptr) << i;
        EXPECT_EQ(std::u16string(MMediaTypes[i].DisplayName), std::u16string(names[i])) << i;
    }
}

TEST_F(MediaTypes, FixedListsAreSortedByCodeUnit) {
    ASSERT_TRUE(BuildMediaTypesWith(MString()));
    EXPECT_EQ(List(MediaText), std::vector<std::u16string>({u"TXT"}));
    EXPECT_EQ(List(MediaShow), std::vector<std::u16string>({u"CND"}));
    EXPECT_EQ(List(MediaPlaylist), std::vector<std::u16string>({u"CNPL"}));
    EXPECT_EQ(List(MediaPreset), std::vector<std::u16string>({u"CNP"}));
    EXPECT_EQ(List(MediaColourFont), std::vector<std::u16string>({u"CNF"}));
    EXPECT_EQ(List(MediaUncompiledEffect), std::vector<std::u16string>({u"CNX"}));
    EXPECT_EQ(List(MediaEffect), std::vector<std::u16string>({u"CFX"}));
    EXPECT_EQ(List(MediaCubeMap), std::vector<std::u16string>({u"DDS"}));
    EXPECT_EQ(List(MediaGif), std::vector<std::u16string>({u"GIF"}));
    EXPECT_EQ(List(MediaVideo), VideoSorted);
    EXPECT_EQ(List(MediaVector), std::vector<std::u16string>({u"EPS"}));
    EXPECT_EQ(List(MediaAudio), std::vector<std::u16string>(
                                    {u"AAC", u"M4A", u"MID", u"MP3", u"OPUS", u"WAV", u"WMA"}));
    EXPECT_EQ(List(MediaXml), std::vector<std::u16string>({u"XML"}));
    EXPECT_EQ(List(MediaModel), std::vector<std::u16string>({u"GLB", u"OBJ", u"STL", u"X"}));
    EXPECT_EQ(List(MediaServerScript),
              std::vector<std::u16string>({u"ASP", u"ASPX", u"HTM", u"HTML", u"JSP", u"PHP"}));
    for (int32_t slot = MediaWebcam; slot <= MediaPreviousFrame; slot++) {
        EXPECT_EQ(MMediaTypes[slot].ExtensionCount, 0) << slot;
        EXPECT_EQ(MMediaTypes[slot].Filter.Count, 0) << slot;
    }
}

TEST_F(MediaTypes, WithNoDecoderListedTheFallbackStandsBesideTgaAndDds) {
    ASSERT_TRUE(BuildMediaTypesWith(MString()));
    EXPECT_EQ(List(MediaPicture), FallbackPictures);
}

TEST_F(MediaTypes, DecoderExtensionsReplaceTheFallback) {
    ASSERT_TRUE(BuildMediaTypesWith(MString(u".bmp,.dib,.rle.png,.jxr;.wdp ,.jp2")));
    EXPECT_EQ(List(MediaPicture),
              std::vector<std::u16string>(
                  {u"BMP", u"DDS", u"DIB", u"JP2", u"JXR", u"PNG", u"RLE", u"TGA", u"WDP"}));
}

TEST_F(MediaTypes, OnlyLettersAndDigitsBuildAnExtension) {
    // Lower case is raised first; any other character, a non-ASCII letter
    // too, ends an extension.
    ASSERT_TRUE(BuildMediaTypesWith(MString(u"a1b\u00e9cd-e_f")));
    EXPECT_EQ(List(MediaPicture),
              std::vector<std::u16string>({u"A1B", u"CD", u"DDS", u"E", u"F", u"TGA"}));
}

TEST_F(MediaTypes, ADecoderOfferingEpsDoesNotMakeItAPicture) {
    ASSERT_TRUE(BuildMediaTypesWith(MString(u".png,.Eps,.ai")));
    EXPECT_EQ(Occurrences(MediaPicture, u"EPS"), 0);
    EXPECT_EQ(Occurrences(MediaPictureAndVideo, u"EPS"), 0);
    EXPECT_EQ(Occurrences(MediaPicture, u"PNG"), 1);
    EXPECT_EQ(Occurrences(MediaPicture, u"AI"), 1);
    EXPECT_EQ(Occurrences(MediaVector, u"EPS"), 1); // the vector slot keeps its own
}

TEST_F(MediaTypes, ADuplicateFromTwoDecodersIsHeldOnce) {
    ASSERT_TRUE(BuildMediaTypesWith(MString(u".jpg,.jpeg,.jpe,.jfif.JPG,.Jpg")));
    EXPECT_EQ(Occurrences(MediaPicture, u"JPG"), 1);
    EXPECT_EQ(Occurrences(MediaPictureAndVideo, u"JPG"), 1);
    EXPECT_EQ(List(MediaPicture),
              std::vector<std::u16string>({u"DDS", u"JFIF", u"JPE", u"JPEG", u"JPG", u"TGA"}));
}

TEST_F(MediaTypes, GifAndDdsStandInTwoSlotsEach) {
    ASSERT_TRUE(BuildMediaTypesWith(MString(u".gif,.dds")));
    EXPECT_EQ(Occurrences(MediaGif, u"GIF"), 1);
    EXPECT_EQ(Occurrences(MediaVideo, u"GIF"), 1);
    EXPECT_EQ(Occurrences(MediaCubeMap, u"DDS"), 1);
    EXPECT_EQ(Occurrences(MediaPicture, u"DDS"), 1);
    EXPECT_EQ(Occurrences(MediaPicture, u"GIF"), 1);
    EXPECT_EQ(Occurrences(MediaPictureAndVideo, u"GIF"), 1);
}

TEST_F(MediaTypes, SlotTwentyTwoIsTheUnionOfVideoAndPictures) {
    ASSERT_TRUE(BuildMediaTypesWith(MString(u".png,.heic,.avif")));
    std::set<std::u16string> expected;
    for (const std::u16string& e : List(MediaVideo))
        expected.insert(e);
    for (const std::u16string& e : List(MediaPicture))
        expected.insert(e);
    std::vector<std::u16string> union_ = List(MediaPictureAndVideo);
    EXPECT_EQ(std::set<std::u16string>(union_.begin(), union_.end()), expected);
    EXPECT_EQ(union_.size(), expected.size());
    EXPECT_TRUE(Sorted(union_));
    EXPECT_EQ(union_.size(), VideoSorted.size() + 5); // and TGA, DDS, PNG, HEIC, AVIF
}

TEST_F(MediaTypes, AddExtensionRaisesCaseAndFeedsSlotTwentyTwo) {
    ClearMediaTypes();
    AddExtension(MediaVideo, MString(u"mkv"));
    AddExtension(MediaVideo, MString(u"MKV"));
    AddExtension(MediaPicture, MString(u"eps"));
    AddExtension(MediaVector, MString(u"eps"));
    AddExtension(MediaAudio, MString(u"ogg"));
    EXPECT_EQ(List(MediaVideo), std::vector<std::u16string>({u"MKV"}));
    EXPECT_EQ(List(MediaPictureAndVideo), std::vector<std::u16string>({u"MKV"}));
    EXPECT_EQ(List(MediaPicture), std::vector<std::u16string>());
    EXPECT_EQ(List(MediaVector), std::vector<std::u16string>({u"EPS"}));
    EXPECT_EQ(List(MediaAudio), std::vector<std::u16string>({u"OGG"}));
}

TEST_F(MediaTypes, FilterOfOneExtension) {
    ASSERT_TRUE(BuildMediaTypesWith(MString()));
    // Each literal's own terminator is the zero that ends the filter.
    const char16_t text[] = u"Text files (*.TXT)\0*.TXT;\0";
    EXPECT_EQ(Filter(MediaText), std::u16string(text, sizeof text / sizeof text[0]));
    EXPECT_EQ(Filter(MediaText).size(), 27u);
    const char16_t gif[] = u"(Animated) GIF files (*.GIF)\0*.GIF;\0";
    EXPECT_EQ(Filter(MediaGif), std::u16string(gif, sizeof gif / sizeof gif[0]));
}

TEST_F(MediaTypes, FilterOfSeveralExtensions) {
    ASSERT_TRUE(BuildMediaTypesWith(MString()));
    const char16_t expected[] = u"All 3D model files\0*.GLB;*.OBJ;*.STL;*.X;\0"
                                u"*.GLB\0*.GLB;\0*.OBJ\0*.OBJ;\0*.STL\0*.STL;\0*.X\0*.X;\0";
    EXPECT_EQ(Filter(MediaModel), std::u16string(expected, sizeof expected / sizeof expected[0]));
    const char16_t pictures[] =
        u"All Picture files\0*.BMP;*.DDS;*.GIF;*.JPE;*.JPEG;*.JPG;*.PNG;*.TGA;*.TIF;*.TIFF;\0"
        u"*.BMP\0*.BMP;\0*.DDS\0*.DDS;\0*.GIF\0*.GIF;\0*.JPE\0*.JPE;\0*.JPEG\0*.JPEG;\0"
        u"*.JPG\0*.JPG;\0*.PNG\0*.PNG;\0*.TGA\0*.TGA;\0*.TIF\0*.TIF;\0*.TIFF\0*.TIFF;\0";
    EXPECT_EQ(Filter(MediaPicture), std::u16string(pictures, sizeof pictures / sizeof pictures[0]));
}

TEST_F(MediaTypes, ServerScriptsAreAskedByExtension) {
    ASSERT_TRUE(BuildMediaTypesWith(MString()));
    EXPECT_TRUE(MediaTypeHas(MediaServerScript, MString(u"php")));
    EXPECT_TRUE(MediaTypeHas(MediaServerScript, MString(u"HTML")));
    EXPECT_FALSE(MediaTypeHas(MediaServerScript, MString(u"EPS")));
    EXPECT_FALSE(MediaTypeHas(MediaServerScript, MString()));
    EXPECT_FALSE(MediaTypeHas(99, MString(u"PHP")));
}

TEST_F(MediaTypes, ASecondBuildStartsFromAnEmptyTable) {
    ASSERT_TRUE(BuildMediaTypesWith(MString(u".heic")));
    ASSERT_TRUE(BuildMediaTypesWith(MString()));
    EXPECT_EQ(List(MediaPicture), FallbackPictures);
    EXPECT_EQ(List(MediaText), std::vector<std::u16string>({u"TXT"}));
}

// The installed decoders: the native build lists none and stands on the
// fallback; Windows lists WIC's, which read at least PNG, BMP, JPEG, GIF and
// TIFF.
TEST_F(MediaTypes, BuildMediaTypesListsTheInstalledDecoders) {
#ifdef _WIN32
    bool com = SUCCEEDED(CoInitialize(nullptr));
    MString decoders = PlatformDecoderExtensions();
    ASSERT_TRUE(BuildMediaTypes());
    if (com) CoUninitialize();
    EXPECT_FALSE(decoders.IsEmpty());
    for (const char16_t* e :
         {u"PNG", u"BMP", u"JPG", u"JPEG", u"GIF", u"TIF", u"TIFF", u"TGA", u"DDS"})
        EXPECT_EQ(Occurrences(MediaPicture, e), 1) << std::string(e, e + 3);
    EXPECT_EQ(Occurrences(MediaPicture, u"EPS"), 0);
#else
    EXPECT_TRUE(PlatformDecoderExtensions().IsEmpty());
    ASSERT_TRUE(BuildMediaTypes());
    EXPECT_EQ(List(MediaPicture), FallbackPictures);
#endif
    EXPECT_TRUE(Sorted(List(MediaPicture)));
    EXPECT_TRUE(Sorted(List(MediaPictureAndVideo)));
}
