// What is pasted into the page or dropped on it.
#include "course/Course.h"
#include "editor/Texts.h"
#include "editor/ui/EditorView.h"
#include "editor/ui/PasteTask.h"
#include "platform/ui/WebBrowser.h"

#include <QPointer>

using namespace EditorCommands;

void CEditorView::Paste(const SPastedData& pasted) {
    if (m_mode != EMode::Design || m_pNode == nullptr || !m_keeper.IsOpen())
        return;
    const QPointer<CEditorView> pThis(this);
    CPasteTask task(m_people, pasted, m_pDesign->IsOwnCopy(pasted.strHtml),
                    {m_keeper.GetPicturesFolder(), m_pNode->GetCourse().GetPaths().GetCourseFolder(true),
                     m_saver.GetFolders()});
    const QString strPage = m_saver.GetPagePath();
    const bool bMade = task.Run();
    // The windows were painted meanwhile, and whatever closes or changes the page may have come.
    const bool bHere =
        pThis && m_mode == EMode::Design && m_keeper.IsOpen() && m_saver.GetPagePath() == strPage;
    if (bMade && bHere)
        PutPasted(task);
    else
        task.RemoveMade();
    if (pThis && isVisible())
        FocusLive();
    if (pThis)
        ShowStates();
}

/// Into the page, and says what of it did not come.
void CEditorView::PutPasted(CPasteTask& task) {
    const std::optional<QString>& markup = task.GetMarkup();
    const bool bTooLong = markup && markup->size() > CPasteTask::c_nMaxMarkup;
    const QString strFailure = task.GetPictureFailure();
    Torvane::Dialog::MFC::IPeople& people = m_people;
    const QPointer<CEditorView> pThis(this);
    using EPasted = CWebBrowser2Ex::EPasted;
    const EPasted end =
        markup && !markup->isEmpty() && !bTooLong ? m_pDesign->PasteBrowserText(*markup) : EPasted::No;
    // What the page still takes in names the files.
    const bool bPasted = end != EPasted::No;
    if (!bPasted)
        task.RemoveMade();
    if (!pThis)
        return;
    if (bTooLong || (!markup && task.IsPlainInstead()))
        people.Warn(EditorTexts::c_strPasteTooLong);
    else if (!strFailure.isEmpty())
        people.Warn(
            (bPasted ? EditorTexts::c_strPicturesFailed : EditorTexts::c_strPictureFailed).arg(strFailure));
    else if (end == EPasted::Late)
        people.Warn(EditorTexts::c_strPasteLate);
    else if (!bPasted && markup && !markup->isEmpty())
        people.Error(EditorTexts::c_strPasteFailed);
    else if (bPasted && task.IsPlainInstead())
        people.Warn(EditorTexts::c_strPastedAsText);
    TellLeftOut(people, EditorTexts::c_strFilesLeftOut, task.GetLeftOut());
}
