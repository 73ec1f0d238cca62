#include "platform/base/FileAssociation.h"

#include "tests/support/Environment.h"
#include "tests/support/Testing.h"

using namespace Platform;

namespace {

const FileType c_type{u"vcp"_s, u"vcpfiles"_s, u"Vorel Course Project File"_s};

QByteArray CommandOf(const QString& strPath) {
    const QByteArray entry =
        FileTypeTexts::DesktopEntry(c_type, {u"Vorel"_s, u""_s, u""_s, u""_s}, strPath, u"vorel"_s);
    const qsizetype nAt = entry.indexOf("\nExec=") + 6;
    return entry.mid(nAt, entry.indexOf('\n', nAt) - nAt);
}

// The desktop undoes the rules of values first, those of quoting second: a program in a folder with such a
// name could not be started by a click on a course.
TEST(FileAssociation, TheCommandSurvivesEveryPath) {
    EXPECT_EQ(CommandOf(u"/opt/Vorel/Vorel"_s), "\"/opt/Vorel/Vorel\" %f");
    EXPECT_EQ(CommandOf(u"/home/李/课程 工具/Vorel"_s), "\"/home/李/课程 工具/Vorel\" %f");
    EXPECT_EQ(CommandOf(u"/a\"b$c`d/100%/Vorel"_s), "env \"/a\\\\\"b\\\\$c\\\\`d/100%%/Vorel\" %f");
    EXPECT_EQ(CommandOf(u"/a\\b\nc"_s), "\"/a\\\\\\\\b\\nc\" %f");
}

// The list is the person's: what it says of other types must stay, and ours must come out as the default.
TEST(FileAssociation, TheListOfDefaultsKeepsWhatIsNotOurs) {
    const QByteArray ours = "application/x-vcpfiles=vorel.desktop\n";
    const struct {
        QByteArray before, after;
    } cases[] = {
        {"", "[Default Applications]\n" + ours},
        {"# mine\n[Added Associations]\ntext/plain=a.desktop;\n",
         "# mine\n[Added Associations]\ntext/plain=a.desktop;\n\n[Default Applications]\n" + ours},
        {"[Default "
         "Applications]\ntext/html=b.desktop\napplication/x-vcpfiles=old.desktop;x.desktop\n\n[X]\ny=z",
         "[Default Applications]\n" + ours + "text/html=b.desktop\n\n[X]\ny=z\n"},
        {"[Removed Associations]\napplication/x-vcpfiles=q.desktop;vorel.desktop;\ntext/html=b.desktop;\n"
         "[Default Applications]\n" +
             ours,
         "[Removed Associations]\napplication/x-vcpfiles=q.desktop;\ntext/html=b.desktop;\n"
         "[Default Applications]\n" +
             ours},
        {"[Removed Associations]\napplication/x-vcpfiles=vorel.desktop;\n[Default Applications]\n" + ours,
         "[Removed Associations]\n[Default Applications]\n" + ours},
    };
    for (const auto& each : cases) {
        const QByteArray after =
            FileTypeTexts::WithDefaultProgram(each.before, "application/x-vcpfiles", "vorel.desktop");
        EXPECT_EQ(after, each.after);
        EXPECT_EQ(FileTypeTexts::WithDefaultProgram(after, "application/x-vcpfiles", "vorel.desktop"), after);
    }
}

class CRegistration : public ::testing::Test {
protected:
    CRegistration() {
        for (const int nSize : {16, 32, 48, 256})
            m_folder.Write(u"128-%1.png"_s.arg(nSize), "picture");
    }
    bool Register() const {
        return RegisterFileType(c_type,
                                {u"Vorel"_s, u"课程"_s, m_folder.Path(u"Vorel"_s), m_folder.Path(u"128"_s)});
    }
    CTempFolder m_folder;
    CEnvironment m_environment{{"XDG_DATA_HOME", m_folder.Native(u"data"_s)},
                               {"XDG_CONFIG_HOME", m_folder.Native(u"config"_s)}};
};

const QString c_strEntry = u"data\\applications\\vorel.desktop"_s;
const QString c_strPackage = u"data\\mime\\packages\\vcpfiles.xml"_s;
const QString c_strIcon = u"data\\icons\\hicolor\\48x48\\apps\\vorel.png"_s;
const QString c_strList = u"config\\mimeapps.list"_s;

// Every start puts right what was damaged meanwhile; a list that the person keeps elsewhere stays linked.
TEST_F(CRegistration, IsPutRightAtEveryStart) {
    m_folder.Write(u"kept.list"_s, "[Default Applications]\ntext/html=b.desktop\n");
    m_folder.MakeFolder(u"config"_s);
    m_folder.Link(m_folder.Native(u"kept.list"_s), c_strList);
    EXPECT_TRUE(Register());
    const QByteArray entry = m_folder.Read(c_strEntry);
    EXPECT_TRUE(entry.contains("\nMimeType=application/x-vcpfiles;\n"));
    EXPECT_TRUE(m_folder.Read(u"kept.list"_s).contains("\ntext/html=b.desktop\n"));
    EXPECT_TRUE(m_folder.Read(u"kept.list"_s).contains("\napplication/x-vcpfiles=vorel.desktop\n"));

    m_folder.Write(c_strEntry, "foreign");
    m_folder.Write(c_strPackage, entry + entry);
    QFile::remove(m_folder.Native(c_strIcon));
    EXPECT_TRUE(Register());
    EXPECT_EQ(m_folder.Read(c_strEntry), entry);
    EXPECT_TRUE(m_folder.Read(c_strPackage).endsWith("</mime-info>\n"));
    EXPECT_EQ(m_folder.Read(c_strIcon), "picture");
}

// A folder in a file's place, a file in a folder's place: one part fails in silence, the others are done, and
// what was there stays.
TEST_F(CRegistration, DoesWhatItCan) {
    m_folder.MakeFolder(c_strEntry);
    m_folder.Write(u"data\\icons"_s, "a file");
    EXPECT_FALSE(Register());
    EXPECT_TRUE(m_folder.Read(c_strList).contains("vorel.desktop"));
    EXPECT_EQ(m_folder.Read(u"data\\icons"_s), "a file");
    EXPECT_TRUE(m_folder.Exists(c_strPackage));
    // Without a home there is no place at all, least of all below the root folder.
    const CEnvironment homeless{{"XDG_DATA_HOME", {}}, {"XDG_CONFIG_HOME", {}}, {"HOME", {}}};
    EXPECT_FALSE(Register());
}

} // namespace
