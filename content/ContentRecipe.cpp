#include "content/ContentRecipe.h"

#include "content/InSiteLink.h"
#include "content/Texts.h"
#include "course/TemplateStore.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/SysInfo.h"
#include "foundation/Text.h"
#include "foundation/TextFile.h"
#include "office/OfficeFiles.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <optional>

using namespace Torvane::File;
using namespace Qt::StringLiterals;
using Torvane::CRunException;
using Torvane::Office::EConversion;

namespace {

const QString c_strPageFile = u"Content.htm"_s;
const QString c_strFilesExtension = u".files"_s;
const QString c_strFramePage = u"torvaneframe.htm"_s;

bool IsCancelled(IWalkFilter* pFilter) {
    return pFilter != nullptr && pFilter->Cancelled();
}

/// A step with files, whose failure has a message of its own. What the person can do something about is said
/// below it. One that was given up is no failure: whoever began it sees that it was.
void Step(const QString& strFailure, const std::function<void()>& step) {
    try {
        step();
    } catch (const CFileException& e) {
        switch (e.GetSystemError()) {
        case ECANCELED:
            return;
        case ENOSPC:
        case EDQUOT:
            throw CDiskFullException(strFailure + u'\n' + ContentText::c_strDiskFull);
        case ENAMETOOLONG:
            throw CRunException(strFailure + u'\n' + ContentText::c_strPathTooLong);
        case EACCES:
        case EPERM:
            throw CRunException(strFailure + u'\n' + ContentText::c_strNoAccess);
        default:
            throw CRunException(strFailure);
        }
    }
}

/// A free name with the extension in an empty folder.
QString NameFor(const QString& strExtension, const QString& strFolder, const QString& strFailure) {
    const QString strName = NameInEmptyFolder(strExtension);
    if (IsPathTooLong(strFolder, strName))
        throw CRunException(strFailure + u'\n' + ContentText::c_strPathTooLong);
    return strName;
}

/// A copy of one file under a name of its own.
QString CopyUnderNewName(const QString& strSource, const QString& strFolder, IWalkFilter* pFilter,
                         const QString& strNoName, const QString& strFailure) {
    const QString strName = NameFor(Extension(strSource), strFolder, strNoName);
    Step(strFailure, [&] { CopyOneFile(strSource, strFolder + strName, false, pFilter); });
    return strName;
}

// Office files.

QString Convert(const QString& strSource, const QString& strFolder, IWalkFilter* pFilter,
                const QString& strFailure) {
    QString strName;
    switch (Torvane::Office::ConvertOfficeToHtml(strSource, strFolder, strName,
                                                 [pFilter] { return !IsCancelled(pFilter); })) {
    case EConversion::Done:
    case EConversion::Cancelled:
        return strName;
    case EConversion::NoConverter:
        throw CNoConverterException(strFailure + u'\n' + ContentText::c_strNoConverter);
    case EConversion::TimedOut:
        throw CRunException(strFailure + u'\n' + ContentText::c_strConversionTooLong);
    case EConversion::NoSpace:
        throw CDiskFullException(strFailure + u'\n' + ContentText::c_strDiskFull);
    case EConversion::Failed:
        break;
    }
    throw CRunException(strFailure);
}

QString NewOfficeFile(EOfficeKind kind, bool bAsWebPage, const QString& strFolder, IWalkFilter* pFilter) {
    const QString strTemplates = CSysInfo::Instance().GetOfficeTemplateFolder(true);
    const auto copy = [&](const QString& strTemplate) {
        return CopyUnderNewName(strTemplates + strTemplate, strFolder, pFilter,
                                ContentText::c_strNoTemplateName, ContentText::c_strTemplateNotCopied);
    };
    const auto copyOrConvert = [&](const QString& strTemplate) {
        return bAsWebPage ? Convert(strTemplates + strTemplate, strFolder, pFilter,
                                    ContentText::c_strTemplateNotConverted)
                          : copy(strTemplate);
    };
    switch (kind) {
    case EOfficeKind::PowerPoint:
        return copyOrConvert(u"Template.ppt"_s);
    case EOfficeKind::Excel:
        return copyOrConvert(u"Template.xls"_s);
    case EOfficeKind::Word:
        return copy(bAsWebPage ? u"TemplateDoc.htm"_s : u"Template.doc"_s);
    case EOfficeKind::None:
        break;
    }
    throw CRunException(ContentText::c_strTemplateNotCopied);
}

// External files.

/// The page and its folder once more, under their own names, by which the page finds it. A saved presentation
/// opens by its frame.
QString CopyPageWithFiles(const Recipes::ExternalFile& page, const QString& strFolder, IWalkFilter* pFilter,
                          QStringList* pPassedOver) {
    const QString strName = BareName(page.strPath);
    Step(ContentText::c_strPageNotCopied,
         [&] { CopyOneFile(page.strPath, strFolder + strName, true, pFilter); });
    const QString strFiles = BareName(page.strFilesFolder);
    Step(ContentText::c_strFolderNotCopied,
         [&] { ForceCopyFolder(page.strFilesFolder, strFolder + strFiles, true, pFilter, pPassedOver); });
    const QString strStem = FileTitle(strName);
    const bool bFrame = !IsCancelled(pFilter) && Torvane::Office::IsPptFrameFolder(strFolder + strFiles) &&
                        Torvane::Office::FixFramePage(strStem, strFolder + strFiles);
    return bFrame ? strStem + c_strFilesExtension + u'\\' + c_strFramePage : strName;
}

// Whole folders.

QString CopySite(const QString& strSite, const QString& strHomePage, const QString& strFolder,
                 IWalkFilter* pFilter, QStringList* pPassedOver) {
    if (!IsPathUnder(strSite, strHomePage, u'\\'))
        throw CRunException(ContentText::c_strHomePageOutside);
    const QString strBelow = strHomePage.mid(AddBackslash(strSite).size());
    const QString strName = NameFor({}, strFolder, ContentText::c_strNoSiteName);
    Step(ContentText::c_strSiteNotCopied,
         [&] { ForceCopyFolder(strSite, strFolder + strName, true, pFilter, pPassedOver); });
    const QString strPath = strName + u'\\' + strBelow;
    // What is hidden, or can't be listed, was not copied.
    if (!IsCancelled(pFilter) && !IsFile(strFolder + strPath))
        throw CRunException(ContentText::c_strSiteNotCopied);
    return strPath;
}

/// The first page by name.
QString HomePageIn(const QString& strFolder) {
    QList<FolderEntry> entries;
    ListFolder(strFolder, entries);
    QString strFirst;
    for (const FolderEntry& entry : entries) {
        if (!entry.bFolder && !entry.bNoText && LowerAscii(Extension(entry.strName)) == u".htm" &&
            (strFirst.isEmpty() || LowerAscii(entry.strName) < LowerAscii(strFirst)))
            strFirst = entry.strName;
    }
    if (strFirst.isEmpty())
        throw CRunException(ContentText::c_strHomePageNotFound);
    return strFirst;
}

QString CopyCourseware(const QString& strCourseware, const QString& strFolder, IWalkFilter* pFilter,
                       QStringList* pPassedOver) {
    const QString strName = NameFor({}, strFolder, ContentText::c_strNoFileName);
    Step(ContentText::c_strFolderNotCopied,
         [&] { ForceCopyFolder(strCourseware, strFolder + strName, true, pFilter, pPassedOver); });
    return IsCancelled(pFilter) ? QString() : strName + u'\\' + HomePageIn(strFolder + strName);
}

// Links.

/// Refuses a link to a place beside the nodes: there would be nothing to show.
QString LinkInside(const QString& strLink, const QString& strNodeResourceFolder) {
    const QString strStored = InSiteLink::StoredPath(strLink, strNodeResourceFolder);
    if (strStored.isEmpty() || strStored.startsWith(u'#') || IsAbsolute(strStored))
        throw CRunException(ContentText::c_strNoInSiteLink);
    return strStored;
}

// Editor pages.

/// A text file's bytes as they come out of reading it line by line and writing it again: the last line end
/// goes, every line ends with CR LF. The code page never uses these bytes inside a character, so no text is
/// decoded for it, and none can suffer.
QByteArray LinesOf(QByteArray bytes) {
    bytes.replace("\r\n", "\n");
    if (bytes.endsWith('\n'))
        bytes.chop(1);
    bytes.replace("\n", "\r\n");
    return bytes;
}

/// The page of the template, or its general page; empty when it has neither.
QString TemplatePage(const QString& strTemplate, const QString& strPage) {
    const CTemplateStore store(CSysInfo::Instance().GetTemplatesFolder(false));
    const QString strPath = strPage.isEmpty() ? QString() : store.GetPagePath(strTemplate, strPage);
    if (IsFile(strPath))
        return strPath;
    const QString strGeneral = store.GetDefaultPagePath(strTemplate);
    return IsFile(strGeneral) ? strGeneral : QString();
}

} // namespace

namespace Recipes {

bool HasPage(const QString& strTemplate, const QString& strPage) {
    return !TemplatePage(strTemplate, strPage).isEmpty();
}

ContentRecipe EditorPage(const QString& strTemplate, const QString& strPage, qint32 nOpenType) {
    ContentRecipe recipe{{NodeType::c_nEditorPage, {}, nOpenType, {}, {}}, {}};
    recipe.Files = [strTemplate, strPage](const QString& strFolder, IWalkFilter*) {
        CreateFolderPath(strFolder + u"res"_s);
        const QString strSource = TemplatePage(strTemplate, strPage);
        if (!strSource.isEmpty())
            ReplaceFile(strFolder + c_strPageFile, LinesOf(ReadFileBytes(strSource)));
        return c_strPageFile;
    };
    return recipe;
}

QString FilesFolderOf(const QString& strPage) {
    return IsHtmlFile(strPage) ? strPage.chopped(Extension(strPage).size()) + c_strFilesExtension : QString();
}

QString CopyExternalFile(const ExternalFile& file, const QString& strFolder, IWalkFilter* pFilter,
                         QStringList* pPassedOver) {
    if (file.bAsWebPage)
        return Convert(file.strPath, strFolder, pFilter, ContentText::c_strFileNotConverted);
    const bool bOffice = Torvane::Office::IsOfficeFile(BareName(file.strPath));
    const QString strName =
        CopyUnderNewName(file.strPath, strFolder, pFilter, ContentText::c_strNoFileName,
                         bOffice ? ContentText::c_strFolderNotCopied : ContentText::c_strFileNotCopied);
    return file.strFilesFolder.isEmpty() || IsCancelled(pFilter)
               ? strName
               : CopyPageWithFiles(file, strFolder, pFilter, pPassedOver);
}

ContentRecipe Of(const CNodeFileParams& params, const CCourse& course, bool bAsWebPage) {
    ContentRecipe recipe;
    recipe.Row.OpenType = params.OpenType;
    const std::shared_ptr<QStringList> pLost = recipe.PassedOver;
    const auto ofType = [&](qint32 nType, const ContentRecipe::FilesInto& files) {
        recipe.Row.Type = nType;
        recipe.Files = files;
        return recipe;
    };
    const auto linkOfType = [&](qint32 nType, const QString& strLink) {
        recipe.Row.Path = strLink;
        return ofType(nType, {});
    };
    switch (params.Kind) {
    case EContentKind::EditorPage:
        return EditorPage(course.GetTemplateName(), {}, params.OpenType);
    case EContentKind::ExternalFile: {
        recipe.Row.FileName = BareName(params.ExternalFile);
        recipe.Row.Comment = params.Comment;
        const QString strFiles = FilesFolderOf(params.ExternalFile);
        const ExternalFile file{params.ExternalFile, bAsWebPage, IsFolder(strFiles) ? strFiles : QString()};
        return ofType(NodeType::c_nExternalFile,
                      [file, pLost](const QString& strFolder, IWalkFilter* pFilter) {
                          return CopyExternalFile(file, strFolder, pFilter, pLost.get());
                      });
    }
    case EContentKind::ExternalEditor:
        return ofType(NodeType::c_nExternalFile, [params](const QString& strFolder, IWalkFilter* pFilter) {
            return NewOfficeFile(params.OfficeKind, params.SaveAsHtml, strFolder, pFilter);
        });
    case EContentKind::Site:
        return ofType(NodeType::c_nSite, [params, pLost](const QString& strFolder, IWalkFilter* pFilter) {
            return CopySite(params.SiteFolder, params.SiteHomePage, strFolder, pFilter, pLost.get());
        });
    case EContentKind::Courseware:
        return ofType(NodeType::c_nCourseware,
                      [params, pLost](const QString& strFolder, IWalkFilter* pFilter) {
                          return CopyCourseware(params.CoursewareFolder, strFolder, pFilter, pLost.get());
                      });
    case EContentKind::ExternalLink:
        return linkOfType(NodeType::c_nExternalLink, params.LinkUrl);
    case EContentKind::InSiteLink:
        return linkOfType(NodeType::c_nInSiteLink,
                          LinkInside(params.SiteLinkUrl, course.GetPaths().GetNodeResourceFolder(true)));
    case EContentKind::None:
    case EContentKind::Video:
    case EContentKind::Folder:
        break;
    }
    throw CRunException(ContentText::c_strBadParams);
}

} // namespace Recipes
