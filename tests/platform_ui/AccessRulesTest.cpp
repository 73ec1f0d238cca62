#include "platform/ui/AccessRules.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using EResource = CAccessRules::EResource;
using EKind = CAccessRules::SVerdict::EKind;

namespace {

class CAccess : public ::testing::Test {
protected:
    CAccess() {
        for (const QString& strFile :
             {u"course\\N5\\Content.htm"_s, u"course\\N5\\A.png"_s, u"course2\\a.png"_s, u"secret.txt"_s})
            m_folder.Write(strFile, "x");
        QFile::link(m_folder.Native(u"secret.txt"_s), m_folder.Native(u"course\\link.txt"_s));
        QFile::link(m_folder.Native(u"course"_s), m_folder.Native(u"alias"_s));
    }
    QUrl Url(const QString& strBelow) const { return QUrl::fromLocalFile(m_folder.Native(strBelow)); }
    SEngineAccess Course() const { return {{m_folder.Path(u"course"_s)}, false, false, false}; }
    EKind Judge(const SEngineAccess& access, const QUrl& url, EResource what = EResource::Other) const {
        return CAccessRules(access).Judge(url, what).Kind;
    }

    CTempFolder m_folder;
};

} // namespace

TEST_F(CAccess, OnlyFilesReallyInsideTheFolders) {
    EXPECT_EQ(Judge(Course(), Url(u"course\\N5\\A.png"_s)), EKind::Allow);
    EXPECT_EQ(Judge(Course(), Url(u"alias\\N5\\A.png"_s)), EKind::Allow) << "the same folder by another name";
    EXPECT_EQ(Judge(Course(), Url(u"course\\N5"_s)), EKind::Refuse) << "a folder's listing";
    EXPECT_EQ(Judge(Course(), Url(u"course\\none.png"_s)), EKind::Refuse);
    EXPECT_EQ(Judge(Course(), Url(u"secret.txt"_s)), EKind::Refuse);
    EXPECT_EQ(Judge(Course(), Url(u"course2\\a.png"_s)), EKind::Refuse) << "a name that merely begins alike";
    EXPECT_EQ(Judge(Course(), Url(u"course\\link.txt"_s)), EKind::Refuse) << "a link that leads out";
    EXPECT_EQ(Judge(Course(), QUrl(Url(u"course"_s).toString() + u"/../secret.txt"_s)), EKind::Refuse);
    EXPECT_EQ(Judge(Course(), QUrl(Url(u"course"_s).toString() + u"/%2E%2E/secret.txt"_s)), EKind::Refuse);
    EXPECT_EQ(Judge(Course(), QUrl(Url(u"course"_s).toString() + u"/%252E%252E/secret.txt"_s)),
              EKind::Refuse);
    EXPECT_EQ(Judge(Course(), QUrl(u"file:///etc/passwd"_s), EResource::PictureOrMedia), EKind::Refuse);
}

TEST_F(CAccess, OtherSpellingsAreRedirectedToTheFile) {
    const QUrl file = Url(u"course\\N5\\A.png"_s);
    const QString strPath = file.toLocalFile();
    for (const QUrl& url :
         {Url(u"course\\n5\\a.PNG"_s), QUrl(u"file:///Z:"_s + file.path(QUrl::FullyEncoded)),
          QUrl(u"file://"_s + QString(strPath).replace(u' ', u"%2520"_s))}) {
        const auto verdict = CAccessRules(Course()).Judge(url, EResource::Other);
        EXPECT_EQ(verdict.Kind, EKind::Redirect) << url.toString().toStdString();
        EXPECT_EQ(verdict.Target, file);
        EXPECT_EQ(Judge(Course(), verdict.Target), EKind::Allow) << "redirected for ever";
    }
}

TEST_F(CAccess, WhileEditingPicturesComeFromAnywhere) {
    SEngineAccess access = Course();
    access.bEditing = true;
    EXPECT_EQ(Judge(access, Url(u"course2\\a.png"_s), EResource::PictureOrMedia), EKind::Allow);
    EXPECT_EQ(Judge(access, Url(u"course2\\a.png"_s), EResource::Other), EKind::Refuse);
    EXPECT_EQ(Judge(access, Url(u"course2\\a.png"_s), EResource::Frame), EKind::Refuse);
}

TEST_F(CAccess, TheProgramsOwnPageMayLoadAsPageOnly) {
    CAccessRules rules(Course());
    rules.SetProgramPage(Url(u"secret.txt"_s));
    EXPECT_EQ(rules.Judge(Url(u"secret.txt"_s), EResource::MainPage).Kind, EKind::Allow);
    EXPECT_EQ(rules.Judge(Url(u"secret.txt"_s), EResource::Frame).Kind, EKind::Refuse);
    EXPECT_EQ(rules.Judge(Url(u"course2\\a.png"_s), EResource::MainPage).Kind, EKind::Refuse);
}

TEST_F(CAccess, TheNetworkAndTheDiskKeepApart) {
    SEngineAccess online = Course();
    online.bNetwork = true;
    SEngineAccess web = online;
    web.bWebPage = true;
    for (const QString& strUrl : {u"http://h/"_s, u"https://h/"_s, u"ws://h/"_s, u"wss://h/"_s}) {
        EXPECT_EQ(Judge(Course(), QUrl(strUrl)), EKind::Refuse) << strUrl.toStdString();
        EXPECT_EQ(Judge(online, QUrl(strUrl)), EKind::Allow) << strUrl.toStdString();
    }
    EXPECT_EQ(Judge(web, Url(u"course\\N5\\A.png"_s)), EKind::Refuse);
    for (const QString& strUrl : {u"ftp://h/"_s, u"chrome://gpu"_s, u"qrc:/x"_s, u"filesystem:file:///x"_s,
                                  u"view-source:http://h"_s, u"devtools://x"_s})
        EXPECT_EQ(Judge(online, QUrl(strUrl)), EKind::Refuse) << strUrl.toStdString();
    EXPECT_EQ(Judge(Course(), QUrl(u"data:image/png;base64,AA=="_s)), EKind::Allow);
}
