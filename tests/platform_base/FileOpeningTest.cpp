#include "platform/base/FileOpening.h"

#include "platform/base/Process.h"
#include "tests/support/Environment.h"
#include "tests/support/SessionBus.h"
#include "tests/support/Testing.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QLocale>

namespace {

/// A desktop of the test's own.
class CFileOpening : public ::testing::Test {
protected:
    CFileOpening() {
        m_folder.MakeFolder(u"usr"_s);
        m_folder.Link(u"/usr/share/mime"_s, u"usr/mime"_s);
        for (const QString& strTool : {u"a"_s, u"b"_s, u"c"_s}) {
            WriteTool(strTool);
            WriteEntry(u"usr"_s, strTool, strTool + u" %f"_s);
        }
    }
    /// Writes its arguments, each with a "|" behind it, when "go" stands beside it.
    void WriteTool(const QString& strName) const {
        m_folder.WriteProgram(u"bin\\"_s + strName,
                              "#!/bin/sh\ncd \"$(dirname \"$0\")\"\nwhile [ ! -e go ]; do sleep 0.05; done\n"
                              "printf '%s|' \"$@\" > out.tmp\nmv out.tmp out\n");
    }
    void WriteEntry(const QString& strPlace, const QString& strName, const QString& strExec,
                    const QByteArray& more = {}) const {
        m_folder.Write(
            strPlace + u"\\applications\\"_s + strName + u".desktop"_s,
            "# made by hand\n[Desktop Entry]\nType=Application\nName=The Writer\nName[zh_CN]=文字 处理\n"
            "Icon=pen\nExec=" +
                strExec.toUtf8() + "\n" + more);
    }
    QString WordsFor(const QString& strExtension) const {
        return Platform::SplitCommandLine(Platform::GetEditCommand(strExtension)).join(u'|');
    }

    CTempFolder m_folder;
    CEnvironment m_environment{{"XDG_CONFIG_HOME", m_folder.Native(u"config"_s)},
                               {"XDG_CONFIG_DIRS", m_folder.Native(u"etc"_s)},
                               {"XDG_DATA_HOME", m_folder.Native(u"home"_s)},
                               {"XDG_DATA_DIRS", m_folder.Native(u"usr"_s)},
                               {"XDG_CURRENT_DESKTOP", u"Unity:GNOME"_s},
                               {"PATH", m_folder.Native(u"bin"_s) + u":/usr/bin:/bin"_s}};
};

TEST_F(CFileOpening, NamesTheTypeOfAnEndingForProgramsAndPeople) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China));
    EXPECT_EQ(Platform::GetFileClass(u".doc"_s), u"application/msword"_s);
    EXPECT_EQ(Platform::GetFileClass(u".DOC"_s), u"application/msword"_s);
    EXPECT_EQ(Platform::GetFileTypeName(u".doc"_s), u"Word 文档"_s);
    for (const QString& strUnknown : {u""_s, u"."_s, u"doc"_s, u".nobody-has-this"_s}) {
        EXPECT_EQ(Platform::GetFileClass(strUnknown), QString());
        EXPECT_EQ(Platform::GetFileTypeName(strUnknown), QString());
        EXPECT_EQ(Platform::GetEditCommand(strUnknown), QString());
    }
    QLocale::setDefault(before);
}

// The person's choice before the desktop's, both before what merely offers itself; what isn't installed or
// was taken away never.
TEST_F(CFileOpening, FindsTheProgramThatTheDesktopWouldTake) {
    const QString strList = u"config\\mimeapps.list"_s;
    const QString strCache = u"usr\\applications\\mimeinfo.cache"_s;
    const QByteArray offers = "[MIME Cache]\napplication/msword=gone.desktop;a.desktop;b.desktop;\n"
                              "text/plain=c.desktop;\napplication/zip=b.desktop;\n";
    const auto word = [](const char* szGroup, const char* szName) -> QByteArray {
        return "["_ba + szGroup + "]\napplication/msword = " + szName + ".desktop;\n";
    };
    const struct {
        QString strName, strFile;
        QByteArray text;
        QString strExtension, strTool;
    } cases[] = {
        {u"what offers itself first"_s, u"none"_s, "", u".doc"_s, u"a"_s},
        {u"the person's choice"_s, strList, word("Default Applications", "b"), u".doc"_s, u"b"_s},
        {u"a choice that is gone"_s, strList, word("Default Applications", "gone"), u".doc"_s, u"a"_s},
        {u"the desktop's choice"_s, u"etc\\gnome-mimeapps.list"_s, word("Default Applications", "c"),
         u".doc"_s, u"c"_s},
        {u"another desktop's"_s, u"etc\\kde-mimeapps.list"_s, word("Default Applications", "c"), u".doc"_s,
         u"a"_s},
        {u"the old list"_s, u"usr\\applications\\defaults.list"_s, word("Default Applications", "c"),
         u".doc"_s, u"c"_s},
        {u"added by the person"_s, strList, word("Added Associations", "c"), u".doc"_s, u"c"_s},
        {u"removed by the person"_s, strList, word("Removed Associations", "a"), u".doc"_s, u"b"_s},
        {u"hidden by the person"_s, u"home\\applications\\a.desktop"_s,
         "[Desktop Entry]\nType=Application\nExec=a %f\nHidden=true\n", u".doc"_s, u"b"_s},
        {u"tried in vain"_s, u"usr\\applications\\a.desktop"_s,
         "[Desktop Entry]\nType=Application\nExec=a %f\nTryExec=not-here\n", u".doc"_s, u"b"_s},
        {u"an entry in a folder"_s, u"home\\applications\\x\\a.desktop"_s,
         "[Desktop Entry]\nType=Application\nExec=c %f\n[Desktop Action Edit]\nExec=b %f\n", u".csv"_s,
         u"c"_s},
        {u"a kind of text"_s, u"none"_s, "", u".csv"_s, u"c"_s},
        {u"a kind of archive"_s, u"none"_s, "", u".docx"_s, u""_s},
    };
    for (const auto& each : cases) {
        m_folder.Write(strCache, offers);
        const QByteArray before = m_folder.Read(each.strFile);
        m_folder.Write(each.strFile, each.text);
        const QString strExpected = each.strTool.isEmpty() ? QString() : each.strTool + u"|%1"_s;
        EXPECT_EQ(WordsFor(each.strExtension), strExpected) << each.strName;
        if (before.isEmpty())
            QFile::remove(m_folder.Native(each.strFile));
        else
            m_folder.Write(each.strFile, before);
    }
}

// The entries of real programs use all of these; a wrong word opens nothing, or something else.
TEST_F(CFileOpening, FillsTheCommandIn) {
    const QLocale localeBefore;
    QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China));
    m_folder.Write(u"config\\mimeapps.list"_s, "[Default Applications]\napplication/msword=w.desktop\n");
    WriteTool(u"$t`ool"_s);
    const QString strEntry = m_folder.Native(u"usr/applications/w.desktop"_s);
    const std::pair<QString, QString> cases[] = {
        {u"a %U"_s, u"a|%1"_s},
        {u"a --writer  --file=%f -x"_s, u"a|--writer|--file=%1|-x"_s},
        {u"a"_s, u"a|%1"_s},
        {uR"("a" "x y" %% %d "\\"q\\\\" '$1 b' %F)"_s, uR"(a|x y|%|"q\|$1 b|%1)"_s},
        {u"a %i --title %c -k %k %u"_s, u"a|--icon|pen|--title|文字 处理|-k|"_s + strEntry + u"|%1"_s},
        {u"env A=1 a %f"_s, u"env|A=1|a|%1"_s},
        {u"\""_s + m_folder.Native(u"bin/"_s) + uR"(\\$t\\`ool" %f)"_s,
         m_folder.Native(u"bin/$t`ool"_s) + u"|%1"_s},
        {u"a \"no end %f"_s, QString()},
        {u"not-here %f"_s, QString()},
        {u""_s, QString()},
    };
    for (const auto& [strExec, strWords] : cases) {
        WriteEntry(u"usr"_s, u"w"_s, strExec);
        EXPECT_EQ(WordsFor(u".doc"_s), strWords) << strExec;
    }
    WriteTool(u"xdg-terminal-exec"_s);
    WriteEntry(u"usr"_s, u"w"_s, u"a %f"_s, "Terminal=true\n");
    EXPECT_EQ(WordsFor(u".doc"_s), u"xdg-terminal-exec|a|%1"_s);
    WriteEntry(u"usr"_s, u"w"_s, u"a %f"_s,
               "Actions=New;Edit;\n[Desktop Action New]\nExec=c %f\n"
               "[Desktop Action Edit]\nExec=b --edit %f\n");
    EXPECT_EQ(WordsFor(u".doc"_s), u"b|--edit|%1"_s);
    WriteEntry(u"usr"_s, u"w"_s, u"a %f"_s, "Actions=Edit;\n[Desktop Action Edit]\nExec=b --new\n");
    EXPECT_EQ(WordsFor(u".doc"_s), u"a|%1"_s);
    QLocale::setDefault(localeBefore);
}

// A waiting call would never end here, and a name that is not one argument opens the wrong file, or runs what
// it says.
TEST_F(CFileOpening, StartsTheProgramWithAnyNameAndGoesOn) {
    m_folder.Write(u"config\\mimeapps.list"_s, "[Default Applications]\napplication/msword=a.desktop\n");
    const QString strFile = u"-x \"课\" %f '$(touch y)`.Doc"_s;
    m_folder.Write(strFile, "text");
    ASSERT_TRUE(Platform::OpenWithVerb(m_folder.Path(strFile)));
    EXPECT_FALSE(m_folder.Exists(u"bin\\out"_s));
    m_folder.Write(u"bin\\go"_s, "");
    ASSERT_SOON(m_folder.Exists(u"bin\\out"_s));
    EXPECT_EQ(m_folder.Read(u"bin\\out"_s), m_folder.Native(strFile).toUtf8() + '|');
}

/// Stands for the desktop's chooser.
class CPortal : public QDBusVirtualObject {
public:
    QString introspect(const QString& /*strPath*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != u"OpenFile"_s || message.arguments().size() != 3)
            return false;
        QFile file;
        const auto handle = message.arguments()[1].value<QDBusUnixFileDescriptor>();
        if (file.open(handle.fileDescriptor(), QIODevice::ReadWrite))
            m_content = file.readAll();
        m_bAsked = qdbus_cast<QVariantMap>(message.arguments()[2]).value(u"ask"_s).toBool();
        return connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(u"/request"_s))));
    }
    QByteArray m_content;
    bool m_bAsked = false;
};

// Nobody edits such files: the desktop asks, and where it can't, its own opener is tried.
TEST_F(CFileOpening, HasTheDesktopAskWhenNoProgramIsFound) {
    const QString strAddress = CSessionBus::Address();
    ASSERT_FALSE(strAddress.isEmpty()) << "dbus-daemon is missing";
    m_folder.Write(u"a.strange"_s, "content");
    m_folder.Write(u"bin\\go"_s, "");
    WriteTool(u"xdg-open"_s);

    ASSERT_TRUE(Platform::OpenWithVerb(m_folder.Path(u"a.strange"_s)));
    ASSERT_SOON(m_folder.Exists(u"bin\\out"_s));
    EXPECT_EQ(m_folder.Read(u"bin\\out"_s), m_folder.Native(u"a.strange"_s).toUtf8() + '|');

    QDBusConnection desktop = QDBusConnection::connectToBus(strAddress, u"portal"_s);
    CPortal portal;
    ASSERT_TRUE(desktop.registerVirtualObject(u"/org/freedesktop/portal/desktop"_s, &portal));
    ASSERT_TRUE(desktop.registerService(u"org.freedesktop.portal.Desktop"_s));
    ASSERT_TRUE(Platform::OpenWithVerb(m_folder.Path(u"a.strange"_s)));
    EXPECT_SOON(portal.m_content == "content");
    EXPECT_TRUE(portal.m_bAsked);
    QDBusConnection::disconnectFromBus(u"portal"_s);
}

} // namespace
