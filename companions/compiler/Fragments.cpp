#include "companions/compiler/Fragments.h"

#include "companions/compiler/References.h"
#include "companions/compiler/SourceFile.h"
#include "foundation/Exceptions.h"
#include "foundation/PageText.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"

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

CFragments::Page CFragments::Read(const QString& strSource) const {
    const std::optional<QByteArray> bytes = TryRead(m_tree.NativePath(strSource));
    if (!bytes)
        return {PageAnchors::CNames(), true};
    const QString strPage = PageText::Decode(*bytes).Text;
    QStringList names;
    for (const PageAnchors::Anchor& anchor : PageAnchors::Find(strPage))
        names.append(anchor.strName);
    return {PageAnchors::CNames(names), strPage.contains("<script"_L1, Qt::CaseInsensitive)};
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
