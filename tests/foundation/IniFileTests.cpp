#include "foundation/Exceptions.h"
#include "foundation/IniFile.h"
#include "tests/support/Testing.h"

namespace {

class IniFile : public testing::Test {
protected:
    QString Read(const QString& strSection, const QString& strKey) const {
        return ReadProfileString(strSection, strKey, u"<none>"_s, m_strPath);
    }
    QByteArray WriteInto(const QByteArray& before, const QString& strValue) const {
        m_folder.Write(u"t.ini"_s, before);
        WriteProfileString(u"S"_s, u"Key"_s, strValue, m_strPath);
        return m_folder.Read(u"t.ini"_s);
    }

    CTempFolder m_folder;
    QString m_strPath = m_folder.Path(u"t.ini"_s);
};

TEST_F(IniFile, FindsAValueAsIniReadersDo) {
    // The second bytes of the last two names are "A" and "a".
    m_folder.Write(u"t.ini"_s,
                   "stray=0\r\n; [A]\r\n[A]\r\n;k=comment\r\n  K  =  v 1 \r\nk=second\r\nq=\" x \"\n"
                   "s='y'\rhalf=\"z\neq=a=b\nempty=\n=nameless\nno line of a key\n[b c]\n"
                   "\xBF\xCE=\xB3\xCC\n[A]\nlate=1\n[open\nk=open\n[last]\nend=1\n"
                   "\x81\x41=upper\n\x81\x61=lower");
    const struct {
        QString strSection, strKey, strValue;
    } cases[] = {
        {u"a"_s, u"k"_s, u"v 1"_s},        {u"A"_s, u"q"_s, u" x "_s},       {u"A"_s, u"s"_s, u"y"_s},
        {u"A"_s, u"half"_s, u"\"z"_s},     {u"A"_s, u"eq"_s, u"a=b"_s},      {u"A"_s, u"empty"_s, u""_s},
        {u"A"_s, u"stray"_s, u"<none>"_s}, {u"A"_s, u"late"_s, u"<none>"_s}, {u"B C"_s, u"课"_s, u"程"_s},
        {u"open"_s, u"k"_s, u"open"_s},    {u"last"_s, u"END"_s, u"1"_s},    {u"none"_s, u"k"_s, u"<none>"_s},
        {u"last"_s, u"乤"_s, u"lower"_s}};
    for (const auto& c : cases)
        EXPECT_EQ(Read(c.strSection, c.strKey), c.strValue) << c.strKey;
    EXPECT_EQ(ReadProfileString(u"A"_s, u"k"_s, u"d"_s, m_folder.Path(u"none"_s)), u"d"_s);
}

TEST_F(IniFile, AWriteChangesOneKeyAndNoOtherByte) {
    const struct {
        const char* szWhat;
        QByteArray before, after;
    } cases[] = {{"a new file", "", "[S]\r\nKey=v\r\n"},
                 {"in place, its spelling kept", "[s]\r\n kEY = old \r\nx=1", "[s]\r\n kEY =v\r\nx=1"},
                 {"at the section's end, before its blank lines", "; c\n[S]\na=1\n\n[T]\nKey=t\n",
                  "; c\n[S]\na=1\nKey=v\n\n[T]\nKey=t\n"},
                 {"a file without a last line end", "[S]\r\na=1", "[S]\r\na=1\r\nKey=v\r\n"},
                 {"another section", "\xFF\x81 junk\n[T]\nKey=t", "\xFF\x81 junk\n[T]\nKey=t\n[S]\nKey=v\n"},
                 {"a comment that looks like the key", "[S]\r\n;Key=c\r\n", "[S]\r\n;Key=c\r\nKey=v\r\n"},
                 {"the first of two", "[S]\nKey=1\nKey=2\n[S]\nKey=3\n", "[S]\nKey=v\nKey=2\n[S]\nKey=3\n"}};
    for (const auto& c : cases)
        EXPECT_EQ(WriteInto(c.before, u"v"_s), c.after) << c.szWhat;
}

TEST_F(IniFile, EveryValueComesBack) {
    for (const QString& strValue : {QString(), QString(5000, u'课'), u" blank "_s, u"\"quoted\""_s, u"'q'"_s,
                                    u"\""_s, u"a;b=[c]"_s, u"€😀é"_s, u"C:\\中\\"_s}) {
        WriteInto("[S]\r\nKey=old\r\nNext=1\r\n", strValue);
        EXPECT_EQ(Read(u"S"_s, u"Key"_s), strValue);
        EXPECT_EQ(Read(u"S"_s, u"Next"_s), u"1"_s);
    }
    EXPECT_EQ(WriteInto("", u"a\r\nNext=2"_s), "[S]\r\nKey=a  Next=2\r\n") << "a break would forge a key";
}

TEST_F(IniFile, WhatCanNotBeWrittenIsAnError) {
    const auto write = [&](const QString& strPath) { WriteProfileString(u"S"_s, u"k"_s, u"w"_s, strPath); };
    EXPECT_THROW(write(m_folder.Path()), Torvane::CRunException);
    EXPECT_THROW(write(m_folder.Path(u"none\\t.ini"_s)), Torvane::CRunException);
    // Garbage of any size is read in bounds, and never written back cut.
    m_folder.Write(u"t.ini"_s, "[S]\nk=v\n");
    QFile file(m_folder.Native(u"t.ini"_s));
    ASSERT_TRUE(file.resize(300 * 1024 * 1024));
    EXPECT_EQ(Read(u"S"_s, u"k"_s), u"v"_s);
    EXPECT_THROW(write(m_strPath), Torvane::CRunException);
    EXPECT_EQ(file.size(), 300 * 1024 * 1024);
}

} // namespace
