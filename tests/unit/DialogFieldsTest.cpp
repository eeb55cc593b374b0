// The shared field writers and readers, on in-memory dialogs: a writer leaves
// a field alone when its text already means the value, and a reader takes 15
// characters at most.

#include "dialogs/DialogFields.h"

#include "dialogs/Dialog.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

std::u16string U16(const MString& text) {
    return std::u16string(text.Chars());
}

class DialogFields : public ::testing::Test {
  protected:
    WDialogHandler Handler;
    void* Dialog = nullptr;
    void SetUp() override { Dialog = CreateModelessDialog(131, nullptr, Handler); }
    void TearDown() override { DestroyDialog(Dialog); }
    std::u16string Text(int32_t id) { return U16(GetControlText(Dialog, id)); }
    void Type(int32_t id, const char16_t* text) { SetControlText(Dialog, id, MString(text)); }
};

} // namespace

TEST_F(DialogFields, SetTextWritesOnlyADifferentText) {
    SetText(Dialog, 5, MString(u"abc"));
    EXPECT_EQ(Text(5), u"abc");
    SetText(Dialog, 5, MString());
    EXPECT_EQ(Text(5), u"");
    SetText(Dialog, MString(u"Quillmere - Point"));
    EXPECT_EQ(U16(GetWindowTextOf(Dialog)), u"Quillmere - Point");
}

TEST_F(DialogFields, SetFieldIntKeepsATextThatParsesToTheValue) {
    Type(1, u"0012");
    SetFieldInt(Dialog, 1, 12, false);
    EXPECT_EQ(Text(1), u"0012");
    Type(1, u"12abc");
    SetFieldInt(Dialog, 1, 12, true);
    EXPECT_EQ(Text(1), u"12abc");
    SetFieldInt(Dialog, 1, -7, false);
    EXPECT_EQ(Text(1), u"-7");
}

TEST_F(DialogFields, SetFieldIntLeavesAnEmptyFieldForZeroUnlessAskedToFill) {
    Type(1, u"");
    SetFieldInt(Dialog, 1, 0, false);
    EXPECT_EQ(Text(1), u"");
    SetFieldInt(Dialog, 1, 0, true);
    EXPECT_EQ(Text(1), u"0");
    Type(1, u"");
    SetFieldInt(Dialog, 1, 3, false);
    EXPECT_EQ(Text(1), u"3");
    // Text that is no number reads as 0, so 0 leaves it.
    Type(1, u"abc");
    SetFieldInt(Dialog, 1, 0, false);
    EXPECT_EQ(Text(1), u"abc");
}

TEST_F(DialogFields, SetFieldFloatKeepsTheTypedForm) {
    Type(2, u"1.");
    SetFieldFloat(Dialog, 2, 1.0f);
    EXPECT_EQ(Text(2), u"1.");
    SetFieldFloat(Dialog, 2, 2.5f);
    EXPECT_EQ(Text(2), u"2.5");
    // Within the zero test of the value.
    Type(2, u"0.00001");
    SetFieldFloat(Dialog, 2, 0.0f);
    EXPECT_EQ(Text(2), u"0.00001");
    Type(2, u"0.001");
    SetFieldFloat(Dialog, 2, 0.0f);
    EXPECT_EQ(Text(2), u"0");
}

TEST_F(DialogFields, SetFieldFloatFillsAnEmptyFieldAndReadsNotANumberAsZero) {
    Type(2, u"");
    SetFieldFloat(Dialog, 2, 0.0f);
    EXPECT_EQ(Text(2), u"0");
    Type(2, u"nan");
    SetFieldFloat(Dialog, 2, 0.0f);
    EXPECT_EQ(Text(2), u"nan");
    SetFieldFloat(Dialog, 2, -0.25f);
    EXPECT_EQ(Text(2), u"-0.25");
}

TEST_F(DialogFields, SetComboIndexClampsToTheList) {
    SetComboIndex(Dialog, 3, 1); // no entries yet
    EXPECT_EQ(ComboSelection(Dialog, 3), -1);
    for (const char16_t* item : {u"Move", u"Line", u"Curve"})
        AddComboItem(Dialog, 3, MString(item));
    SetComboIndex(Dialog, 3, 7);
    EXPECT_EQ(ComboSelection(Dialog, 3), 2);
    SetComboIndex(Dialog, 3, -4);
    EXPECT_EQ(ComboSelection(Dialog, 3), 0);
    SetComboIndex(Dialog, 3, 1);
    EXPECT_EQ(ComboSelection(Dialog, 3), 1);
}

TEST_F(DialogFields, ReadersTakeFifteenCharacters) {
    Type(4, u"123456789012345");
    EXPECT_EQ(U16(ReadFieldText(Dialog, 4)), u"123456789012345");
    EXPECT_EQ(ReadFieldInt(Dialog, 4), INT32_MAX); // clamped as the parser does
    Type(4, u"1234567890123456");
    EXPECT_EQ(U16(ReadFieldText(Dialog, 4)), u"123456789012345");
    Type(4, u"000000000000001");
    EXPECT_EQ(ReadFieldInt(Dialog, 4), 1);
    Type(4, u"0000000000000001");
    EXPECT_EQ(ReadFieldInt(Dialog, 4), 0); // the last digit is cut off
    Type(4, u"0.00000000000015");
    EXPECT_FLOAT_EQ(ReadFieldFloat(Dialog, 4), 0.0000000000001f);
}

TEST_F(DialogFields, ReadersGiveZeroForBadText) {
    for (const char16_t* text : {u"", u"abc", u"nan", u"-nan", u"x"}) {
        Type(4, text);
        EXPECT_EQ(ReadFieldInt(Dialog, 4), 0) << U16(MString(text)).size();
        EXPECT_EQ(ReadFieldFloat(Dialog, 4), 0.0f);
    }
    Type(4, u"99999999999999");
    EXPECT_EQ(ReadFieldInt(Dialog, 4), INT32_MAX);
    Type(4, u"-99999999999999");
    EXPECT_EQ(ReadFieldInt(Dialog, 4), INT32_MIN);
    Type(4, u"1e39");
    EXPECT_TRUE(std::isinf(ReadFieldFloat(Dialog, 4)));
}
