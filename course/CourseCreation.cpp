#include "course/Course.h"

#include "course/PaintingFilter.h"
#include "course/ProjectFile.h"
#include "course/Skin.h"
#include "course/TemplateStore.h"
#include "course/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"

#include <exception>

using namespace CourseText;
using namespace Qt::StringLiterals;
using namespace Torvane::File;

namespace {

/// The empty output folders of the compiler, in the order in which they are made.
const QStringList& OutputFolders() {
    static const QStringList folders{u"课程网站"_s, u"申报网站"_s, u"合成"_s};
    return folders;
}

/// Does a step on files and answers any failure of it with the one text for it.
template <typename Step>
void OrFail(const QString& strFailure, Step step) {
    try {
        step();
    } catch (...) {
        throw Torvane::CRunException(strFailure);
    }
}

/// Keeps the windows painted before each node.
class CPaintingMaker : public IInitialNodeMaker {
public:
    CPaintingMaker(std::unique_ptr<IInitialNodeMaker> pMaker, Torvane::Dialog::MFC::IPeople& people)
        : m_pMaker(std::move(pMaker)), m_people(people) {}
    qint32 AddChild(qint32 nParentId, const QString& strTitle) override {
        m_people.KeepPainting();
        return m_pMaker->AddChild(nParentId, strTitle);
    }
    bool InitFromTemplatePage(qint32 nId, const QString& strTemplate, const QString& strPage) override {
        return m_pMaker->InitFromTemplatePage(nId, strTemplate, strPage);
    }

private:
    std::unique_ptr<IInitialNodeMaker> m_pMaker;
    Torvane::Dialog::MFC::IPeople& m_people;
};

/// The log of a database that stood here before belongs to that one. Beside the new file it would be taken
/// for the new one's own.
void DeleteLeftLogs(const QString& strDatabasePath) {
    for (const QString& strEnding : {u"-wal"_s, u"-shm"_s, u"-journal"_s}) {
        if (IsFile(strDatabasePath + strEnding))
            DeleteOneFile(strDatabasePath + strEnding, true);
    }
}

} // namespace

void CCourse::Create(const CreateRecord& record) {
    try {
        const auto pStatus = m_services.People.OpenStatus();
        m_info = record.Info;
        m_strTemplateName = record.TemplateName;
        pStatus->ShowStatus(c_strMakingData);
        CreateFolders(record);
        CreateData(record.TemplateName);
        pStatus->ShowStatus(c_strRecordingInfo);
        RecordInfo(record);
        m_services.People.KeepPainting();
        OpenDatabase(c_strOpenNewDatabaseFailed);
        m_services.People.KeepPainting();
        if (!m_pDatabase->SetSeedTitles(CSysInfo::Instance().GetSchoolName(), record.Info.Name,
                                        record.Info.TeacherName))
            throw Torvane::CRunException(c_strWriteDatabaseFailed);
        if (!record.InitialNodes.isEmpty()) {
            pStatus->ShowStatus(c_strMakingNodes);
            MakeInitialNodes(record);
        }
        m_services.People.KeepPainting();
        m_pDatabase.reset();
    } catch (const Torvane::CRunException&) {
        throw;
    } catch (...) {
        throw Torvane::CRunException(c_strCreateFailed);
    }
}

void CCourse::CreateFolders(const CreateRecord& record) {
    OrFail(c_strCreateFolderFailed, [&] {
        QStringList folders{WithoutBackslash(record.Folder)};
        for (const QString& strName : OutputFolders())
            folders.append(AddBackslash(record.Folder) + strName);
        for (const QString& strFolder : folders) {
            CreateFolderPath(strFolder);
            if (!IsFolder(strFolder))
                throw Torvane::CRunException(c_strCreateFolderFailed);
        }
    });
}

void CCourse::CreateData(const QString& strTemplate) {
    const CSysInfo& settings = CSysInfo::Instance();
    CPaintingFilter filter(m_services.People);
    OrFail(c_strCopySeedFailed, [&] {
        DeleteLeftLogs(m_paths.GetDatabasePath());
        ForceCopyFolder(settings.GetSysDataFolder(true) + u"Data"_s, m_paths.GetDataFolder(false), true,
                        &filter);
        // An installation may be read-only; a course never is.
        ClearAttributes(m_paths.GetDatabasePath());
    });
    OrFail(c_strCopySkinFailed,
           [&] { CopySkin(strTemplate, m_paths.GetNodeResourceFolder(false), m_services.People); });
    OrFail(c_strCopyTitlesFailed, [&] {
        const CTemplateStore store(settings.GetTemplatesFolder(false));
        QString strSource = store.GetTemplateFolder(strTemplate) + u"\\SelfDefineTitle.ini"_s;
        if (store.GetTemplateFolder(strTemplate).isEmpty() || !IsFile(strSource))
            strSource = settings.GetSysDataFolder(true) + u"SelfDefineTitle.ini"_s;
        CopyOneFile(strSource, m_paths.GetCustomTitlesPath(), true);
    });
}

void CCourse::RecordInfo(const CreateRecord& record) {
    CProjectFile file;
    if (!(file.SetPath(GetProjectPath()) && file.SetCourseInfo(record.Info) &&
          file.SetTemplateName(record.TemplateName) && file.Save()))
        throw Torvane::CRunException(c_strRecordFailed);
}

/// All nodes are one transaction, so that a crash leaves the whole tree or none of it. A failure is no crash:
/// what was made up to it stays.
void CCourse::MakeInitialNodes(const CreateRecord& record) {
    bool bMade = false;
    std::exception_ptr pFailure;
    CBookDatabase::CTransaction transaction(*m_pDatabase);
    try {
        CPaintingMaker maker(m_services.Nodes.MakeFor(*this), m_services.People);
        bMade = CreateInitialNodes(record.TemplateName, record.InitialNodes, c_nRootNodeId, maker);
    } catch (...) {
        pFailure = std::current_exception();
    }
    try {
        transaction.Commit();
    } catch (const Torvane::COM::CCOMException&) {
        if (!pFailure)
            throw;
    }
    if (pFailure)
        std::rethrow_exception(pFailure);
    if (!bMade)
        throw Torvane::CRunException(c_strMakeNodesFailed);
}
