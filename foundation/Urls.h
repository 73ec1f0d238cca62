#pragma once

#include <QString>

#include <functional>

/// Conversion between paths and "file:" URLs, and what a link inside a course becomes. Paths are in backslash
/// form. The two directions keep their own order of escapes on purpose and are no exact inverse of each
/// other: a blank becomes "%2520".
namespace Torvane::File {

/// The name of an existing file, or a text with "file://" in it, ignoring case.
bool IsLocalRef(const QString& strText);

/// In lower case; whatever is no "file:" URL comes back so as well.
QString FileUrlToPath(const QString& strUrl);

/// A text with "://" in it comes back as it is.
QString PathToFileUrl(const QString& strPath);

/// "file://Z:\…\Content.htm", as a document tells its own URL: only "%" and "#" are escaped, so that the
/// first "#" begins the fragment that may follow. FileUrlToPath gives the path back, in lower case. Inline,
/// since the engine's module, which links no foundation, speaks of documents too.
inline QString PathToDocumentUrl(QString strPath) {
    strPath.replace(u'%', QLatin1String("%25")).replace(u'#', QLatin1String("%23"));
    return QStringLiteral("file://") + strPath;
}

/// A local reference as it stands below the folder, with forward slashes and its fragment:
/// "n13/content.htm#a". Outside of the folder the fragment alone is left; what is no local reference comes
/// back. All in lower case.
QString MakeRelativeUrl(const QString& strUrl, const QString& strBaseFolder);

/// A file with what follows its name from "#" on.
struct FileAndFragment {
    QString strFile;
    QString strFragment;
};

/// Splits a stored link, which joins both without an escape. A file's name may hold a "#" as well, and only
/// who knows the files can tell: the shortest name that is one counts, unless the whole text is one. Where
/// there is no such file the first "#" decides.
FileAndFragment SplitLink(const QString& strLink, const std::function<bool(const QString&)>& isFile);

} // namespace Torvane::File
