#pragma once

#include "companions/compiler/SiteCompiler.h"
#include "course/BookDatabase.h"
#include "foundation/CodePage.h"
#include "foundation/SysInfo.h"
#include "tests/support/Testing.h"

#include <SQLiteCpp/SQLiteCpp.h>

/// A course on disk, made through the course's own store, for the compiler to read. Its program folder lies
/// beside it. Paths are below the temporary folder, for CTempFolder's calls.
class CSampleCourse {
public:
    CTempFolder Folder;
    const QString strProject = Below(u"课程.vcp"_s);
    const QString strStore = Below(u"Data\\DataBase\\VorelCourse.mdb"_s);

    CSampleCourse() {
        Folder.Write(u"程序\\AppInfo.ini"_s,
                     CodePage::Encode(u"[System]\r\nProvince=11\r\nSchoolName=测试大学\r\n"));
        CSysInfo::Reset(Folder.Path(u"程序\\Vorel"_s));
        // Of a compiler that is started as a program.
        qputenv("XDG_CACHE_HOME", Folder.Native(u"cache"_s).toLocal8Bit());
        Folder.Write(strProject, CodePage::Encode(u"[Course]\r\nId=77\r\nName=<高等>数学\r\n"
                                                  "TeacherName=李老师\r\n[Template]\r\nName=t\r\n"));
        Folder.MakeFolder(Resource({}));
        QFile seed(QStringLiteral(VOREL_SEED_DATA "/DataBase/VorelCourse.mdb"));
        if (!seed.open(QIODevice::ReadOnly))
            qFatal("no seed database");
        Folder.Write(strStore, seed.readAll());
        Store()->SetSeedTitles(u"测试大学"_s, u"<高等>数学"_s, u"李老师"_s);
    }

    /// Adds a node with content; the path is given below the node's own folder unless it is an address or
    /// begins with "\". Its Id.
    qint32 Add(qint32 nParent, const QString& strTitle, qint32 nType = NodeType::c_nEmpty,
               const QString& strPath = {}, int nOpenType = 0, const QString& strFileName = {},
               const QString& strComment = {}) {
        const auto pStore = Store();
        const qint32 nId = pStore->AddNode(nParent, strTitle);
        QString strStored = strPath;
        if (strPath.startsWith(u'\\'))
            strStored.remove(0, 1);
        else if (!strPath.isEmpty() && !strPath.contains(QLatin1String("://")))
            strStored.prepend(u"N%1\\"_s.arg(nId));
        pStore->SetContent(nId, {nType, strStored, nOpenType, strFileName, strComment});
        return nId;
    }
    /// An editor page.
    qint32 AddPage(qint32 nParent, const QString& strTitle, const QString& strHtml, int nOpenType = 0) {
        const QString strName = u"Content.htm"_s;
        const qint32 nId = Add(nParent, strTitle, NodeType::c_nEditorPage, strName, nOpenType);
        WriteResource(nId, strName, CodePage::Encode(strHtml));
        return nId;
    }
    void WriteResource(qint32 nId, const QString& strName, const QByteArray& bytes) const {
        Folder.Write(Resource(u"N%1\\"_s.arg(nId) + strName), bytes);
    }
    /// Runs a statement on the store, as no program of the system would.
    void Damage(const QString& strStatement) const {
        SQLite::Database(Folder.Native(strStore).toStdString(), SQLite::OPEN_READWRITE)
            .exec(strStatement.toStdString());
    }

    static QString Below(const QString& strName) { return u"课程\\"_s + strName; }
    static QString Resource(const QString& strName) {
        return Below(u"Data\\Courseware\\NodeResource\\"_s + strName);
    }
    static QString Site(const QString& strName) { return Below(u"课程网站\\"_s + strName); }
    QString SiteNative() const { return Folder.Native(Below(u"课程网站"_s)); }
    /// A file of the site, or of a node's folder in it.
    QByteArray Bytes(const QString& strName) const { return Folder.Read(Site(strName)); }
    QByteArray Bytes(qint32 nId, const QString& strName = u"Content.htm"_s) const {
        return Bytes(u"N%1\\"_s.arg(nId) + strName);
    }
    CompileReport Compile() const { return CompileSite({Folder.Path(strProject), ESiteForm::Site}); }

private:
    std::unique_ptr<CBookDatabase> Store() const {
        auto pStore = std::make_unique<CBookDatabase>(Folder.Path(strStore), 77);
        pStore->Open();
        return pStore;
    }
};
