#pragma once

#include "content/BookNode.h"
#include "content/NewCourse.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"
#include "foundation/TextFile.h"
#include "platform/base/NativePath.h"
#include "tests/support/ScriptedPeople.h"
#include "tests/support/TempFolder.h"

#include <SQLiteCpp/Database.h>
#include <gtest/gtest.h>

/// A course server that agrees with everything.
class CAgreeingSession : public ICourseSession {
public:
    bool ReportStatus(CCourse&, int, const CourseFigures&, bool) override { return true; }
};

/// The template always exists, so nobody is asked.
class CNoTemplateChooser : public ITemplateChooser {
public:
    std::optional<QString> ChooseTemplate(const QString&) override { return std::nullopt; }
};

/// A real course, made and opened in a temporary folder by an installation of its own: template "红", the
/// delivered pictures and the delivered seed. Or one of a delivered template, with its full suggested tree.
class CCourseOnDisk {
public:
    CTempFolder Folder;
    CScriptedPeople People;
    std::unique_ptr<CCourse> pCourse;

    explicit CCourseOnDisk(const QString& strDelivered = QString()) {
        try {
            CSysInfo::Reset(Folder.Path(QStringLiteral("程序\\Vorel.exe")));
            MakeSeed(CSysInfo::Instance().GetSysDataFolder(true) + QStringLiteral("Data\\"));
            if (strDelivered.isEmpty())
                MakeTemplate();
            else
                LinkDelivered({"VorelTemplates", "SelfDefineTitle.ini"});
            LinkDelivered({"Images"});
            Make(strDelivered.isEmpty() ? QStringLiteral("红") : strDelivered);
        } catch (const Torvane::CException& e) {
            ADD_FAILURE() << "no course: " << e.GetMessage().toStdString();
        }
    }

    CourseServices Services() { return {People, m_session, m_templates, m_nodes}; }
    CBookDatabase& Store() { return *pCourse->GetDatabase(); }

    /// Changes the open store behind its back.
    void Damage(const char* pszScript) const {
        SQLite::Database store(Platform::ToNativeExact(pCourse->GetPaths().GetDatabasePath()).toStdString(),
                               SQLite::OPEN_READWRITE);
        store.exec(pszScript);
    }

    /// What stands below a node's folder, "N<id>\…".
    QString NodePath(qint32 nId, const QString& strBelow = QString()) const {
        return QStringLiteral("课程\\Data\\Courseware\\NodeResource\\N%1\\").arg(nId) + strBelow;
    }

private:
    void MakeTemplate() {
        using namespace Qt::StringLiterals;
        const QString strTemplate = u"程序\\SysData\\VorelTemplates\\红\\"_s;
        Folder.Write(u"程序\\SysData\\SelfDefineTitle.ini"_s, "[x]\r\n");
        Folder.Write(strTemplate + u"eht\\htm\\通用页面.htm"_s, "<p>general</p>\r\nend\r\n");
        Folder.Write(strTemplate + u"eht\\htm\\简介.htm"_s, "<p>intro\xFF\n\n");
        Folder.Write(strTemplate + u"背景色.txt"_s, "#102030");
    }

    void LinkDelivered(std::initializer_list<const char*> names) {
        for (const char* pszName : names) {
            const QString strName = QString::fromLatin1(pszName);
            QFile::link(QStringLiteral(VOREL_DELIVERED_DATA "/") + strName,
                        Folder.Native(QStringLiteral("程序/SysData/") + strName));
        }
    }

    void Make(const QString& strTemplate) {
        using namespace Qt::StringLiterals;
        const QString strProject = Folder.Path(u"课程\\课.vcp"_s);
        CreateRecord record{{7, u"物理"_s, u"王老师"_s}, u"课"_s, Folder.Path(u"课程"_s), {}, strTemplate};
        CompleteRecord(record);
        CCourse fresh(strProject, Services());
        fresh.Create(record);
        pCourse = std::make_unique<CCourse>(strProject, Services());
        if (!pCourse->Open())
            ADD_FAILURE() << "the course does not open";
    }

    static void MakeSeed(const QString& strData) {
        Torvane::File::CreateFolderPath(strData + QStringLiteral("DataBase"));
        Torvane::File::CreateFolderPath(strData + QStringLiteral("Courseware\\NodeResource"));
        SQLite::Database seed(
            Platform::ToNativeExact(strData + QStringLiteral("DataBase\\VorelCourse.mdb")).toStdString(),
            SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        const QString strScript =
            Platform::FromNative(QStringLiteral(VOREL_DELIVERED_DATA "/../seed/seed.sql"));
        seed.exec(ReadFileBytes(strScript).toStdString());
    }

    CAgreeingSession m_session;
    CNoTemplateChooser m_templates;
    CNodeMakerFactory m_nodes;
};
