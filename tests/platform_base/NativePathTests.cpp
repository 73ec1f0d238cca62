#include "platform/base/NativePath.h"
#include "tests/support/Testing.h"

using namespace Platform;

namespace {

TEST(NativePath, DriveZIsTheRootFolder) {
    const std::pair<QString, QString> cases[] = {{ToNativeExact(u"z:\\a b\\课程\\"_s), u"/a b/课程/"_s},
                                                 {ToNativeExact(u"Z:"_s), u"/"_s},
                                                 {ToNativeExact(u"/home/li"_s), u"/home/li"_s},
                                                 {ToNativeExact(u"a\\b"_s), u"a/b"_s},
                                                 {ToShown(u"Z:\\课程\\a"_s), u"/课程/a"_s},
                                                 {ToShown(u"C:\\a"_s), u"C:\\a"_s},
                                                 {FromNative(u"/home/li/课程"_s), u"Z:\\home\\li\\课程"_s},
                                                 {FromNative(u"/"_s), u"Z:\\"_s},
                                                 {FromNative(u"\\\\server\\x/y"_s), u"\\\\server\\x/y"_s}};
    for (const auto& [strMade, strExpected] : cases)
        EXPECT_EQ(strMade, strExpected);
}

// A path of another machine must not land in this one's root folder, nor one cut at a zero hit another file.
TEST(NativePath, WhatThisMachineDoesNotHaveCanNotExist) {
    const CTempFolder folder;
    folder.Write(u"real"_s, "x");
    const QString strBelow = folder.Path().mid(2);
    for (const QString& strPath :
         std::initializer_list<QString>{u"C:"_s + strBelow, u"\\"_s + strBelow, u"Z:relative"_s,
                                        folder.Path(u"real"_s) + QChar(0) + u"tail"_s}) {
        EXPECT_FALSE(QFileInfo::exists(ToNative(strPath))) << strPath;
        EXPECT_FALSE(QDir().mkpath(ToNative(strPath)));
    }
}

TEST(NativePath, LooksUpAnotherCaseOnlyWhenTheSpellingIsNotThere) {
    const CTempFolder folder;
    for (const QString& str : {u"Data\\Pic.JPG"_s, u"Both\\a.txt"_s, u"Both\\A.txt"_s, u"É.txt"_s})
        folder.Write(str, "1");
    const std::pair<QString, QString> cases[] = {{u"data\\pic.jpg"_s, u"Data/Pic.JPG"_s},
                                                 {u"both\\a.txt"_s, u"Both/a.txt"_s},
                                                 {u"BOTH\\A.TXT"_s, u"Both/A.txt"_s},
                                                 {u"DATA\\New\\x"_s, u"Data/New/x"_s},
                                                 {u"data\\"_s, u"Data/"_s},
                                                 {u"é.txt"_s, u"é.txt"_s}};
    for (const auto& [strPath, strNative] : cases)
        EXPECT_EQ(ToNative(folder.Path(strPath)), folder.Native(strNative));
}

} // namespace
