#include "content/ContentKinds.h"

#include "content/Texts.h"
#include "foundation/FolderWalk.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace ContentKinds {
namespace {

/// Sees whether a file of each ending comes by; stops the walk with the last of them.
class CEndingSearch : public Torvane::File::IFileVisitor, public Torvane::File::IWalkFilter {
public:
    explicit CEndingSearch(QStringList endings) : m_missing(std::move(endings)) {}

    void Visit(const QString& strPath, const Torvane::File::FindRecord&) override {
        m_missing.removeOne(LowerAscii(Torvane::File::Extension(strPath)));
    }
    bool Cancelled() override { return m_missing.isEmpty(); }
    bool AcceptFile(const QString&) override { return true; }
    bool AcceptFolder(const QString&) override { return true; }

private:
    QStringList m_missing;
};

/// A name alone would be looked for wherever the program was started.
bool IsFile(const QString& strPath) {
    return Torvane::File::IsAbsolute(strPath) && Torvane::File::IsFile(strPath);
}
bool IsFolder(const QString& strPath) {
    return Torvane::File::IsAbsolute(strPath) && Torvane::File::IsFolder(strPath);
}

using Fault = std::optional<Refusal>;

Fault CheckExternalFile(const QString& strPath) {
    if (strPath.isEmpty())
        return Refusal{ContentText::c_strNoExternalFile, EField::ExternalFile};
    if (!IsFile(strPath))
        return Refusal{ContentText::c_strExternalFileMissing, EField::ExternalFile, true};
    return {};
}

Fault CheckSite(const CNodeFileParams& params) {
    if (params.SiteFolder.isEmpty())
        return Refusal{ContentText::c_strNoSiteFolder, EField::SiteFolder};
    if (!IsFolder(params.SiteFolder))
        return Refusal{ContentText::c_strSiteFolderMissing, EField::SiteFolder};
    if (params.SiteHomePage.isEmpty())
        return Refusal{ContentText::c_strNoHomePage, EField::SiteHomePage};
    if (!IsFile(params.SiteHomePage))
        return Refusal{ContentText::c_strHomePageMissing, EField::SiteHomePage};
    if (!IsInSite(params.SiteFolder, params.SiteHomePage))
        return Refusal{ContentText::c_strHomePageOutside, EField::SiteHomePage};
    return {};
}

Fault CheckLink(const QString& strUrl) {
    if (strUrl.isEmpty())
        return Refusal{ContentText::c_strNoLink, EField::LinkUrl};
    if (!Torvane::File::IsWholeAddress(strUrl))
        return Refusal{ContentText::c_strLinkNotValid, EField::LinkUrl};
    return {};
}

Fault CheckCourseware(const QString& strFolder) {
    if (strFolder.isEmpty())
        return Refusal{ContentText::c_strNoCourseware, EField::CoursewareFolder};
    if (!IsFolder(strFolder))
        return Refusal{ContentText::c_strCoursewareMissing, EField::CoursewareFolder};
    if (!IsCourseware(strFolder))
        return Refusal{ContentText::c_strNotCourseware, EField::CoursewareFolder};
    return {};
}

Fault CheckFolder(const CNodeFileParams& params, bool bTypedFilter) {
    if (params.ImportFolder.isEmpty())
        return Refusal{ContentText::c_strNoFolder, EField::ImportFolder};
    if (!IsFolder(params.ImportFolder))
        return Refusal{ContentText::c_strFolderMissing, EField::ImportFolder};
    if (bTypedFilter && params.ImportFilter.isEmpty())
        return Refusal{ContentText::c_strNoFilter, EField::ImportFilter};
    if (bTypedFilter && !ArePatterns(params.ImportFilter))
        return Refusal{ContentText::c_strFilterNotValid, EField::ImportFilter};
    return {};
}

} // namespace

const QList<Row>& Rows() {
    using namespace ContentText;
    static const QList<Row> s_rows{
        {EContentKind::EditorPage, c_strEditorPageKind, c_strEditorPageTip},
        {EContentKind::ExternalFile, c_strExternalFileKind, c_strExternalFileTip},
        {EContentKind::ExternalEditor, c_strExternalEditorKind, c_strExternalEditorTip},
        {EContentKind::Site, c_strSiteKind, {}},
        {EContentKind::ExternalLink, c_strExternalLinkKind, c_strExternalLinkTip},
        {EContentKind::Courseware, c_strCoursewareKind, {}},
        {EContentKind::Video, c_strVideoKind, {}},
        {EContentKind::Folder, c_strFolderKind, {}},
        {EContentKind::InSiteLink, c_strInSiteLinkKind, {}}};
    return s_rows;
}

QString NameOf(EContentKind kind) {
    return Rows().value(static_cast<int>(kind)).strCaption.section(u'(', 0, 0);
}

ContentPreset PresetFor(EContentKind kind, const QString& strTitle) {
    if (kind != EContentKind::None)
        return {kind, {}};
    if (strTitle == ContentText::c_strReferencesTitle)
        return {EContentKind::ExternalLink, ContentText::c_strAdviseLink.arg(strTitle)};
    return {EContentKind::EditorPage, ContentText::c_strAdviseEditor.arg(strTitle)};
}

QString PresetTip(const ContentPreset& preset) {
    return u"%1。%2"_s.arg(preset.strAdvice, Rows().value(static_cast<int>(preset.Kind)).strTip);
}

const QList<Filter>& Filters() {
    static const QList<Filter> s_filters{
        {u"所有文件(*.*)"_s, u"*.*"_s},
        {u"Office文件(*.doc;*.ppt;*.xls)"_s, u"*.doc;*.ppt;*.xls"_s},
        {u"图片文件(*.gif;*.jpg)"_s, u"*.gif;*.jpg"_s},
        {u"Word文件(*.doc)"_s, u"*.doc"_s},
        {u"PowerPoint文件(*.ppt)"_s, u"*.ppt"_s},
        {u"Excel文件(*.xls)"_s, u"*.xls"_s},
        {u"HTML文件(*.htm;*.html)"_s, u"*.htm;*.htm;"_s},
        {u"自定义..."_s, std::nullopt},
    };
    return s_filters;
}

bool ArePatterns(const QString& strPatterns) {
    const QStringList pieces = strPatterns.split(u';');
    return std::all_of(pieces.begin(), pieces.end(), [](const QString& strPiece) {
        return strPiece.size() > 2 && strPiece.startsWith(u"*."_s);
    });
}

bool IsInSite(const QString& strFolder, const QString& strPage) {
    return Torvane::File::IsPathUnder(strFolder, strPage, u'\\') &&
           // Such a page begins in the folder and leads out of it.
           !strPage.mid(strFolder.size()).split(u'\\').contains(u".."_s);
}

bool IsCourseware(const QString& strFolder) {
    CEndingSearch search({u".cml"_s, u".arx"_s, u".htm"_s});
    Torvane::File::WalkFolder(strFolder, &search, nullptr, nullptr, false, &search, false);
    return search.Cancelled();
}

std::optional<Refusal> Check(const CNodeFileParams& params, bool bTypedFilter) {
    switch (params.Kind) {
    case EContentKind::EditorPage:
    case EContentKind::Video:
        return {};
    case EContentKind::ExternalFile:
        return CheckExternalFile(params.ExternalFile);
    case EContentKind::ExternalEditor:
        return params.OfficeKind == EOfficeKind::None ? Fault(Refusal{ContentText::c_strNoOfficeKind})
                                                      : std::nullopt;
    case EContentKind::Site:
        return CheckSite(params);
    case EContentKind::ExternalLink:
        return CheckLink(params.LinkUrl);
    case EContentKind::Courseware:
        return CheckCourseware(params.CoursewareFolder);
    case EContentKind::Folder:
        return CheckFolder(params, bTypedFilter);
    case EContentKind::InSiteLink:
        return params.SiteLinkUrl.isEmpty()
                   ? Fault(Refusal{ContentText::c_strNoInSiteLink, EField::InSiteLink})
                   : std::nullopt;
    case EContentKind::None:
        break;
    }
    return Refusal{ContentText::c_strBadParams};
}

} // namespace ContentKinds
