// What is pasted into the page or dropped on it.
#include "course/Course.h"
#include "editor/HtmlFragments.h"
#include "editor/PastedHtml.h"
#include "editor/PastedPictures.h"
#include "editor/Texts.h"
#include "editor/ui/EditorView.h"
#include "editor/ui/ShowFailure.h"
#include "foundation/Paths.h"
#include "platform/ui/PastedData.h"
#include "platform/ui/SurfaceUrls.h"
#include "platform/ui/WebBrowser.h"

#include <QBuffer>
#include <QPointer>

using namespace EditorCommands;

namespace {

/// The engine takes longer for more than anybody waits.
constexpr qsizetype c_nMaxPasted = 1'000'000;

QByteArray PngOf(const QImage& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "PNG");
    return bytes;
}

QString MarkupOfPicture(const QString& strPath) {
    return strPath.isEmpty() ? QString() : HtmlFragments::Image(SurfaceUrls::PathToReference(strPath));
}

} // namespace

void CEditorView::Paste(const SPastedData& pasted) {
    if (m_mode != EMode::Design || m_pNode == nullptr || !m_keeper.IsOpen())
        return;
    const QPointer<CEditorView> pThis(this);
    CPastedPictures pictures(m_keeper.GetPicturesFolder(),
                             m_pNode->GetCourse().GetPaths().GetCourseFolder(true));
    std::optional<QString> markup;
    ShowFailure(this, [&] { markup = MarkupOf(pasted, pictures); });
    if (!pThis || !markup)
        return;
    const bool bPasted =
        !markup->isEmpty() && markup->size() <= c_nMaxPasted && m_pDesign->PasteBrowserText(*markup);
    if (!bPasted)
        pictures.RemoveMade();
    if (!pThis)
        return;
    if (markup->size() > c_nMaxPasted)
        m_people.Warn(EditorTexts::c_strPasteTooLong);
    else if (const QString strFailure = pictures.GetFailure(); !strFailure.isEmpty())
        m_people.Warn(
            (bPasted ? EditorTexts::c_strPicturesFailed : EditorTexts::c_strPictureFailed).arg(strFailure));
    else if (!bPasted && !markup->isEmpty())
        m_people.Error(EditorTexts::c_strPasteFailed);
    if (pThis && isVisible())
        FocusLive();
    if (pThis)
        ShowStates();
}

/// No value when nothing was offered that a page can take.
std::optional<QString> CEditorView::MarkupOf(const SPastedData& pasted, CPastedPictures& pictures) {
    if (m_pDesign->IsOwnCopy(pasted.strHtml))
        return pasted.strHtml;
    if (!pasted.Files.isEmpty())
        return MarkupOfFiles(pasted.Files, pictures);
    if (!pasted.Picture.isNull())
        return MarkupOfPicture(pictures.Keep(PngOf(pasted.Picture)));
    if (!pasted.strHtml.isEmpty()) {
        const auto fragment = PastedHtml::Clean(
            pasted.strHtml, [&](const QString& strReference) { return pictures.Name(strReference); });
        if (fragment && fragment->strHtml.size() <= c_nMaxPasted && !fragment->strHtml.isEmpty())
            return fragment->strHtml;
        pictures.RemoveMade();
    }
    if (pasted.strText.isEmpty())
        return std::nullopt;
    return PastedHtml::FromPlainText(pasted.strText);
}

/// Pictures are shown, other files become links as the command for them makes.
QString CEditorView::MarkupOfFiles(const QStringList& files, CPastedPictures& pictures) {
    QString strMarkup;
    for (const QString& strPath : files) {
        if (!Torvane::File::IsFile(strPath))
            continue;
        const QString strPicture = MarkupOfPicture(pictures.TakeFile(strPath));
        if (!strMarkup.isEmpty())
            strMarkup += u' ';
        strMarkup += strPicture.isEmpty() ? LinkToFile(strPath) : strPicture;
    }
    return strMarkup;
}
