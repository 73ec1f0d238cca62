#include "companions/compiler/Fragments.h"

#include "companions/compiler/References.h"
#include "companions/compiler/SourceFile.h"
#include "foundation/Exceptions.h"
#include "foundation/PageText.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

/// Whether the page can be read is not the matter of those that link to it.
std::optional<QByteArray> TryRead(const QString& strNativePath) {
    try {
        return ReadSourceText(strNativePath);
    } catch (const Torvane::CRunException&) {
        return std::nullopt;
    }
}

} // namespace

CFragments::Page CFragments::PageIn(const QString& strPage) {
    QStringList names;
    for (const PageAnchors::Anchor& anchor : PageAnchors::Find(strPage))
        names.append(anchor.strName);
    return {PageAnchors::CNames(names), strPage.contains("<script"_L1, Qt::CaseInsensitive)};
}

CFragments::Page CFragments::Read(const QString& strSource) const {
    const std::optional<QByteArray> bytes = TryRead(m_tree.NativePath(strSource));
    return bytes ? PageIn(PageText::Decode(*bytes).Text) : Page{PageAnchors::CNames(), true};
}

CFragments::Entry& CFragments::EntryOf(const QString& strSource) const {
    const std::scoped_lock lock(m_mutex);
    return m_pages[strSource];
}

const CFragments::Page& CFragments::PageOf(const QString& strSource) const {
    Entry& entry = EntryOf(strSource);
    // Before the page's turn is taken: who holds this may well wait for that.
    const auto lock = LockIfLarge(m_tree.StateOf(strSource).nSize);
    std::call_once(entry.Once, [&] { entry.Content = Read(strSource); });
    return entry.Content;
}

void CFragments::Prepare(const QString& strSource, const QString& strPage) const {
    if (m_tree.StateOf(strSource).nSize < c_nLargePage || !Torvane::File::IsHtmlFile(strSource))
        return;
    static const QRegularExpression own(u"href\\s*=\\s*[\"']?\\s*#"_s,
                                        QRegularExpression::CaseInsensitiveOption);
    const QString strName = strSource.mid(strSource.lastIndexOf(u'/') + 1) + u'#';
    if (!strPage.contains(own) && !strPage.contains(strName, Qt::CaseInsensitive))
        return;
    Entry& entry = EntryOf(strSource);
    const auto lock = LockIfLarge(c_nLargePage);
    std::call_once(entry.Once, [&] { entry.Content = PageIn(strPage); });
}

/// The viewer of a presentation takes a slide's file for its fragment.
QString CFragments::SlideBeside(const QString& strSource, const QString& strFragment) const {
    const QString strFolder = FolderOf(strSource) + u'/';
    if (m_tree.FindFile(strFolder + u"pres.xml"_s).isEmpty() || strFragment.contains(u'/'))
        return {};
    const QString strSlide = m_tree.FindFile(strFolder + strFragment);
    return m_tree.OutputName(strSlide).mid(strSlide.isEmpty() ? 0 : strFolder.size());
}

CFragments::Result CFragments::Spelled(const QString& strSource, const QString& strFragment) const {
    const QString strName = strFragment.mid(1);
    if (strName.isEmpty() || !Torvane::File::IsHtmlFile(strSource) || LowerAscii(strName) == "top"_L1)
        return {strFragment};
    const Page& page = PageOf(strSource);
    QString strMeant = page.Names.Meant(strName);
    if (strMeant.isEmpty())
        strMeant = SlideBeside(strSource, strName);
    if (strMeant.isEmpty())
        return {strFragment, !page.MayHaveMore};
    // How it is escaped is its author's business, as long as browsers read it so.
    if (strMeant == strName ||
        strMeant == QString::fromUtf8(QByteArray::fromPercentEncoding(strName.toUtf8())))
        return {strFragment};
    return {u'#' + EncodeAddress(strMeant)};
}
