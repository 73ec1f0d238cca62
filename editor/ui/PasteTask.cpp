#include "editor/ui/PasteTask.h"

#include "editor/HtmlFragments.h"
#include "editor/PastedHtml.h"
#include "editor/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "foundation/Texts.h"
#include "platform/base/NativePath.h"
#include "platform/ui/SurfaceUrls.h"

#include <QBuffer>
#include <QRegularExpression>

#include <new>

using namespace Qt::StringLiterals;
using Torvane::File::IWalkFilter;

namespace {

QByteArray PngOf(const QImage& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "PNG");
    return bytes;
}

QString MarkupOfPicture(const QString& strPath) {
    return strPath.isEmpty() ? QString() : HtmlFragments::Image(SurfaceUrls::PathToReference(strPath));
}

void ThrowIfGivenUp(IWalkFilter& filter) {
    if (filter.Cancelled())
        throw Torvane::CRunException(EditorTexts::c_strPasteCancelled);
}

} // namespace

FileLink LinkToFile(const QString& strPath, const ResourceText::PageFolders& folders, IWalkFilter* pFilter) {
    ResourceText::ResourceCopy copy;
    if (!ResourceText::PlanResource(strPath, folders, nullptr, copy)) {
        if (Torvane::File::IsPathTooLong(strPath))
            throw Torvane::CRunException(EditorTexts::c_strFileTooDeep.arg(Platform::ToShown(strPath)));
        throw Torvane::File::CFileException(FileText::c_strCannotOpen, strPath, 0);
    }
    // A link is made to a file that is there, and to no other.
    if (copy.bCopy) {
        Torvane::File::CreateFolderPath(folders.strResFolder);
        Torvane::File::CopyOneFile(copy.strOpenPath, copy.strDest, false, pFilter);
    }
    return {HtmlFragments::OtherFile(copy.strUrl, Torvane::File::BareName(strPath)),
            copy.bCopy ? copy.strDest : QString()};
}

void RemoveCopies(const QStringList& paths) {
    for (const QString& strPath : paths) {
        try {
            if (!strPath.isEmpty())
                Torvane::File::DeleteOneFile(strPath, false);
        } catch (const Torvane::CRunException&) {
            continue;
        }
    }
}

CPasteTask::CPasteTask(Torvane::Dialog::MFC::IPeople& people, SPastedData pasted, bool bOwnCopy,
                       const Place& place)
    : CStatusTask(people, QString()), m_pasted(std::move(pasted)), m_bOwnCopy(bOwnCopy),
      m_folders(place.Folders), m_pictures(place.strPicturesFolder, place.strCourseFolder) {}

void CPasteTask::Work() {
    try {
        if (!m_bOwnCopy && !m_pasted.Files.isEmpty())
            return TakeFiles();
        DoFiles(
            1,
            [this](qsizetype, IWalkFilter* pFilter) {
                if (m_bOwnCopy)
                    TakeOwnCopy();
                else if (!m_pasted.PictureFile.isEmpty() || !m_pasted.Picture.isNull())
                    TakePicture();
                else
                    TakeText(*pFilter);
            },
            [](qsizetype) { return EditorTexts::c_strPasting; });
    } catch (const std::bad_alloc&) {
        throw Torvane::CRunException(EditorTexts::c_strPasteTooLong);
    } catch (const Torvane::CRunException&) {
        if (IsCancelled())
            throw Torvane::CRunException(EditorTexts::c_strPasteCancelled);
        throw;
    }
}

void CPasteTask::TellEnd(Torvane::Dialog::MFC::IPeople& people, const QString& strText) {
    if (IsCancelled())
        people.Notice(strText);
    else
        CStatusTask::TellEnd(people, strText);
}

void CPasteTask::TakeFiles() {
    m_markup = QString();
    SetPieces(m_pasted.Files.size());
    DoFiles(
        m_pasted.Files.size(),
        [this](qsizetype nPiece, IWalkFilter* pFilter) { TakeFile(m_pasted.Files.at(nPiece), *pFilter); },
        [this](qsizetype nPiece) {
            return EditorTexts::c_strCopying.arg(Torvane::File::BareName(m_pasted.Files.at(nPiece)));
        });
}

/// Pictures are shown, other files become links as the command for them makes.
void CPasteTask::TakeFile(const QString& strPath, IWalkFilter& filter) {
    if (!Torvane::File::IsFile(strPath)) {
        m_leftOut.append(Torvane::File::BareName(strPath));
        return;
    }
    QString strMarkup = MarkupOfPicture(m_pictures.TakeFile(strPath));
    if (strMarkup.isEmpty()) {
        const FileLink link = LinkToFile(strPath, m_folders, &filter);
        if (!link.strCopy.isEmpty())
            m_copies.append(link.strCopy);
        strMarkup = link.strMarkup;
    }
    if (!m_markup->isEmpty())
        *m_markup += u' ';
    *m_markup += strMarkup;
}

/// It stays as it stood, but for pictures that go away with the page into which they were pasted before.
void CPasteTask::TakeOwnCopy() {
    static const QRegularExpression pasted(u"\"(file:[^\"]*/Unsaved/[^\"/]+\\.files/[^\"/]+)\""_s,
                                           QRegularExpression::CaseInsensitiveOption);
    QString strMarkup;
    qsizetype nAt = 0;
    for (auto it = pasted.globalMatch(m_pasted.strHtml); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const QString strReference =
            match.captured(1).replace(u"&nbsp;"_s, QString(QChar(0xA0))).replace(u"&amp;"_s, u"&"_s);
        const QString strPath = SurfaceUrls::UrlToPath(QUrl(strReference));
        const QString strOwn = m_pictures.TakeFile(strPath);
        if (strOwn.isEmpty())
            m_pictures.Miss(strPath);
        if (strOwn.isEmpty() || strOwn == strPath)
            continue;
        strMarkup += QStringView(m_pasted.strHtml).sliced(nAt, match.capturedStart(1) - nAt);
        strMarkup += SurfaceUrls::PathToReference(strOwn).toHtmlEscaped();
        nAt = match.capturedEnd(1);
    }
    m_markup = strMarkup + QStringView(m_pasted.strHtml).sliced(nAt);
}

void CPasteTask::TakePicture() {
    const QByteArray& file = m_pasted.PictureFile;
    m_markup = MarkupOfPicture(m_pictures.Keep(file.isEmpty() ? PngOf(m_pasted.Picture) : file));
}

void CPasteTask::TakeText(IWalkFilter& filter) {
    if (!m_pasted.strHtml.isEmpty()) {
        const auto fragment = PastedHtml::Clean(m_pasted.strHtml, [&](const QString& strReference) {
            ThrowIfGivenUp(filter);
            return m_pictures.Name(strReference);
        });
        ThrowIfGivenUp(filter);
        m_bPlainInstead = !fragment || fragment->strHtml.size() > c_nMaxMarkup;
        if (!m_bPlainInstead && !fragment->strHtml.isEmpty()) {
            m_markup = fragment->strHtml;
            return;
        }
        m_pictures.RemoveMade();
    }
    if (!m_pasted.strText.isEmpty())
        m_markup = PastedHtml::FromPlainText(m_pasted.strText);
}

void CPasteTask::RemoveMade() {
    m_pictures.RemoveMade();
    RemoveCopies(m_copies);
    m_copies.clear();
}
