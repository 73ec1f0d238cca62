#include "editor/KeptPageOffer.h"

#include "content/BookNode.h"
#include "editor/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/TextFile.h"
#include "platform/base/NativePath.h"

using namespace Torvane::Dialog::MFC;

namespace {

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

/// The node of the text is gone, and the text must not go with it.
void PutBeside(const KeptPage& page, const CCourse& course, IPeople& people) {
    try {
        const QString strPath = KeptPages::PutBeside(page, course.GetPaths());
        KeptPages::Remove(page.strPath);
        people.Notice(EditorTexts::c_strKeptNodeGone.arg(page.strTitle, ShownTime(page),
                                                         Platform::ToNativeExact(strPath)));
    } catch (const Torvane::CRunException& failure) {
        people.Error(failure.GetMessage());
    }
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
    for (const KeptPage& page : KeptPages::Read(course.GetPaths())) {
        if (onlyNode && page.nNode != *onlyNode)
            continue;
        QString strTitle;
        const QString strPagePath = PagePathOf(course, page.nNode, strTitle);
        if (strPagePath.isEmpty()) {
            PutBeside(page, course, people);
            continue;
        }
        if (page.strHtml != ReadTextFile(strPagePath) && Wants(page, strTitle, strPagePath, people))
            return page;
        KeptPages::Remove(page.strPath);
    }
    return std::nullopt;
}
