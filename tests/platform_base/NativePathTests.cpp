#include "platform/base/NativePath.h"
#include "tests/support/Printing.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;
using Platform::FromNative;
using Platform::ToNative;
using Platform::ToNativeExact;

namespace {

TEST(NativePath, DriveZIsTheRootFolder) {
    const struct {
        QString strPath;
        QString strNative;
    } cases[] = {
        {u"Z:\\home\\li\\课程"_s, u"/home/li/课程"_s},
        {u"z:\\a b\\"_s, u"/a b/"_s},
        {u"Z:"_s, u"/"_s},
        {u"Z:\\"_s, u"/"_s},
        {u"/home/li"_s, u"/home/li"_s},
        {u"a\\b"_s, u"a/b"_s},
        {u""_s, u""_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ToNativeExact(c.strPath), c.strNative);
    EXPECT_EQ(Platform::ToShown(u"Z:\\课程\\a"_s), u"/课程/a"_s);
    EXPECT_EQ(Platform::ToShown(u"C:\\a"_s), u"C:\\a"_s);
    EXPECT_EQ(FromNative(u"/home/li/课程"_s), u"Z:\\home\\li\\课程"_s);
    EXPECT_EQ(FromNative(u"/"_s), u"Z:\\"_s);
    EXPECT_EQ(FromNative(u"C:\\x"_s), u"C:\\x"_s);
    EXPECT_EQ(FromNative(u"\\\\server\\x/y"_s), u"\\\\server\\x/y"_s);
}

// A path of another machine must not land in this one's root folder, nor one cut at a zero hit another file.
TEST(NativePath, WhatThisMachineDoesNotHaveCanNotExist) {
    CTempFolder folder;
    folder.Write(u"real"_s, "x");
    const QString strBelow = folder.Path().mid(2);
    for (const QString& strPath :
         {QString(u"C:"_s + strBelow), QString(u"\\"_s + strBelow), QString(u"Z:relative"_s),
          QString(folder.Path(u"real"_s) + QChar(0) + u"tail"_s)}) {
        const QString strNative = ToNative(strPath);
        EXPECT_FALSE(QFileInfo::exists(strNative)) << strNative.toStdString();
        EXPECT_FALSE(QDir().mkpath(strNative));
    }
}

TEST(NativePath, LooksUpAnotherCaseOnlyWhenTheSpellingIsNotThere) {
    CTempFolder folder;
    folder.Write(u"Data\\Pic.JPG"_s, "1");
    folder.Write(u"Both\\a.txt"_s, "2");
    folder.Write(u"Both\\A.txt"_s, "3");
    folder.Write(u"É.txt"_s, "4");
    const auto native = [&](const QString& str) { return ToNative(folder.Path(str)); };
    EXPECT_EQ(native(u"data\\pic.jpg"_s), folder.Native(u"Data/Pic.JPG"_s));
    EXPECT_EQ(native(u"both\\a.txt"_s), folder.Native(u"Both/a.txt"_s));
    EXPECT_EQ(native(u"BOTH\\A.TXT"_s), folder.Native(u"Both/A.txt"_s));
    // The part that is there is found, the rest keeps its spelling.
    EXPECT_EQ(native(u"DATA\\New\\x"_s), folder.Native(u"Data/New/x"_s));
    EXPECT_EQ(native(u"data\\"_s), folder.Native(u"Data/"_s));
    // Only ASCII letters have a case here.
    EXPECT_EQ(native(u"é.txt"_s), folder.Native(u"é.txt"_s));
}

} // namespace
