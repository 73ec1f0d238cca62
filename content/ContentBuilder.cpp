#include "content/ContentBuilder.h"

#include "content/ContentStage.h"
#include "content/DirectoryImport.h"
#include "content/StatusTask.h"
#include "content/Texts.h"
#include "content/VideoMaker.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/SysInfo.h"
#include "office/OfficeFiles.h"
#include "platform/base/NativePath.h"

#include <QScopeGuard>

#include <functional>
#include <utility>

using Torvane::CRunException;
using Torvane::Dialog::MFC::BoxDefault;
using Torvane::Dialog::MFC::IPeople;
using Torvane::File::IWalkFilter;

namespace {

/// Builds the content of one node.
class CBuildTask : public CStatusTask {
public:
    CBuildTask(IPeople& people, CBookNode& node, ContentRecipe recipe)
        : CStatusTask(people, ContentText::c_strCreateTitle), m_node(node), m_recipe(std::move(recipe)) {}

protected:
    void Work() override {
        CContentStage stage(m_node);
        // However it ends; what stands there can be large.
        const auto remove = qScopeGuard([&] { Tidy([&] { stage.Remove(); }); });
        try {
            Fill(stage);
        } catch (const CRunException& e) {
            if (!stage.KeepsRecording())
                throw;
            throw CRunException(
                ContentText::c_strRecordingKept.arg(e.GetMessage(), Platform::ToShown(stage.GetFolder())));
        }
    }

    /// Measures the files, and sees that they are on the disk.
    virtual void Settle(const std::function<void()>& settle) {
        Beside([&](IWalkFilter*) { settle(); });
    }

    /// The path below the folder of what shows.
    virtual QString MakeFiles(const QString& strFolder) {
        QString strBelow;
        if (m_recipe.Files)
            Beside([&](IWalkFilter* pFilter) { strBelow = m_recipe.Files(strFolder, pFilter); });
        return strBelow;
    }

    CBookNode& m_node;

private:
    void Fill(CContentStage& stage) {
        const QString strBelow = MakeFiles(stage.GetFolder());
        double dSize = 0;
        Settle([&] {
            dSize = Torvane::File::GetFolderSize(stage.GetFolder());
            // The row, which waits for the disk, must not outlive a power cut without the files.
            if (!strBelow.isEmpty())
                Torvane::File::FlushVolumeOf(stage.GetFolder());
        });
        m_node.TakeContent(stage, m_recipe.Row, strBelow, dSize);
    }

    template <typename FileStep>
    void Beside(FileStep step) {
        SetPieces(0);
        DoFiles(
            1, [&](qsizetype, IWalkFilter* pFilter) { step(pFilter); },
            [this](qsizetype) { return ContentText::c_strCreating.arg(m_node.GetTitle()); });
    }

    ContentRecipe m_recipe;
};

/// The same with a recorder, which has windows of its own.
class CRecordTask : public CBuildTask {
public:
    CRecordTask(IPeople& people, CBookNode& node, qint32 nOpenType, IVideoMaker& videos)
        : CBuildTask(people, node, {{NodeType::c_nVideo, {}, nOpenType, {}, {}}, {}}), m_videos(videos) {}

private:
    void Work() override {
        CBuildTask::Work();
        OfferToDeleteKept();
    }
    QString MakeFiles(const QString& strFolder) override {
        return m_videos.CreateVideoNode(m_node, strFolder);
    }
    // Behind a lecture there is no giving up: who wants to has done so in the recorder.
    void Settle(const std::function<void()>& settle) override { Tidy(settle); }

    /// An earlier recording that the new lecture did not use is large, and would be offered for ever.
    void OfferToDeleteKept() {
        const QString strKept = FindKeptLecture(m_node);
        if (strKept.isEmpty())
            return;
        const QString strText = ContentText::c_strDeleteKeptRecording.arg(Platform::ToShown(strKept));
        if (Ask([&](IPeople& people) { return people.Question(strText, BoxDefault::Last); }) ==
            Torvane::Dialog::MFC::BoxAnswer::Ok)
            Tidy([&] { DeleteKeptLecture(strKept); });
    }

    IVideoMaker& m_videos;
};

/// A setting that can't be written holds as long as the program runs.
void KeepForAll(bool bYes, IPeople& people) {
    CSysInfo& settings = CSysInfo::Instance();
    QString strFailure;
    for (const auto& [setter, bValue] : {std::pair(&CSysInfo::SetQueryUserSaveOfficeAsHtml, false),
                                         std::pair(&CSysInfo::SetSaveOfficeAsHtml, bYes)}) {
        try {
            (settings.*setter)(bValue);
        } catch (const CRunException& e) {
            strFailure = e.GetMessage();
        }
    }
    if (!strFailure.isEmpty())
        people.Error(strFailure);
}

} // namespace

CNodeContentBuilder::CNodeContentBuilder(CBookNode& node, IPeople& people, IsThere isThere,
                                         IVideoMaker* pVideos)
    : m_node(node), m_people(people), m_isThere(std::move(isThere)), m_pVideos(pVideos) {}

bool CNodeContentBuilder::Create(const CNodeFileParams& params) {
    try {
        switch (params.Kind) {
        case EContentKind::Folder:
            return CDirectoryImport(m_people, m_node, params, m_isThere).Run();
        case EContentKind::Video:
            if (m_pVideos == nullptr)
                throw CRunException(ContentText::c_strNoRecorder);
            return CRecordTask(m_people, m_node, params.OpenType, *m_pVideos).Run();
        default:
            return Build(params);
        }
    } catch (const CRunException& e) {
        m_people.Error(e.GetMessage());
    }
    return false;
}

bool CNodeContentBuilder::Build(const CNodeFileParams& params) {
    const bool bAsWebPage =
        params.Kind == EContentKind::ExternalFile && AskSaveAsWebPage(params.ExternalFile, m_people);
    if (!m_isThere())
        return false;
    const ContentRecipe recipe = Recipes::Of(params, m_node.GetCourse(), bAsWebPage);
    if (!CBuildTask(m_people, m_node, recipe).Run())
        return false;
    TellLeftOut(m_people, ContentText::c_strNotAllCopied, *recipe.PassedOver);
    return true;
}

std::optional<bool> IsSavedAsWebPage(const QString& strPath) {
    if (!Torvane::Office::IsOfficeFile(Torvane::File::BareName(strPath)))
        return false;
    const CSysInfo& settings = CSysInfo::Instance();
    return settings.GetQueryUserSaveOfficeAsHtml() ? std::nullopt
                                                   : std::optional(settings.GetSaveOfficeAsHtml());
}

bool AskSaveAsWebPage(const QString& strPath, IPeople& people) {
    if (const std::optional<bool> settled = IsSavedAsWebPage(strPath))
        return *settled;
    const IPeople::YesNoAll answer =
        people.QueryYesNoAll(ContentText::c_strAskSaveAsWebPage.arg(Platform::ToShown(strPath)));
    if (answer.bAll)
        KeepForAll(answer.bYes, people);
    return answer.bYes;
}
