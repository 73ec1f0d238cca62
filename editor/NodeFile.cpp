#include "editor/NodeFile.h"

#include "content/ContentBuilder.h"
#include "content/ContentRecipe.h"
#include "content/Texts.h"
#include "editor/FileTask.h"
#include "editor/ResourceText.h"
#include "editor/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/SysInfo.h"
#include "office/OfficeFiles.h"
#include "platform/base/FileOpening.h"
#include "platform/base/NativePath.h"

#include <utility>

using Torvane::CRunException;
using Torvane::Dialog::MFC::BoxAnswer;
using Torvane::Dialog::MFC::BoxButtons;
using Torvane::Dialog::MFC::BoxDefault;
using Torvane::Dialog::MFC::BoxIcon;
using Torvane::Dialog::MFC::CShowStatusDlg;
using Torvane::Dialog::MFC::IPeople;
using Torvane::File::IWalkFilter;
using Torvane::Office::EConversion;

namespace NodeFile {

namespace {

/// The same person, to whom a failure is told as one of the whole step.
class CStepPeople : public IPeople {
public:
    CStepPeople(IPeople& people, QString strFailure)
        : m_people(people), m_strFailure(std::move(strFailure)) {}

    BoxAnswer Ask(const QString& strText, const QString& strTitle, BoxButtons buttons, BoxIcon icon,
                  BoxDefault byEnter) override {
        const bool bFailure = icon == BoxIcon::Stop && strText != ContentText::c_strCancelled;
        return m_people.Ask(bFailure ? m_strFailure + u'\n' + strText : strText, strTitle, buttons, icon,
                            byEnter);
    }
    YesNoAll QueryYesNoAll(const QString& strText) override { return m_people.QueryYesNoAll(strText); }
    std::unique_ptr<CShowStatusDlg> OpenStatus() override { return m_people.OpenStatus(); }
    CShowStatusDlg* GetStatus() override { return m_people.GetStatus(); }
    qint64 GetPatience() override { return m_people.GetPatience(); }
    void KeepPainting() override { m_people.KeepPainting(); }
    std::optional<QString> PickOpenFile(const QString& strTitle, const QString& strFolder,
                                        const QString& strFilter) override {
        return m_people.PickOpenFile(strTitle, strFolder, strFilter);
    }
    std::optional<QString> PickFolder(const QString& strPrompt, const QString& strFolder) override {
        return m_people.PickFolder(strPrompt, strFolder);
    }

private:
    IPeople& m_people;
    QString m_strFailure;
};

/// A page that is being made, with its folder of pictures; both go with the object.
class CTemporaryPage {
public:
    CTemporaryPage() {
        const QString strFolder = CSysInfo::Instance().GetSysDataFolder(true) + QStringLiteral("Temporary\\");
        if (Torvane::File::GetPathKind(strFolder) != Torvane::File::EPathKind::Folder &&
            !Torvane::File::TryCreateFolderPath(strFolder))
            return;
        m_strPath = strFolder + ResourceText::MakeResourceName(QStringLiteral("a.htm"), strFolder, nullptr);
    }
    ~CTemporaryPage() {
        if (m_strPath.isEmpty())
            return;
        try {
            Torvane::File::DeleteOneFile(m_strPath, true);
        } catch (const CRunException&) {
            // It was never made, or stays behind as litter.
        }
        Torvane::File::TryDeleteFolder(Recipes::FilesFolderOf(m_strPath));
    }
    CTemporaryPage(const CTemporaryPage&) = delete;
    CTemporaryPage& operator=(const CTemporaryPage&) = delete;

    /// Empty when there is no place for it.
    const QString& GetPath() const { return m_strPath; }

private:
    QString m_strPath;
};

/// As the desktop calls it, and by its extension where it knows no name.
QString KindOfFile(const QString& strExtension) {
    const QString strName = Platform::GetFileTypeName(strExtension);
    return strName.isEmpty() ? EditorTexts::c_strUnknownKind.arg(strExtension.mid(1).toUpper()).trimmed()
                             : strName;
}

void Convert(const QString& strSource, const QString& strPage, const QString& strTitle,
             IWalkFilter* pFilter) {
    const EConversion eEnd = Torvane::Office::SaveOfficeFileAsHtm(
        strSource, strPage, [pFilter] { return !pFilter->Cancelled(); }, strTitle);
    QString strFailure = EditorTexts::c_strNotConverted;
    switch (eEnd) {
    case EConversion::Done:
    case EConversion::Cancelled:
        return;
    case EConversion::TimedOut:
        strFailure += u'\n' + ContentText::c_strConversionTooLong;
        break;
    case EConversion::NoConverter:
        strFailure += u'\n' + ContentText::c_strNoConverter;
        break;
    case EConversion::NoSpace:
        strFailure += u'\n' + ContentText::c_strDiskFull;
        break;
    case EConversion::Failed:
        break;
    }
    throw CRunException(strFailure);
}

} // namespace

QString VideoObstacle(bool bRecording, bool bHasPlayer, bool bHasEncoder) {
    if (!bRecording)
        return bHasPlayer ? QString() : EditorTexts::c_strNoPlayerForPreview;
    if (!bHasEncoder)
        return EditorTexts::c_strNoEncoderForRecording;
    return bHasPlayer ? QString() : EditorTexts::c_strNoPlayerForRecording;
}

std::optional<Card> CardOf(const CBookNode& node) {
    Card card;
    switch (node.GetType()) {
    case NodeType::c_nExternalFile: {
        const QString strPath = node.GetContentPath();
        CBookDatabase& store = *node.GetCourse().GetDatabase();
        card.strKind = KindOfFile(Torvane::File::Extension(strPath));
        card.FileName = store.GetFileName(node.GetId());
        card.Comment = store.GetComment(node.GetId());
        card.strFirstButton = EditorTexts::c_strDownload;
        card.strSecondButton = EditorTexts::c_strEdit;
        card.bOffice = Torvane::Office::IsOfficeFile(strPath);
        return card;
    }
    case NodeType::c_nVideo:
        card.strKind = EditorTexts::c_strVideo;
        card.strFirstButton = EditorTexts::c_strPreviewVideo;
        card.strSecondButton = EditorTexts::c_strRecordAgain;
        return card;
    default:
        return std::nullopt;
    }
}

void SaveCopy(const CBookNode& node, IPeople& people) {
    const QString strSource = node.GetContentPath();
    QString strName = node.GetCourse().GetDatabase()->GetFileName(node.GetId());
    if (strName.isEmpty())
        strName = Torvane::File::BareName(strSource);
    SaveCopy(strSource, strName, people);
}

void SaveCopy(const QString& strSource, const QString& strName, IPeople& people) {
    const auto target = people.PickSaveFile(EditorTexts::c_strDownloadTitle, strName);
    if (!target)
        return;
    CFileTask(people, EditorTexts::c_strSaving, [&](IWalkFilter* pFilter) {
        Torvane::File::CopyOneFile(strSource, *target, true, pFilter);
    }).Run();
}

bool OpenInProgram(CBookNode& node, IPeople& people) {
    if (node.OpenExternalFile())
        return true;
    people.Error(ContentText::c_strFileNotOpened.arg(Platform::ToShown(node.GetContentPath())));
    return false;
}

bool ConvertToHtml(CBookNode& node, IPeople& people, const std::function<bool()>& isThere) {
    const CTemporaryPage page;
    if (page.GetPath().isEmpty()) {
        people.Error(EditorTexts::c_strNoFileName);
        return false;
    }
    const QString strSource = node.GetContentPath();
    CBookDatabase& store = *node.GetCourse().GetDatabase();
    CNodeFileParams params;
    params.Kind = EContentKind::ExternalFile;
    params.ExternalFile = page.GetPath();
    params.OpenType = node.GetOpenType();
    params.Comment = store.GetComment(node.GetId());
    // The course keeps the file under a name of its own, which says nothing.
    const QString strTitle = Torvane::File::FileTitle(store.GetFileName(node.GetId()));
    const auto work = [&](IWalkFilter* pFilter) { Convert(strSource, page.GetPath(), strTitle, pFilter); };
    if (!CFileTask(people, EditorTexts::c_strSavingAsHtml, work).Run() || !isThere())
        return false;
    CStepPeople stepPeople(people, EditorTexts::c_strNotCreated);
    CNodeContentBuilder(node, stepPeople, isThere).Create(params);
    return true;
}

} // namespace NodeFile
