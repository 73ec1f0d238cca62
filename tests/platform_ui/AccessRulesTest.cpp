#include "platform/ui/AccessRules.h"
#include "tests/support/Testing.h"

using EResource = CAccessRules::EResource;
using EKind = CAccessRules::SVerdict::EKind;

namespace {

class CAccess : public ::testing::Test {
protected:
    CAccess() {
        for (const QString& strFile : {u"course\\N5\\A.png"_s, u"course2\\a.png"_s, u"secret.txt"_s})
            m_folder.Write(strFile, "x");
        QFile::link(m_folder.Native(u"secret.txt"_s), m_folder.Native(u"course\\link.txt"_s));
        QFile::link(m_folder.Native(u"course"_s), m_folder.Native(u"alias"_s));
    }
    QUrl Url(const QString& strBelow) const { return QUrl::fromLocalFile(m_folder.Native(strBelow)); }
    EKind Judge(const QUrl& url, EResource what = EResource::Other) const {
        return CAccessRules(m_access).Judge(url, what).Kind;
    }

    CTempFolder m_folder;
    SEngineAccess m_access{{m_folder.Path(u"course"_s)}, false, false, false};
};

} // namespace

TEST_F(CAccess, OnlyFilesReallyInsideTheFolders) {
    EXPECT_EQ(Judge(Url(u"course\\N5\\A.png"_s)), EKind::Allow);
    EXPECT_EQ(Judge(Url(u"alias\\N5\\A.png"_s)), EKind::Allow) << "the same folder by another name";
    // A listing, nothing, a name that merely begins alike, a link that leads out.
    for (const QString& strBelow :
         {u"course\\N5"_s, u"course\\none.png"_s, u"course2\\a.png"_s, u"course\\link.txt"_s})
        EXPECT_EQ(Judge(Url(strBelow), EResource::PictureOrMedia), EKind::Refuse) << strBelow;
    CAccessRules rules(m_access);
    rules.SetProgramPage(Url(u"secret.txt"_s));
    EXPECT_EQ(rules.Judge(Url(u"secret.txt"_s), EResource::MainPage).Kind, EKind::Allow);
    EXPECT_EQ(rules.Judge(Url(u"secret.txt"_s), EResource::Frame).Kind, EKind::Refuse);
    EXPECT_EQ(rules.Judge(Url(u"course2\\a.png"_s), EResource::MainPage).Kind, EKind::Refuse);
    m_access.bEditing = true;
    EXPECT_EQ(Judge(Url(u"course2\\a.png"_s), EResource::PictureOrMedia), EKind::Allow);
    EXPECT_EQ(Judge(Url(u"course2\\a.png"_s), EResource::Frame), EKind::Refuse);
}

TEST_F(CAccess, NoSchemeButTheKnownOnes) {
    m_access.bNetwork = true;
    for (const QString& strUrl : {u"ftp://h/"_s, u"chrome://gpu"_s, u"qrc:/x"_s, u"filesystem:file:///x"_s,
                                  u"view-source:http://h"_s, u"devtools://x"_s})
        EXPECT_EQ(Judge(QUrl(strUrl)), EKind::Refuse) << strUrl;
}
