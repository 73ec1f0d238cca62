#include "editor/KeptPageOffer.h"

#include "content/BookNode.h"
#include "editor/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/TextFile.h"
#include "platform/base/NativePath.h"

using namespace Torvane::Dialog::MFC;

namespace {

/// So many of the texts that were put aside are named.
constexpr qsizetype c_nMaxLines = 10;

QString ShownTime(const KeptPage& page) {
    return page.Time.toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

/// Where the node's page lies; empty when the node is gone or is no page any more.
QString PagePathOf(const CCourse& course, qint32 nNode, QString& strTitle) {
    try {
        const NodeHeader header = course.GetDatabase()->GetNode(nNode);
        strTitle = header.Title;
        if (header.Type == NodeType::c_nEditorPage)
            return course.GetPaths().GetNodeResourceFolder(true) + course.GetDatabase()->GetPath(nNode);
    } catch (const Torvane::CRunException&) {
        return {};
    }
    return {};
}

/// A kept page whose node is there.
struct Candidate {
    KeptPage Page;
    QString strTitle;
    QString strPagePath;
};

QString MoveBeside(const KeptPage& page, const CCourse& course) {
    QString strPath = KeptPages::PutBeside(page, course.GetPaths());
    if (!page.strPath.isEmpty()) {
        KeptPages::Remove(page.strPath);
        KeptPages::RemovePictures(page.strPath, QString());
    }
    return strPath;
}

/// The nodes of the texts are gone, and the texts must not go with them.
void PutBeside(const QList<KeptPage>& pages, const CCourse& course, IPeople& people) {
    QStringList lines;
    QString strPath, strFailure;
    try {
        for (const KeptPage& page : pages) {
            strPath = MoveBeside(page, course);
            lines.append(EditorTexts::c_strKeptLine.arg(page.strTitle, ShownTime(page)));
        }
    } catch (const Torvane::CRunException& failure) {
        strFailure = failure.GetMessage();
    }
    if (lines.size() == 1) {
        people.Notice(EditorTexts::c_strKeptNodeGone.arg(pages.first().strTitle, ShownTime(pages.first()),
                                                         Platform::ToNativeExact(strPath)));
    } else if (!lines.isEmpty()) {
        const QString strCount = QString::number(lines.size());
        if (lines.size() > c_nMaxLines)
            lines = lines.mid(0, c_nMaxLines) + QStringList{EditorTexts::c_strMoreLines};
        const QString strFolder = Platform::ToNativeExact(Torvane::File::ParentFolder(strPath));
        people.Notice(EditorTexts::c_strKeptNodesGone.arg(strCount, strFolder, lines.join(u'\n')));
    }
    if (!strFailure.isEmpty())
        people.Error(strFailure);
}

bool Wants(const KeptPage& page, const QString& strTitle, const QString& strPagePath, IPeople& people) {
    QString strText = EditorTexts::c_strAskKept.arg(strTitle, ShownTime(page));
    if (page.PageHash != KeptPages::HashOfPage(strPagePath))
        strText += EditorTexts::c_strKeptPageChanged;
    return people.Ask(strText, EditorTexts::c_strTip, BoxButtons::YesNo, BoxIcon::Question) == BoxAnswer::Yes;
}

} // namespace

std::optional<KeptPage> OfferKeptPages(const CCourse& course, IPeople& people,
                                       std::optional<qint32> onlyNode) {
    QList<KeptPage> gone;
    QList<Candidate> candidates;
    for (const KeptPage& page : KeptPages::Read(course.GetPaths(), onlyNode)) {
        QString strTitle;
        const QString strPagePath = PagePathOf(course, page.nNode, strTitle);
        if (strPagePath.isEmpty())
            gone.append(page);
        else
            candidates.append({page, strTitle, strPagePath});
    }
    if (!onlyNode)
        KeptPages::RemoveOrphans(course.GetPaths());
    PutBeside(gone, course, people);
    for (const auto& [page, strTitle, strPagePath] : candidates) {
        const QString strSaved = ReadTextFile(strPagePath);
        if (page.strHtml != strSaved && Wants(page, strTitle, strPagePath, people))
            return page;
        KeptPages::Remove(page.strPath);
        KeptPages::RemovePictures(page.strPath, strSaved);
    }
    return std::nullopt;
}

void PutTooLongBeside(const KeptPage& page, const CCourse& course, IPeople& people) {
    QString strText;
    try {
        const QString strPath = Platform::ToNativeExact(MoveBeside(page, course));
        strText = EditorTexts::c_strKeptTooLong.arg(page.strTitle, ShownTime(page), strPath);
    } catch (const Torvane::CRunException& failure) {
        people.Error(failure.GetMessage());
        return;
    }
    people.Warn(strText);
}
