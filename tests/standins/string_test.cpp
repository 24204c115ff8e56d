#include <vz/exception.h>
#include <vz/string.h>
#include <vz/uint32.h>

#include <gtest/gtest.h>

namespace {

TEST(String, CopiesAreIndependentOfTheirSource) {
    wchar_t text[] = L"camera";
    vz::CString fromText(text);
    text[0] = L'C';
    vz::CString assigned(L"other");
    assigned = fromText;
    const vz::CString copied(fromText);
    fromText = L"changed";

    EXPECT_STREQ(copied.c_str(), L"camera");
    EXPECT_STREQ(assigned.c_str(), L"camera");
    EXPECT_EQ(copied.GetLength(), 6u);
}

TEST(String, NullAndDefaultAreEmpty) {
    EXPECT_STREQ(vz::CString().c_str(), L"");
    EXPECT_STREQ(vz::CString(nullptr).c_str(), L"");
    EXPECT_EQ(vz::CString(nullptr).GetLength(), 0u);
}

TEST(String, ComparesByText) {
    const vz::CString text(L"Tamso");
    EXPECT_TRUE(text == vz::CString(L"Tamso"));
    EXPECT_TRUE(L"Tamso" == text);
    EXPECT_FALSE(text == L"tamso");
    EXPECT_TRUE(text != L"Tams");
    EXPECT_TRUE(vz::CString() == nullptr);
}

TEST(Exception, KeepsItsMessageThroughCopies) {
    const vz::CException original(L"Index out of bounds.");
    const vz::CException copy(original);
    EXPECT_STREQ(copy.Message().c_str(), L"Index out of bounds.");
}

TEST(UInt32, MaxIsReadFromTheLibrary) {
    EXPECT_EQ(vz::CUInt32::Max, 4294967295u);
}

} // namespace
