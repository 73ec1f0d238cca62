#include "foundation/Exceptions.h"
#include "foundation/IniFile.h"
#include "tests/support/Printing.h"
#include "tests/support/TempFolder.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

class IniFile : public testing::Test {
protected:
    QString Read(const QString& strSection, const QString& strKey) const {
        return ReadProfileString(strSection, strKey, u"<none>"_s, m_strPath);
    }
    QByteArray WriteInto(const QByteArray& before, const QString& strSection, const QString& strKey,
                         const QString& strValue) const {
        m_folder.Write(u"t.ini"_s, before);
        WriteProfileString(strSection, strKey, strValue, m_strPath);
        return m_folder.Read(u"t.ini"_s);
    }

    CTempFolder m_folder;
    QString m_strPath = m_folder.Path(u"t.ini"_s);
};

TEST_F(IniFile, FindsAValueAsIniReadersDo) {
    m_folder.Write(u"t.ini"_s,
                   "stray=0\r\n; [A]\r\n[A]\r\n;k=comment\r\n  K  =  v 1 \r\nk=second\r\nq=\" x \"\n"
                   "s='y'\rhalf=\"z\neq=a=b\nempty=\n=nameless\nno line of a key\n[b c]\n"
                   "\xBF\xCE=\xB3\xCC\n[A]\nlate=1\n[open\nk=open\n[last]\nend=1");
    const struct {
        QString strSection, strKey, strValue;
    } cases[] = {
        {u"a"_s, u"k"_s, u"v 1"_s},        {u"A"_s, u"q"_s, u" x "_s},       {u"A"_s, u"s"_s, u"y"_s},
        {u"A"_s, u"half"_s, u"\"z"_s},     {u"A"_s, u"eq"_s, u"a=b"_s},      {u"A"_s, u"empty"_s, u""_s},
        {u"A"_s, u"stray"_s, u"<none>"_s}, {u"A"_s, u"late"_s, u"<none>"_s}, {u"B C"_s, u"课"_s, u"程"_s},
        {u"open"_s, u"k"_s, u"open"_s},    {u"last"_s, u"END"_s, u"1"_s},    {u"none"_s, u"k"_s, u"<none>"_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Read(c.strSection, c.strKey), c.strValue) << c.strKey.toStdString();
    EXPECT_EQ(ReadProfileString(u"A"_s, u"k"_s, u"d"_s, m_folder.Path(u"none"_s)), u"d"_s);
}

TEST_F(IniFile, NamesAreComparedByCharacters) {
    // The second bytes of these two characters are "A" and "a".
    m_folder.Write(u"t.ini"_s, "[S]\n\x81\x41=upper\n\x81\x61=lower\n");
    EXPECT_EQ(Read(u"S"_s, u"乤"_s), u"lower"_s);
}

TEST_F(IniFile, NumbersHaveADefaultOnlyWhenTheKeyIsMissing) {
    m_folder.Write(u"t.ini"_s, "[S]\na= 12x\nb=-4\nc=text\nd=\n");
    const auto number = [&](const QString& strKey) { return ReadProfileInt(u"S"_s, strKey, 9, m_strPath); };
    EXPECT_EQ(number(u"a"_s), 12);
    EXPECT_EQ(number(u"b"_s), -4);
    EXPECT_EQ(number(u"c"_s), 0);
    EXPECT_EQ(number(u"d"_s), 0);
    EXPECT_EQ(number(u"e"_s), 9);
}

TEST_F(IniFile, AWriteChangesOneKeyAndNoOtherByte) {
    const struct {
        const char* szWhat;
        QByteArray before;
        QByteArray after;
    } cases[] = {
        {"a new file", "", "[S]\r\nKey=v\r\n"},
        {"in place, its spelling kept", "[s]\r\n kEY = old \r\nx=1", "[s]\r\n kEY =v\r\nx=1"},
        {"at the section's end, before its blank lines", "; c\n[S]\na=1\n\n[T]\nKey=t\n",
         "; c\n[S]\na=1\nKey=v\n\n[T]\nKey=t\n"},
        {"a file without a last line end", "[S]\r\na=1", "[S]\r\na=1\r\nKey=v\r\n"},
        {"another section", "\xFF\x81 junk\n[T]\nKey=t", "\xFF\x81 junk\n[T]\nKey=t\n[S]\nKey=v\n"},
        {"a comment that looks like the key", "[S]\r\n;Key=c\r\n", "[S]\r\n;Key=c\r\nKey=v\r\n"},
        {"the first of two", "[S]\nKey=1\nKey=2\n[S]\nKey=3\n", "[S]\nKey=v\nKey=2\n[S]\nKey=3\n"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(WriteInto(c.before, u"S"_s, u"Key"_s, u"v"_s), c.after) << c.szWhat;
        EXPECT_EQ(Read(u"S"_s, u"Key"_s), u"v"_s) << c.szWhat;
    }
}

TEST_F(IniFile, EveryValueComesBack) {
    for (const QString& strValue : {QString(), QString(5000, u'课'), u" blank "_s, u"\"quoted\""_s, u"'q'"_s,
                                    u"\""_s, u"a;b=[c]"_s, u"€😀é"_s, u"C:\\中\\"_s}) {
        WriteInto("[S]\r\nKey=old\r\nNext=1\r\n", u"S"_s, u"Key"_s, strValue);
        EXPECT_EQ(Read(u"S"_s, u"Key"_s), strValue);
        EXPECT_EQ(Read(u"S"_s, u"Next"_s), u"1"_s);
    }
    // A break in a value would forge a key.
    WriteInto("", u"S"_s, u"Key"_s, u"a\r\nNext=2"_s);
    EXPECT_EQ(Read(u"S"_s, u"Key"_s), u"a  Next=2"_s);
    EXPECT_EQ(Read(u"S"_s, u"Next"_s), u"<none>"_s);
}

TEST_F(IniFile, AFileThatCanNotBeWrittenIsAnError) {
    m_folder.MakeFolder(u"t.ini"_s);
    try {
        WriteProfileString(u"S"_s, u"k"_s, u"v"_s, m_strPath);
        FAIL();
    } catch (const Torvane::CRunException& e) {
        EXPECT_EQ(e.GetMessage(), u"Is a directory"_s);
    }
    EXPECT_EQ(Read(u"S"_s, u"k"_s), u"<none>"_s);
    EXPECT_THROW(WriteProfileString(u"S"_s, u"k"_s, u"v"_s, m_folder.Path(u"none\\t.ini"_s)),
                 Torvane::CRunException);
}

// Garbage of any size: read in bounded time, never written back cut.
TEST_F(IniFile, AHugeFileIsReadInBoundsAndNeverWritten) {
    QFile file(m_folder.Native(u"t.ini"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[S]\nk=v\n" + QByteArray("k=v\n").repeated(1000000));
    ASSERT_TRUE(file.resize(300 * 1024 * 1024));
    file.close();
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(Read(u"S"_s, u"k"_s), u"v"_s);
    EXPECT_EQ(Read(u"S"_s, u"none"_s), u"<none>"_s);
    EXPECT_LT(timer.elapsed(), 5000);
    EXPECT_THROW(WriteProfileString(u"S"_s, u"k"_s, u"w"_s, m_strPath), Torvane::CRunException);
    EXPECT_EQ(QFileInfo(file).size(), 300 * 1024 * 1024);
}

} // namespace
